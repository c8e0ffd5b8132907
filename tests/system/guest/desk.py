# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""A clerk's session at the machine's seat, registered with the real logind, and its X server."""

import os
import pathlib
import re
import subprocess

from guest import PROGRAM, Guest
from program import Program
from system import SEAT_USER, wait_until

USER = "clerk"
HOME = pathlib.Path("/home", USER)
DISPLAY = ":0"
X_SOCKET = pathlib.Path("/tmp/.X11-unix/X0")

LOGIND = ["org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager"]


class SessionProgram(Program):
    """Its own process is that which stands for the session; the program is its child."""

    def __init__(self):
        environment = {"DISPLAY": DISPLAY, "QT_QPA_PLATFORM": "xcb", "LANG": "C.UTF-8",
                       "PATH": "/usr/bin:/bin", "XDG_SEAT": "seat0", "XDG_VTNR": "1"}
        super().__init__(["/usr/sbin/runuser", "-u", USER, "--", PROGRAM],
                         {"env": environment, "text": True})

    @property
    def identifier(self):
        leader = self.process.pid
        [child] = pathlib.Path(f"/proc/{leader}/task/{leader}/children").read_text().split()
        return int(child)

    @property
    def session(self):
        """As logind calls it."""
        group = pathlib.Path(f"/proc/{self.identifier}/cgroup").read_text()
        return re.search(r"session-(.+)\.scope", group).group(1)


class Desk(Guest):
    def __init__(self, is_full):
        HOME.mkdir(parents=True)
        os.chown(HOME, SEAT_USER, SEAT_USER)
        super().__init__(is_full)
        self.x_server = None

    def restore_seat(self):
        """It is logind's to give."""

    def start_program(self, user=SEAT_USER):
        assert user == SEAT_USER
        self.x_server = subprocess.Popen(["Xvfb", DISPLAY, "-ac", "-nolisten", "tcp"])
        wait_until(X_SOCKET.exists, "the X server")
        program = SessionProgram()
        self.programs.append(program)
        return program

    def clear_away(self):
        result = super().clear_away()
        if self.x_server:
            self.x_server.kill()
            self.x_server.wait()
        X_SOCKET.unlink(missing_ok=True)  # so that the next one's is waited for
        return result


def ask_logind(*request):
    return subprocess.run(["busctl", "call", *LOGIND, *request], check=True, text=True,
                          stdout=subprocess.PIPE).stdout
