# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Plays the scenarios that the kernel's command line names and switches off. Verdicts go out on the
second serial port, one line of JSON each."""

import json
import os
import pathlib
import re
import subprocess
import time
import traceback

import scenarios
from guest import Guest

LATEST_LINES = 300


def kernel_log():
    return subprocess.run(["dmesg"], stdout=subprocess.PIPE, text=True,
                          check=True).stdout.splitlines()


def play(guest, scenario):
    start = time.monotonic()
    try:
        scenario(guest)
        guest.check_nothing_left()
        problem = []
    except Exception:
        problem = [traceback.format_exc()]
    notes, program_log = guest.clear_away()
    if problem:
        problem += ["The program's latest lines:", *program_log[-LATEST_LINES:],
                    "The kernel's latest lines:", *kernel_log()[-LATEST_LINES // 10:]]
    seconds = time.monotonic() - start
    report = [f"{seconds:.1f} s of the guest's time", *notes, *problem]
    return {"scenario": scenario.__name__, "passed": not problem, "report": "\n".join(report)}


def main():
    os.environ["PATH"] = "/usr/sbin:/usr/bin"
    arguments = pathlib.Path("/proc/cmdline").read_text()
    names = re.search(r"scenarios=(\S+)", arguments).group(1).split(",")
    guest = Guest()
    with open("/dev/ttyS1", "w", encoding="utf-8") as verdicts:
        for name in names:
            print(json.dumps(play(guest, getattr(scenarios, name))), file=verdicts, flush=True)


try:
    main()
except Exception:
    traceback.print_exc()
finally:
    subprocess.run(["poweroff", "-f"], check=False)
