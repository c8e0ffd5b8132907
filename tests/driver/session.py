# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""A desktop session of its own: X server, window manager, session bus, accessibility bus."""

import contextlib
import ctypes
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile

from accessibility import AccessibilityBus
from waiting import wait_until

_PR_SET_PDEATHSIG = 1
_PR_SET_CHILD_SUBREAPER = 36
_libc = ctypes.CDLL(None, use_errno=True)

# Large enough for the program beside another window.
_SCREEN = "1280x1024x24"

# What the caller's own desktop must not bring in.
_FOREIGN_VARIABLES = ("DBUS_", "LC_", "QT_", "XDG_", "LANG", "WAYLAND_DISPLAY", "AT_SPI_")


class Session:
    """Everything it starts ends with it, also what those programs started themselves."""

    def __init__(self, screen=_SCREEN):
        self._screen = screen
        self._cleanup = contextlib.ExitStack()
        with contextlib.ExitStack() as undo:
            undo.callback(self.close)
            self._start()
            undo.pop_all()

    def close(self):
        self._cleanup.close()

    def spawn(self, arguments, environment=None, stdin=subprocess.DEVNULL, **options):
        return subprocess.Popen(arguments, env=environment or self.environment, stdin=stdin,
                                preexec_fn=_die_with_parent, **options)

    def new_folder(self, name):
        return pathlib.Path(tempfile.mkdtemp(prefix=name + "-", dir=self.folder))

    def output_of(self, *arguments):
        return subprocess.run(arguments, env=self.environment, check=True, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE).stdout

    def pointer_clicks(self, *places):
        arguments = []
        for x, y in places:
            arguments += ["mousemove", str(x), str(y), "click", "1"]
        self.output_of("xdotool", *arguments)

    def managed_windows(self):
        """Window ids by WM_CLASS, of the windows that the window manager knows."""
        windows = {}
        for line in self.output_of("wmctrl", "-lx").splitlines():
            window, _, window_class = line.split()[:3]
            windows.setdefault(window_class.split(".")[0], []).append(window)
        return windows

    def lose_x_server(self):
        """As in a crash: its clients learn of it by their broken connections."""
        self._x_server.kill()
        self._x_server.wait()

    def _start(self):
        _libc.prctl(_PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="postal-scale-session-"))
        self._cleanup.callback(shutil.rmtree, self.folder)
        self._cleanup.callback(_end_remaining_children)
        self.environment = self._make_environment()
        self._start_x_server()
        self._start_session_bus()
        self._start_window_manager()
        self.accessibility = AccessibilityBus(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        self._cleanup.callback(self.accessibility.close)

    def _make_environment(self):
        kept = {name: value for name, value in os.environ.items()
                if not name.startswith(_FOREIGN_VARIABLES)}
        runtime = self.folder / "runtime"
        runtime.mkdir(mode=0o700)
        return kept | {
            "HOME": str(self.folder),
            "TMPDIR": str(self.folder),
            "XDG_RUNTIME_DIR": str(runtime),
            "XDG_CONFIG_HOME": str(self.folder / "config"),
            "LC_ALL": "C.UTF-8",
        }

    def _start_x_server(self):
        reading, writing = os.pipe()
        # Without resets: between its first clients it would start over, and drop the next one.
        self._x_server = self.spawn(["Xvfb", "-displayfd", str(writing), "-screen", "0",
                                     self._screen,
                                     "-nolisten", "tcp", "-noreset"],
                                    pass_fds=[writing], stderr=subprocess.DEVNULL)
        self._ends_with_session(self._x_server)
        os.close(writing)
        with os.fdopen(reading) as number:
            self.environment["DISPLAY"] = ":" + number.readline().strip()

    def _start_session_bus(self):
        bus = self.spawn(["dbus-daemon", "--session", "--nofork", "--print-address",
                          f"--address=unix:path={self.folder}/bus"],
                         stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self._ends_with_session(bus)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
        bus.stdout.close()

    def _start_window_manager(self):
        self.window_manager = self.spawn(["openbox", "--sm-disable"],
                                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self._ends_with_session(self.window_manager)
        # The last of what it tells of itself at its start.
        wait_until(lambda: "window id" in self.output_of("xprop", "-root", "_NET_CLIENT_LIST"),
                   "a window manager")

    def _ends_with_session(self, process):
        self._cleanup.callback(end, process)


def end(process):
    process.terminate()
    try:
        process.wait(timeout=5)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


def _die_with_parent():
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGTERM, 0, 0, 0)


def _end_remaining_children():
    """Those whose own parents are gone have become ours: the buses' helpers, above all."""
    while True:
        try:
            finished, _ = os.waitpid(-1, os.WNOHANG)
        except ChildProcessError:
            return
        if finished == 0:
            for child in _children():
                os.kill(child, signal.SIGKILL)
            os.waitpid(-1, 0)


def _children():
    text = pathlib.Path(f"/proc/self/task/{os.getpid()}/children").read_text(encoding="ascii")
    return [int(number) for number in text.split()]
