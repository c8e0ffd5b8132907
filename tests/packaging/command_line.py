# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The program as scripts use it: started with options, and ending by itself."""

import json
import subprocess

import harness
from emulated_scale import EmulatedScale
from reading_schema import assert_valid
from waiting import PATIENCE

# Neither a display nor a session bus is needed.
_DESKTOP_VARIABLES = ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS")


class Result:
    def __init__(self, completed):
        self.status = completed.returncode
        self.output = completed.stdout
        self.errors = completed.stderr

    @property
    def report(self):
        """What --json has printed: one line, one object."""
        (line,) = self.output.splitlines()
        report = json.loads(line)
        assert_valid(report)
        return report


class CommandLineTest(harness.DeviceTest):
    def environment(self, **changes):
        kept = {name: value for name, value in self.session.environment.items()
                if name not in _DESKTOP_VARIABLES}
        return kept | {"XDG_CONFIG_HOME": str(self.session.new_folder("config"))} | changes

    def run_program(self, *arguments, **changes):
        """Beside whatever runs in the session; it sees no scale itself."""
        return Result(subprocess.run([harness.binaries() / "postal-scale", *arguments],
                                     env=self.environment(**changes), stdin=subprocess.DEVNULL,
                                     capture_output=True, text=True, timeout=PATIENCE))

    def run_with_scale(self, *arguments, scale=(), prepare=(), command=None):
        """With a scale of its own. @param scale arguments of the emulator; @param prepare commands
        that the emulator gets before the program starts"""
        folder = self.session.new_folder("emulator")
        gate = folder / "gate"
        socket = folder / "socket"
        command = command or [harness.binaries() / "postal-scale", *arguments]
        # The shell opens its end only once the test has opened the other.
        waiting = ["sh", "-c", 'cat "$0" && exec "$@"', gate]
        subprocess.run(["mkfifo", gate], check=True)
        process = self.session.spawn(
            [harness.binaries() / "postal-scale-emulator", "--socket", socket, *scale, "--",
             *waiting, *command],
            self.environment(), stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.addCleanup(harness.end, process)
        emulator = EmulatedScale(str(socket))
        self.addCleanup(emulator.close)
        emulator.tell_all(*prepare)
        with open(gate, "w", encoding="ascii"):
            pass
        output, errors = process.communicate(timeout=PATIENCE)
        return Result(subprocess.CompletedProcess(command, process.returncode, output, errors))
