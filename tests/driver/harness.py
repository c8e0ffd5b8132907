# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The real program on the emulated scale, in a session of its own, driven as a person would.

POSTAL_SCALE_BIN names the folder with the built programs.
"""

import os
import pathlib
import re
import subprocess
import sys
import threading
import unittest

from emulated_scale import EmulatedScale
from main_window import MainWindow
from session import Session, end
from waiting import PATIENCE, wait_until

POLL_INTERVAL = 0.4
"""Seconds."""

_LOG_TAIL = 60

STAYING = ("sh", "-c", '"$@"; echo "ended with $?" >&2; exec sleep 600', "sh")
"""Wrapper for a program whose emulator, which ends with its command, is to be asked afterwards."""


class LogLines:
    """What the program writes, as it comes."""

    def __init__(self, stream):
        self._lines = []
        self._stream = stream
        self._thread = threading.Thread(target=self._read, daemon=True)
        self._thread.start()

    def mark(self):
        """A place to count from."""
        return len(self._lines)

    def since(self, mark, pattern=""):
        return [line for line in self._lines[mark:] if re.search(pattern, line)]

    def wait_for(self, pattern, mark=0, count=1, timeout=PATIENCE):
        return wait_until(lambda: len(self.since(mark, pattern)) >= count,
                          lambda: f"{count} times {pattern!r} in the log", timeout)

    def finish(self):
        self._thread.join()
        self._stream.close()

    def tail(self):
        return "\n".join(self._lines[-_LOG_TAIL:])

    def _read(self):
        for line in self._stream:
            self._lines.append(line.rstrip("\n"))


SLOWNESS = 4
SLOWED_DOWN = ("faketime", "-f", f"+0 x{1 / SLOWNESS}")
"""A wrapper: what is to happen within two seconds of the program's clock has SLOWNESS times as long,
so that a busy machine is in time too."""

USPS_ONLY = "[defaultValue]\n400=selected\n"
"""Settings: with a carrier's option on, the window tells of the browsers."""


class Program:
    """One run of the program, with an emulator of its own around it."""

    def __init__(self, session, *, arguments=(), settings=None, settings_folder=None,
                 environment=None, wrapper=(), program_arguments=()):
        """@param settings the text of the settings file
        @param settings_folder of an earlier run
        @param wrapper a command that starts the program in its turn"""
        self._session = session
        self.settings_folder = settings_folder or session.new_folder("config")
        self._settings_file = self.settings_folder / "postal-scale" / "postal-scale.ini"
        if settings is not None:
            self._settings_file.parent.mkdir()
            self._settings_file.write_text(settings, encoding="utf-8")
        socket = session.new_folder("emulator") / "socket"
        self._start(socket, arguments, environment or {},
                    [*wrapper, binaries() / "postal-scale", *program_arguments])
        try:
            self.scale = EmulatedScale(str(socket))
            self.window = wait_until(self._find_window, "the program's window")
        except BaseException:
            self.kill()
            raise

    def _start(self, socket, arguments, environment, command):
        self._emulator = self._session.spawn(
            [binaries() / "postal-scale-emulator", "--socket", socket, *arguments, "--",
             *command],
            self._session.environment | {
                "XDG_CONFIG_HOME": str(self.settings_folder),
                "QT_QPA_PLATFORM": "xcb",
                "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
                "QT_FORCE_STDERR_LOGGING": "1",
                "QT_LOGGING_RULES": "postalscale*.info=true",
                "QT_MESSAGE_PATTERN": "%{category}: %{message}",
            } | environment,
            stderr=subprocess.PIPE, text=True, errors="replace")
        self.log = LogLines(self._emulator.stderr)

    @property
    def emulator_pid(self):
        """The program is its child."""
        return self._emulator.pid

    @property
    def is_running(self):
        return self._emulator.poll() is None

    def wait_for_polls(self, count=2):
        """Until that many further polls have begun, so that one less is over and shown."""
        self.log.wait_for("readData$", self.log.mark(), count)

    def settled_reading(self):
        """The panel, once it shows what was done until now: the first poll brings the answer."""
        self.wait_for_polls(2)
        return self.window.reading

    def wait_for_reading(self, expected):
        wait_until(lambda: self.window.reading == expected,
                   lambda: f"{expected!r} on the panel; it shows {self.window.reading!r}")

    def wait_for_status(self, expected):
        wait_until(lambda: self.window.status == expected,
                   lambda: f"the status {expected!r}; it is {self.window.status!r}")

    def settings_lines(self):
        """Of the settings file, as it is at this moment."""
        return self._settings_file.read_text(encoding="utf-8").splitlines()

    def stop(self):
        """As a person closes it. Returns the program's exit status."""
        if self.is_running:
            self.window.close()
        return self.wait_for_end()

    def wait_for_end(self):
        try:
            status = self._emulator.wait(PATIENCE)
        finally:
            self.kill()
        return status

    def kill(self):
        end(self._emulator)
        self.log.finish()
        if hasattr(self, "scale"):
            self.scale.close()

    def _find_window(self):
        if self._emulator.poll() is not None:
            raise AssertionError(f"the program did not start:\n{self.log.tail()}")
        ids = self._session.managed_windows().get("postal-scale", [])
        windows = self._session.accessibility.showing_windows()
        if len(ids) != 1 or len(windows) != 1 or not self._agree(windows[0], ids[0]):
            return None
        return MainWindow(self._session, windows[0], ids[0])

    def _agree(self, accessible, window_id):
        """Whether the program knows already where the window manager has put its window."""
        place = accessible.extents
        facts = self._session.output_of("xwininfo", "-id", window_id)
        return (f"Absolute upper-left X:  {place.x}\n" in facts
                and f"Absolute upper-left Y:  {place.y}\n" in facts)


class DeviceTest(unittest.TestCase):
    """One session for all tests of a class, a program for each."""

    @classmethod
    def setUpClass(cls):
        cls.session = Session()
        cls.addClassCleanup(cls.session.close)

    def start(self, *arguments, **options):
        """@param arguments of the emulator"""
        # A further one would only raise the window of the first.
        self.assertFalse([each for each in self._programs if each.is_running], "one at a time")
        program = Program(self.session, arguments=arguments, **options)
        self._programs.append(program)
        self.addCleanup(self._stop, program)
        return program

    def run(self, result=None):
        self._programs = []
        before = problems(result)
        super().run(result)
        if problems(result) > before:
            for program in self._programs:
                print(f"--- log of {self.id()}\n{program.log.tail()}", file=sys.stderr)

    def _stop(self, program):
        self.assertEqual(program.stop(), 0, "the program's exit status")


def problems(result):
    return len(result.failures) + len(result.errors)


def binaries():
    return pathlib.Path(os.environ["POSTAL_SCALE_BIN"])


def main():
    unittest.main(verbosity=2)
