#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The instructions that one poll takes, against those on record:

    poll_instructions.py PROGRAM QT_VERSION [--record]

Counts do not depend on what else the machine does, nor, with what is switched off here, on its
processor. They do on the toolkit's version: each has a record of its own. One that has none is no
failure, and said: its status is 77.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

RECORDS = pathlib.Path(__file__).with_name("instructions")
NOT_RECORDED = 77
POLLS = 50
TOLERANCE = 0.02

# The same code on every processor: neither the C library nor the toolkit picks variants of its own.
PLAIN_PROCESSOR = {
    "GLIBC_TUNABLES": "glibc.cpu.hwcaps=-AVX2,-BMI2,-ERMS,-FSRM,-LZCNT,-MOVBE,-RTM,-SSSE3,-SSE4_1,"
                      "-SSE4_2",
    "QT_NO_CPU_FEATURE": "sse3 ssse3 sse4.1 sse4.2 popcnt avx avx2 f16c fma bmi bmi2 aes sha",
    "QT_HASH_SEED": "0",
    "QT_QPA_PLATFORM": "offscreen",
    "LC_ALL": "C.UTF-8",
}


def loads(program):
    return subprocess.run([program, "list"], check=True, text=True,
                          stdout=subprocess.PIPE).stdout.splitlines()


def measure(program):
    """Instructions of one poll by load."""
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(
            ["valgrind", "--tool=callgrind", f"--callgrind-out-file={folder}/profile",
             "--toggle-collect=*onePoll*", "--dump-before=*Bench::choose*", program, "run",
             str(POLLS)],
            check=True, env=os.environ | PLAIN_PROCESSOR, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)
        names = loads(program)
        # The first is what was counted before the first load: nothing. The last has no number.
        parts = [pathlib.Path(folder, f"profile.{number}") for number in range(2, len(names) + 1)]
        return {name: total(part) // POLLS
                for name, part in zip(names, [*parts, pathlib.Path(folder, "profile")])}


def total(profile):
    text = profile.read_text(encoding="ascii", errors="replace")
    return sum(int(number) for number in re.findall(r"^totals: (\d+)", text, re.MULTILINE))


def recorded(file):
    lines = [line.split(maxsplit=1) for line in file.read_text(encoding="utf-8").splitlines()]
    return {name: int(count) for count, name in lines}


def record(counts, file):
    file.write_text("".join(f"{count:>9} {name}\n" for name, count in counts.items()),
                      encoding="utf-8")


def compare(counts, expected):
    """Both ways: a gain that is not recorded is a loss that may follow unseen."""
    agree = counts.keys() == expected.keys()
    for name, count in counts.items():
        change = count / expected[name] - 1 if name in expected else 1
        agree = agree and abs(change) <= TOLERANCE
        print(f"{name}: {count} instructions, {change:+.1%}")
    return agree


def main():
    program, qt_version, *options = sys.argv[1:]
    file = RECORDS / f"qt-{qt_version}.txt"
    if options == ["--record"]:
        record(measure(program), file)
    elif not file.exists():
        print(f"No counts of Qt {qt_version} are recorded. To record those of today: "
              f"{' '.join(sys.argv)} --record")
        sys.exit(NOT_RECORDED)
    elif not compare(measure(program), recorded(file)):
        sys.exit(f"More than {TOLERANCE:.0%} off {file.name}. If that is meant: "
                 f"{' '.join(sys.argv)} --record")


if __name__ == "__main__":
    main()
