# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Desktops to be brought up without a screen, each with the same few things that a person does."""

import os
import shlex
import subprocess

from session import Session
from waiting import wait_until

START_PATIENCE = 180
"""Seconds that a desktop may take that was not started before."""

KEY_VERBS = {
    "F4": "",
    "F6": "--capture",
    "F7": "--hold toggle",
    "F8": "--unit oz",
    "F9": "--tare",
    "F11": "--compact toggle",
    "F12": "--power",
}
"""What the desktop's own settings have its keys start."""


class Desktop(Session):
    """@cvar lets_place windows where somebody wants them, and tells programs where that is
    @cvar has_keys whether its settings have been made for KEY_VERBS
    @cvar lets_write_clipboard also while another window has the focus
    @cvar keeps_on_top a window that asks for it
    @cvar second_start what it does with the window that a second start asks for: "in front",
        "marked", or None where it does neither
    @cvar tells_of_second_start the start itself: it cannot know what has become of the window"""

    lets_place = True
    is_wayland = False
    has_keys = True
    lets_write_clipboard = True
    keeps_on_top = True
    second_start = "in front"
    tells_of_second_start = False

    def run(self, *arguments):
        """Its output, as far as it succeeds."""
        return subprocess.run(arguments, env=self.environment, check=False, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout

    def _make_environment(self):
        environment = super()._make_environment()
        self._said = self.folder / "said"
        self._said.touch()
        program = shlex.quote(os.path.join(os.environ["POSTAL_SCALE_BIN"], "postal-scale"))
        for key, verb in KEY_VERBS.items():
            command = self.folder / f"at-{key}"
            command.write_text(f"#!/bin/sh\n{program} {verb} >> {self._said} 2>&1\n",
                               encoding="utf-8")
            command.chmod(0o755)
        return environment

    def command_at(self, key):
        """What KEY_VERBS has at this key, as one word."""
        return str(self.folder / f"at-{key}")

    def said_at_keys(self):
        """By the commands that keys have started, line by line."""
        return self._said.read_text(encoding="utf-8").splitlines()

    def windows(self):
        """By title: whatever activate() and close_window() need."""
        raise NotImplementedError

    def activate(self, title):
        raise NotImplementedError

    def active_title(self):
        raise NotImplementedError

    def close_window(self, title):
        """As its close button does."""
        raise NotImplementedError

    def press(self, key):
        """@param key its name, as X11 has it; it goes to the window that has the keyboard"""
        raise NotImplementedError

    def is_above(self, title, other):
        """Whether it is stacked above the other; None where windows have places side by side."""
        return None

    def place(self, title, x, y, width):
        """Where a person might drag it to; only of a window on an X server."""
        self.run("wmctrl", "-r", title, "-e", f"0,{x},{y},{width},-1")

    def take_picture(self, file):
        """Of the whole screen."""
        self.run("import", "-window", "root", str(file))

    def set_scale(self, scale):
        """Of the screen, as its settings do; the nearest that there is."""
        raise NotImplementedError

    def tile_of(self, title):
        """What the window is to fill, width and height; None where there are no tiles."""
        return None

    def cover(self, title, other):
        """Lays the other window over it, where no window is marked that can be seen."""

    def is_marked(self, title):
        """Whether the desktop shows that this window wants to be looked at."""
        return False

    def bring_to_front(self, title):
        wait_until(lambda: self.window_titled(title), lambda: f"a window {title!r}")
        self.activate(title)
        wait_until(lambda: self.active_title() == title,
                   lambda: f"{title!r} in front; it is {self.active_title()!r}")

    def window_titled(self, title):
        return self.windows().get(title)


class X11Desktop(Desktop):
    """@cvar manager the window manager's command"""

    manager = ("openbox", "--sm-disable")

    def _start_window_manager(self):
        manager = self.spawn(self.manager, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self._ends_with_session(manager)
        wait_until(lambda: "window id" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"),
                   "a window manager")

    def windows(self):
        found = {}
        for line in self.run("wmctrl", "-l").splitlines():
            window, _, _, *title = line.split(None, 3)
            found["".join(title)] = window
        return found

    def activate(self, title):
        self.run("wmctrl", "-i", "-a", self.window_titled(title))

    def active_title(self):
        active = self._numbers_of_root("_NET_ACTIVE_WINDOW")
        return next((title for title, window in self.windows().items()
                     if int(window, 16) in active), None)

    def close_window(self, title):
        self.run("wmctrl", "-i", "-c", self.window_titled(title))

    def press(self, key):
        self.run("xdotool", "key", key)

    def is_above(self, title, other):
        order = self._numbers_of_root("_NET_CLIENT_LIST_STACKING")
        places = [order.index(int(self.window_titled(each), 16)) for each in (title, other)]
        return places[0] > places[1]

    def is_marked(self, title):
        state = self.run("xprop", "-id", self.window_titled(title), "_NET_WM_STATE", "WM_HINTS")
        return "DEMANDS_ATTENTION" in state or "urgency hint bit is set" in state

    def _numbers_of_root(self, name):
        text = self.run("xprop", "-root", name).partition("#")[2]
        return [int(number, 16) for number in text.replace(",", " ").split()]


class WaylandDesktop(Desktop):
    """Without X server but the compositor's own."""

    lets_place = False
    is_wayland = True

    def _start_x_server(self):
        pass

    def _telling(self):
        """For the compositor's shell: tells what its clients' environment is."""
        told = self.folder / "told"
        return f"env -0 > {told}.new && mv {told}.new {told}"

    def _take_told(self, *names):
        told = self.folder / "told"
        wait_until(told.exists, "a compositor", START_PATIENCE)
        variables = dict(line.split("=", 1)
                         for line in told.read_text(encoding="utf-8").split("\0") if "=" in line)
        self.environment |= {name: variables[name] for name in names if name in variables}
