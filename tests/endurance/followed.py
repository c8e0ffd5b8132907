#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Weeks of a script that follows the window: followed.py --lines N

Both are the real programs; the window's clock is sped up a thousandfold, so the weight changes as
fast as the exchange allows. Fails when the memory of either grows, when a line is no object or comes
twice, and when the last weight is not the last line's.
"""

import argparse
import json
import subprocess
import tempfile
import threading

import harness
from endurance import BOUND, SAMPLES, SPED_UP, child, resident_memory
from session import Session
from trend import Trend
from waiting import wait_until

WARM_UP_LINES = 3000
LOADS = (250, 1234)
LAST_LOAD = 777


class Follower:
    def __init__(self, session):
        self.process = session.spawn([harness.binaries() / "postal-scale", "--follow", "--json"],
                                     session.environment, stdout=subprocess.PIPE)
        self.lines = 0
        self.latest = {"count": 0}
        self.trouble = None
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def _read(self):
        for line in self.process.stdout:
            report = json.loads(line)
            if report["count"] <= self.latest["count"]:
                self.trouble = f"{report} after {self.latest}"
            self.latest = report
            self.lines += 1

    def end(self):
        harness.end(self.process)
        self._reader.join()


def follow(program, follower, lines):
    """Returns how many bytes of memory each line costs the window, and the follower."""
    processes = {"the window": child(child(program.emulator_pid)),
                 "the follower": follower.process.pid}
    trends = {name: Trend() for name in processes}
    step = 0
    first = follower.lines + WARM_UP_LINES
    for sample in range(SAMPLES + 1):
        goal = first + lines * sample // SAMPLES
        while follower.lines < goal:
            step += 1
            program.scale.tell(f"weight {LOADS[step % len(LOADS)]}")
            assert follower.process.poll() is None, "the follower has ended"
        for name, trend in trends.items():
            trend.add(follower.lines, resident_memory(processes[name]))
    return {name: trend.slope for name, trend in trends.items()}


def check(session, lines, environment):
    program = harness.Program(session, arguments=("--weight", "1234"), wrapper=SPED_UP,
                              environment=environment)
    follower = Follower(session)
    try:
        wait_until(lambda: follower.lines, "the first line")
        slopes = follow(program, follower, lines)
        program.scale.tell(f"weight {LAST_LOAD}")
        wait_until(lambda: follower.latest["weight"] == LAST_LOAD, "the last weight's line")
        print(f"{follower.lines} lines of {follower.latest['count']} counted; bytes per line: "
              + ", ".join(f"{name} {slope:.2f}" for name, slope in slopes.items()), flush=True)
        assert follower.trouble is None, follower.trouble
        assert max(slopes.values()) < BOUND, "memory grows with each line"
        assert program.stop() == 0
    finally:
        follower.end()
        program.kill()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--lines", type=int, required=True)
    arguments = parser.parse_args()
    session = Session()
    try:
        with tempfile.TemporaryDirectory(dir="/dev/shm") as memory:
            check(session, arguments.lines, {"TMPDIR": memory})
    finally:
        session.close()


if __name__ == "__main__":
    main()
