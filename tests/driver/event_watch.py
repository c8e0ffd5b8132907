# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What the X server tells of a window: every change, however soon the next one follows."""

import itertools
import re
import subprocess

from harness import LogLines
from session import end
from waiting import wait_until

_MARK = "SEEN_BY_WATCHER"


class EventWatch:
    """Sees everything from its construction on."""

    def __init__(self, session, *window):
        """@param window "-root", or "-id" and its number"""
        self._session = session
        self._window = window
        self._watcher = session.spawn(
            ["xev", *window, "-event", "property", "-event", "structure"],
            stdout=subprocess.PIPE, text=True)
        self.lines = LogLines(self._watcher.stdout)
        wait_until(lambda: self._touch() or self.lines.since(0, _MARK), "the watcher at work")

    def close(self):
        end(self._watcher)
        self.lines.finish()

    def sizes(self):
        """Those that it has had so far, one after the other."""
        found = (re.search(r" width (\d+), height (\d+),", line) for line in self.lines.since(0))
        sizes = (tuple(map(int, each.groups())) for each in found if each)
        return [size for size, _ in itertools.groupby(sizes)]

    def _touch(self):
        self._session.output_of("xprop", *self._window, "-f", _MARK, "8s", "-set", _MARK, "yes")
