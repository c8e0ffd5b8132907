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

import class_scenarios
import logind_scenarios
import port_scenarios
import report_scenarios
import scenarios
import session_scenarios
from desk import Desk
from guest import Guest

MODULES = [scenarios, class_scenarios, port_scenarios, report_scenarios, session_scenarios,
           logind_scenarios]

LATEST_LINES = 300


def kernel_log():
    return subprocess.run(["dmesg"], stdout=subprocess.PIPE, text=True,
                          check=True).stdout.splitlines()


def busy_seconds():
    """Of the processor, so far: all that the guest costs its host."""
    ticks = [int(each) for each in pathlib.Path("/proc/stat").read_text().split()[1:9]]
    idle, waiting = ticks[3:5]
    return (sum(ticks) - idle - waiting) / os.sysconf("SC_CLK_TCK")


def play(guest, scenario):
    start = time.monotonic()
    busy = busy_seconds()
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
    report = [f"{seconds:.1f} s of the guest's time, busy for {busy_seconds() - busy:.1f} s of them",
              *notes, *problem]
    return {"scenario": scenario.__name__, "passed": not problem, "report": "\n".join(report)}


def scenario_called(name):
    [found] = {getattr(module, name) for module in MODULES if hasattr(module, name)}
    return found


def main():
    os.environ["PATH"] = "/usr/sbin:/usr/bin"
    arguments = pathlib.Path("/proc/cmdline").read_text()
    names = re.search(r"scenarios=(\S+)", arguments).group(1).split(",")
    has_session = "session=1" in arguments.split()
    guest = (Desk if has_session else Guest)("full=1" in arguments.split())
    with open("/dev/ttyS1", "w", encoding="utf-8") as verdicts:
        for name in names:
            print(json.dumps(play(guest, scenario_called(name))), file=verdicts, flush=True)


try:
    main()
except Exception:
    traceback.print_exc()
finally:
    subprocess.run(["poweroff", "-f"], check=False)
