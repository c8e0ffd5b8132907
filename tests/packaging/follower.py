# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""A follower of the readings, and what its tests leave behind."""

import contextlib
import json
import subprocess

import harness
from command_line import CommandLineTest
from harness import LogLines
from waiting import wait_until

SOURCE = "postal-scale --for-followers"


class Follower:
    """A run of the program with --follow --json, and the objects that it prints."""

    def __init__(self, test, *arguments, environment):
        self.process = test.session.spawn(
            [harness.binaries() / "postal-scale", "--follow", "--json", *arguments], environment,
            stdout=subprocess.PIPE, text=True)
        self.lines = LogLines(self.process.stdout)
        test.addCleanup(self.end)

    def end(self):
        harness.end(self.process)
        self.lines.finish()

    def reports(self, since=0):
        return [json.loads(line) for line in self.lines.since(since)]

    def wait_for(self, since=0, **expected):
        """The first object with these values."""
        def found():
            for report in self.reports(since):
                if all(report[key] == value for key, value in expected.items()):
                    return report
            return None
        return wait_until(found, lambda: f"{expected}; there is {self.reports(since)[-3:]}")


class FollowTest(CommandLineTest):
    """Whoever reads the scale without a window ends with the last follower; the next test has
    another scale."""

    def setUp(self):
        super().setUp()
        self.addCleanup(self.wait_for_the_source_s_end)

    def wait_for_the_source_s_end(self):
        wait_until(lambda: not self.sources(), "the end of the process that read the scale")

    def sources(self):
        running = subprocess.run(["pgrep", "-f", SOURCE], capture_output=True, text=True,
                                 check=False).stdout.split()
        return [pid for pid in running if str(self.session.folder) in environment_of(pid)]


def environment_of(pid):
    with contextlib.suppress(OSError):
        with open(f"/proc/{pid}/environ", encoding="utf-8", errors="replace") as file:
            return file.read()
    return ""
