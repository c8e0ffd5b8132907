# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The emulated scale, spoken to over its socket (see emulator/README.md)."""

import dataclasses
import socket

from waiting import PATIENCE, wait_until

POLL_MARKER = 0x90
COMMAND_MARKER = 0xA0

POWER_OFF = 0x01
TARE_RELEASED = 0x02
HOLD_RELEASED = 0x04
UNIT_BITS = 0x38
UNIT_SETTLED = 0x80


@dataclasses.dataclass(frozen=True)
class FeatureReport:
    """What the scale was sent."""

    seconds: float
    data: bytes

    @property
    def is_poll(self):
        return self.data[0] == POLL_MARKER

    @property
    def is_command(self):
        return self.data[0] == COMMAND_MARKER

    @property
    def command(self):
        """The command byte, which rides on polls too."""
        return self.data[1]


class EmulatedScale:
    """One request at a time; an answer `error ...` is raised."""

    def __init__(self, path):
        self._connection = wait_until(lambda: _connected(path), "no emulator on its socket")
        self._lines = self._connection.makefile("r", encoding="ascii", newline="\n")

    def close(self):
        self._lines.close()
        self._connection.close()

    def tell(self, command):
        self._connection.sendall(command.encode("ascii") + b"\n")
        answer = self._next_line()
        if answer.startswith("error"):
            raise RuntimeError(f"{command}: {answer}")
        return answer

    def tell_all(self, *commands):
        for command in commands:
            self.tell(command)

    def lines(self, command):
        """Of a command that answers their count first."""
        return [self._next_line() for _ in range(int(self.tell(command)))]

    def reports(self):
        count = int(self.tell("reports"))
        return [_report(self._next_line()) for _ in range(count)]

    def commands(self):
        return [report for report in self.reports() if report.is_command]

    def polls(self):
        return [report for report in self.reports() if report.is_poll]

    def was_last_told_to_switch_off(self):
        last = self.reports()[-1]
        return bool(last.is_command and last.command & POWER_OFF)

    def wait_for_reports(self, count, timeout=PATIENCE):
        answer = self.tell(f"wait-reports {count} {int(timeout * 1000)}")
        if answer != "ok":
            raise AssertionError(f"no {count} feature reports within {timeout:g} s")

    def stays_without_reports(self, seconds):
        return self.tell(f"wait-reports 1 {int(seconds * 1000)}") == "timeout"

    def wait_for_command(self, index, timeout=PATIENCE):
        """The command at that place since the list was cleared, as soon as it has come."""
        return wait_until(lambda: self.commands()[index : index + 1],
                          lambda: f"command {index}; so far {self.reports()}", timeout)[0]

    def wait_for_polls_after(self, report, count):
        """When the last of them has come, the readings of those before are on the panel."""
        def polls():
            return [poll for poll in self.polls() if poll.seconds > report.seconds]

        wait_until(lambda: len(polls()) >= count, f"{count} polls after {report}")
        return polls()[:count]

    def state(self):
        return dict(pair.split("=", 1) for pair in self.tell("state").split())

    def wait_for_state(self, **expected):
        wanted = {key.replace("_", "-"): value for key, value in expected.items()}
        wait_until(lambda: wanted.items() <= self.state().items(),
                   lambda: f"the scale in {wanted}; it is in {self.state()}")

    def _next_line(self):
        line = self._lines.readline()
        if not line:
            raise RuntimeError("the emulator is gone")
        return line.rstrip("\n")


def _connected(path):
    connection = socket.socket(socket.AF_UNIX)
    try:
        connection.connect(path)
    except (FileNotFoundError, ConnectionRefusedError):
        connection.close()
        return None
    return connection


def _report(line):
    seconds, data = line.split()
    return FeatureReport(float(seconds), bytes.fromhex(data))
