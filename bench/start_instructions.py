#!/usr/bin/python3 -B
# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The instructions that a start takes until its first frame is handed to the X server, above those of
the stock window, against those on record:

    start_instructions.py QT_VERSION [--record]

Both load the same font, which is half of it: only one family is there, looked up before, so that
neither the fonts on the machine nor their cache tell. What is above the stock window is compared in
hundredths of a start. POSTAL_SCALE_BIN names the folder with the built programs. Without a record the
status is that of poll_instructions.
"""

import contextlib
import pathlib
import subprocess
import sys

import harness
import poll_instructions
from programs import EVERYTHING_ON, binary, processor_time_of_start, write_settings

FLOOR = "the stock window"
STARTS = {
    FLOOR: ("bench-stock-widgets", None),
    "the program": ("postal-scale", None),
    "with every option on": ("postal-scale", EVERYTHING_ON),
}
TOLERANCE = 0.01  # of the stock window's; one start differs from another by a quarter of that


FONTS = pathlib.Path("/usr/share/fonts/truetype/dejavu")
FONTS_ALONE = """<fontconfig>
<dir>{fonts}</dir><cachedir>{cache}</cachedir>
<match><edit name="family" mode="prepend" binding="strong"><string>DejaVu Sans</string></edit></match>
</fontconfig>
"""


def measure(session, fonts):
    """By start.

    @param fonts environment that tells of them"""
    return {name: _count(session, binary(program), settings, fonts)
            for name, (program, settings) in STARTS.items()}


def one_family(session):
    """Environment in which there is no other, with a cache of it."""
    if not FONTS.is_dir():
        raise FileNotFoundError(f"{FONTS}: without its font the counts are others")
    folder = session.new_folder("fonts")
    cache = folder / "cache"
    file = folder / "fonts.conf"
    file.write_text(FONTS_ALONE.format(fonts=FONTS, cache=cache), encoding="utf-8")
    environment = {"FONTCONFIG_FILE": str(file)}
    processor_time_of_start(session, binary(STARTS[FLOOR][0]), None, environment)
    if not any(cache.iterdir()):
        raise RuntimeError("the fonts have been looked up, and there is no cache of them")
    return environment


def _count(session, program, settings, environment):
    folder = session.new_folder("counted")
    write_settings(folder, settings)
    profile = folder / "profile"
    plain = {name: value for name, value in poll_instructions.PLAIN_PROCESSOR.items()
             if name != "QT_QPA_PLATFORM"}
    subprocess.run(
        ["valgrind", "--tool=callgrind", f"--callgrind-out-file={profile}", program], check=True,
        env=session.environment | plain | environment
        | {"XDG_CONFIG_HOME": str(folder), "LD_PRELOAD": binary("start-cost.so")},
        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return poll_instructions.total(profile)


def compare(counts, expected):
    """Both ways: a gain that is not recorded is a loss that may follow unseen."""
    floor = counts[FLOOR]
    agree = True
    for name in expected:
        above = counts[name] - floor
        off = (above - expected[name]) / floor
        agree = agree and abs(off) <= TOLERANCE
        print(f"{name}: {above} instructions above {floor}, "
              f"{off:+.2%} of a start off the record")
    return agree


def main():
    qt_version, *options = sys.argv[1:]
    file = poll_instructions.RECORDS / f"start-qt-{qt_version}.txt"
    again = (f"PYTHONPATH=tests/driver POSTAL_SCALE_BIN=build/release/bin "
             f"bench/start_instructions.py {qt_version} --record")
    if options != ["--record"] and not file.exists():
        print(f"No start of Qt {qt_version} is recorded. To record that of today: {again}")
        sys.exit(poll_instructions.NOT_RECORDED)
    with contextlib.closing(harness.Session()) as session:
        counts = measure(session, one_family(session))
    if options == ["--record"]:
        poll_instructions.record({name: counts[name] - counts[FLOOR] for name in STARTS
                                  if name != FLOOR}, file)
    elif not compare(counts, poll_instructions.recorded(file)):
        sys.exit(f"More than {TOLERANCE:.0%} of a start off {file.name}. If that is meant: {again}")


if __name__ == "__main__":
    main()
