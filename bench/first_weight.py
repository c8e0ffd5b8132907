# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""How long a person waits for the first weight, and for what: milliseconds between the program's own
log lines, which have the time of the monotonic clock, and the frames that the X server shows."""

import subprocess
import time

from programs import Weighing, binary
from waiting import wait_until

LOG_PATTERN = "%{time boot} %{message}"
# Writes down when the program began.
TIMED_START = ("/usr/bin/python3", "-S", "-c",
               "import os, sys, time; open(sys.argv[1], 'w').write(str(time.monotonic()));"
               "os.execv(sys.argv[2], sys.argv[2:])")
POLLED = "readData$"
STEPS = ("DeviceAdded$", "our device$", POLLED, "W Value for Scale")


# For each run: heard of, opened, polled for the first time, weight decoded, its frame shown.


def from_plug(session, runs):
    program = Weighing(session, log_pattern=LOG_PATTERN)
    watch = session.spawn([binary("frame-watch"), "window", program.window], text=True,
                          stdout=subprocess.PIPE)
    watch.stdout.readline()
    frames = _Frames(watch.stdout)
    for _ in range(runs):
        mark = program.log.mark()
        program.scale.tell("unplug")
        # Its timer ends at the next tick.
        wait_until(lambda since=mark: _has_ended(program.log.since(since)), "the last tick")
        mark = program.log.mark()
        begun = time.monotonic() * 1000
        program.scale.tell("plug")
        times = _steps(program.log, mark)
        yield [each - begun for each in (*times, frames.next_after(times[-1]))]
    watch.kill()
    watch.wait()
    program.end()


def from_start(session, runs):
    """With the scale plugged in before the start; and, last, the window's own first frame."""
    for _ in range(runs):
        begun = session.new_folder("begun") / "at"
        watch = session.spawn([binary("frame-watch"), "window", "next"], text=True,
                              stdout=subprocess.PIPE)
        watch.stdout.readline()
        program = Weighing(session, log_pattern=LOG_PATTERN, wrapper=(*TIMED_START, str(begun)),
                           reports=1)
        watch.stdout.readline()
        times = _steps(program.log, 0)
        frames = _Frames(watch.stdout)
        first = frames.next()
        shown = frames.next_after(times[-1])
        watch.kill()
        watch.wait()
        program.end()
        start = float(begun.read_text(encoding="ascii")) * 1000
        yield [each - start for each in (*times, shown, first)]


def _has_ended(lines):
    removed = [place for place, line in enumerate(lines) if line.endswith("DeviceRemoved")]
    return bool(removed) and any(line.endswith("readData") for line in lines[removed[0]:])


def _steps(log, mark):
    """Times of the steps to a weight since then."""
    for step in STEPS:
        log.wait_for(step, mark)
    return [float(log.since(mark, step)[0].split()[0]) * 1000 for step in STEPS]


class _Frames:
    def __init__(self, stream):
        self._stream = stream

    def next(self):
        return int(self._stream.readline()) / 1e6

    def next_after(self, milliseconds):
        """The log's times are whole milliseconds, so that a frame may seem to come before."""
        return wait_until(lambda: self._later_than(milliseconds - 1), "a frame")

    def _later_than(self, milliseconds):
        shown = self.next()
        return shown if shown > milliseconds else None
