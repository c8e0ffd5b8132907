# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Desktops to be brought up without a screen, each with the same few things that a person does."""

import json
import os
import subprocess

from session import Session
from waiting import wait_until


class Desktop(Session):
    """@cvar platform the toolkit's name for where the program's window is expected"""

    platform = "xcb"
    is_wayland = False

    def run(self, *arguments):
        """Its output, as far as it succeeds."""
        return subprocess.run(arguments, env=self.environment, check=False, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout

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


class Openbox(X11Desktop):
    pass


class Metacity(X11Desktop):
    manager = ("metacity", "--no-composite")


class Xfwm4(X11Desktop):
    manager = ("xfwm4", "--compositor=off")


class KwinX11(X11Desktop):
    manager = ("env", "KWIN_COMPOSE=N", "kwin_x11")


class I3(X11Desktop):
    """Its windows stand side by side, and it keeps none above."""

    def _start_window_manager(self):
        configuration = self.folder / "i3"
        configuration.write_text("font pango:monospace 8\n", encoding="utf-8")
        self.manager = ("i3", "-c", str(configuration))
        super()._start_window_manager()

    def is_above(self, title, other):
        return None


class WaylandDesktop(Desktop):
    """Without X server but the compositor's own."""

    platform = "wayland"
    is_wayland = True

    def _start_x_server(self):
        pass


class Sway(WaylandDesktop):
    configuration = "xwayland disable\n"

    def _start_window_manager(self):
        told = self.folder / "told"
        configuration = self.folder / "sway"
        configuration.write_text(
            self.configuration + f"exec env -0 > {told}.new && mv {told}.new {told}\n",
            encoding="utf-8")
        self.environment |= {
            "XDG_CURRENT_DESKTOP": "sway", "XDG_SESSION_TYPE": "wayland",
            "WLR_BACKENDS": "headless", "WLR_LIBINPUT_NO_DEVICES": "1", "WLR_RENDERER": "pixman"}
        self._ends_with_session(self.spawn(["sway", "-c", configuration],
                                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        wait_until(told.exists, "sway")
        variables = dict(line.split("=", 1)
                         for line in told.read_text(encoding="utf-8").split("\0") if "=" in line)
        self.environment |= {name: variables[name]
                             for name in ("WAYLAND_DISPLAY", "SWAYSOCK", "DISPLAY")
                             if name in variables}
        # A keyboard exists for as long as somebody types with it.
        self._ends_with_session(self.spawn(["wtype", "-s", "3600000", ""],
                                           stderr=subprocess.DEVNULL))

    def windows(self):
        return {node["name"]: node["id"] for node in self._nodes() if node.get("pid")}

    def activate(self, title):
        self.run("swaymsg", f"[con_id={self.window_titled(title)}]", "focus")

    def active_title(self):
        return next((node["name"] for node in self._nodes() if node["focused"]), None)

    def close_window(self, title):
        self.run("swaymsg", f"[con_id={self.window_titled(title)}]", "kill")

    def press(self, key):
        self.run("wtype", "-k", key)

    def is_marked(self, title):
        return any(node["name"] == title and node["urgent"] for node in self._nodes())

    def _nodes(self):
        def walk(node):
            yield node
            for child in node["nodes"] + node["floating_nodes"]:
                yield from walk(child)

        return list(walk(json.loads(self.run("swaymsg", "-r", "-t", "get_tree"))))


DESKTOPS = {
    "openbox": Openbox,
    "metacity": Metacity,
    "xfwm4": Xfwm4,
    "kwin_x11": KwinX11,
    "i3": I3,
    "sway": Sway,
}


def chosen_desktop():
    return DESKTOPS[os.environ["POSTAL_SCALE_DESKTOP"]]
