#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Boots the guest and waits until it has played its scenarios.

Its status tells whether the guest got to the end; verdict.py tells of each scenario.
"""

import argparse
import json
import os
import pathlib
import resource
import shutil
import subprocess
import sys
import time

import initrd

QEMU = "qemu-system-x86_64"

# Seconds of processor time, several times what a run takes. A guest that hangs uses them up soon:
# its clock goes on. A host that has no time for it does not.
PROCESSOR_TIME = 800
FULL_RUN = 4  # times as much


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    for name in "parts", "results", "program", "gadget", "rule", "qt-plugins":
        parser.add_argument("--" + name, type=pathlib.Path, required=True)
    parser.add_argument("--full", action="store_true", help="with as many rounds as are promised")
    parser.add_argument("--session", action="store_true", help="with systemd, logind and X")
    parser.add_argument("scenarios", nargs="+")
    return parser.parse_args()


def check_tools():
    if not shutil.which(QEMU):
        sys.exit(f"{QEMU} is missing: install the package qemu-system-x86")
    if not initrd.BUSYBOX.exists():
        sys.exit("busybox is missing: install the package busybox-static")


def qemu_command(arguments):
    # Time inside follows the count of instructions, and jumps ahead while nothing is to be done:
    # a busy host makes the run longer but delays nothing that the guest could notice, and the half
    # second that the kernel takes for each plug costs no time.
    parts, results = arguments.parts, arguments.results
    # The looped-back port looks for something to do 8000 times a second as long as the scale's node is
    # open; without timers of high resolution it does so at each tick of the kernel, 250 times.
    # What the kernel does not know itself, its first process finds in its environment.
    session = "session=1 systemd.log_target=console " if arguments.session else ""
    return [
        QEMU, "-accel", "tcg,thread=single", "-icount", "shift=1,sleep=off",
        "-machine", "q35", "-smp", "1", "-cpu", "qemu64", "-m", "1024",
        "-nodefaults", "-no-user-config", "-display", "none", "-monitor", "none", "-no-reboot",
        "-serial", f"file:{results / 'console.log'}", "-serial", f"file:{results / 'verdicts'}",
        "-kernel", parts / "vmlinux", "-initrd", results / "initrd",
        "-append", "console=ttyS0 quiet panic=-1 mitigations=off nokaslr highres=off "
                   f"{session}full={int(arguments.full)} scenarios={','.join(arguments.scenarios)}",
    ]


def run(command, limit):
    """The processor time it took, in seconds, and @param limit may take at most."""
    def limit_processor_time():
        resource.setrlimit(resource.RLIMIT_CPU, (limit, limit))

    guest = subprocess.run(command, stdin=subprocess.DEVNULL, check=False,
                           preexec_fn=limit_processor_time)
    if guest.returncode != 0:
        print(f"the guest was stopped: status {guest.returncode}")
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    return usage.ru_utime + usage.ru_stime


def collect(results):
    """The scenarios that have been played, each in a file of its own."""
    verdicts = [json.loads(line) for line in open(results / "verdicts", encoding="utf-8")
                if line.endswith("}\n")]
    for verdict in verdicts:
        (results / (verdict["scenario"] + ".json")).write_text(json.dumps(verdict))
    return [verdict["scenario"] for verdict in verdicts]


def main():
    arguments = parse_arguments()
    package = os.environ.get("POSTAL_SCALE_PACKAGE")
    check_tools()
    results = arguments.results
    # Nothing of an earlier run may pass for this one's.
    shutil.rmtree(results, ignore_errors=True)
    results.mkdir(parents=True)
    initrd.make(results / "initrd", arguments.parts, arguments.program, arguments.gadget,
                arguments.rule, arguments.qt_plugins, package, arguments.session)
    print(f"the program of {package or 'this build'}")
    start = time.monotonic()
    processor = run(qemu_command(arguments),
                    PROCESSOR_TIME * (FULL_RUN if arguments.full else 1))
    (results / "initrd").unlink()
    print((results / "console.log").read_text(errors="replace"))
    print(f"the guest ran for {time.monotonic() - start:.1f} s, of which {processor:.1f} s of "
          "processor time")
    played = collect(results)
    if played != arguments.scenarios:
        sys.exit(f"the guest came no further than {played}")


if __name__ == "__main__":
    main()
