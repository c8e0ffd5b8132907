# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Small Wayland compositors, without a screen."""

import json
import pathlib
import subprocess
import unittest

from desktop import KEY_VERBS, WaylandDesktop
from waiting import wait_until


WITHOUT_SCREEN = {"XDG_SESSION_TYPE": "wayland", "WLR_BACKENDS": "headless",
                  "WLR_LIBINPUT_NO_DEVICES": "1", "WLR_RENDERER": "pixman"}


class Labwc(WaylandDesktop):
    keeps_on_top = False

    def _start_window_manager(self):
        keys = "".join(f"<keybind key='{key}'><action name='Execute' command='"
                       f"{self.command_at(key)}'/></keybind>" for key in KEY_VERBS)
        configuration = self.folder / "config/labwc"
        configuration.mkdir(parents=True)
        (configuration / "rc.xml").write_text(
            f"<labwc_config><keyboard>{keys}</keyboard></labwc_config>", encoding="utf-8")
        command = self.folder / "tell"
        command.write_text(f"#!/bin/sh\n{self._telling()}\n", encoding="utf-8")
        command.chmod(0o755)
        self.environment |= {"XDG_CURRENT_DESKTOP": "labwc:wlroots"} | WITHOUT_SCREEN
        self._ends_with_session(self.spawn(["labwc", "-s", command],
                                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        self._take_told("WAYLAND_DISPLAY", "DISPLAY")
        self._ends_with_session(self.spawn(["wtype", "-s", "3600000", ""],
                                           stderr=subprocess.DEVNULL))

    def windows(self):
        return {title: title for title in self._listed()}

    def activate(self, title):
        self.run("wlrctl", "toplevel", "focus", f"title:{title}")

    def active_title(self):
        return next(iter(self._listed("state:active")), None)

    def close_window(self, title):
        self.run("wlrctl", "toplevel", "close", f"title:{title}")

    def press(self, key):
        self.run("wtype", "-k", key)

    def take_picture(self, file):
        self.run("grim", str(file))

    def _listed(self, *state):
        return [line.partition(": ")[2]
                for line in self.run("wlrctl", "toplevel", "list", *state).splitlines()]


class Sway(WaylandDesktop):
    configuration = "xwayland disable\n"
    keeps_on_top = False
    second_start = "marked"

    def _start_window_manager(self):
        configuration = self.folder / "sway"
        keys = "".join(f"bindsym {key} exec {self.command_at(key)}\n" for key in KEY_VERBS)
        configuration.write_text(f"{self.configuration}{keys}exec {self._telling()}\n",
                                 encoding="utf-8")
        self.environment |= {"XDG_CURRENT_DESKTOP": "sway"} | WITHOUT_SCREEN
        self._ends_with_session(self.spawn(["sway", "-c", configuration],
                                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        self._take_told("WAYLAND_DISPLAY", "SWAYSOCK")
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

    def take_picture(self, file):
        self.run("grim", str(file))

    def set_scale(self, scale):
        self.run("swaymsg", "output", "*", "scale", str(scale))

    def tile_of(self, title):
        tile = next(each for each in self._nodes() if each["name"] == title)["window_rect"]
        return tile["width"], tile["height"]

    def is_marked(self, title):
        return any(node["name"] == title and node["urgent"] for node in self._nodes())

    def _nodes(self):
        def walk(node):
            yield node
            for child in node["nodes"] + node["floating_nodes"]:
                yield from walk(child)

        return list(walk(json.loads(self.run("swaymsg", "-r", "-t", "get_tree"))))


class Weston(WaylandDesktop):
    """Without a screen it has no seat either: nothing has the focus, and nobody closes a window."""

    has_keys = False
    keeps_on_top = False
    lets_write_clipboard = False
    second_start = None
    tells_of_second_start = True

    def _start_window_manager(self):
        self.environment["XDG_SESSION_TYPE"] = "wayland"
        backend = "headless" if self._major_version() > 12 else "headless-backend.so"
        self._ends_with_session(self.spawn(
            ["weston", f"--backend={backend}", "--use-pixman", "--socket=wayland-0"],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        socket = pathlib.Path(self.environment["XDG_RUNTIME_DIR"]) / "wayland-0"
        wait_until(socket.exists, "a compositor")
        self.environment["WAYLAND_DISPLAY"] = "wayland-0"

    def _major_version(self):
        return int(self.run("weston", "--version").split()[-1].partition(".")[0])

    def windows(self):
        return {each.name: each.name for each in self.accessibility.showing_windows()}

    def bring_to_front(self, title):
        wait_until(lambda: self.window_titled(title), lambda: f"a window {title!r}")

    def close_window(self, title):
        raise unittest.SkipTest("nobody closes a window here")
