# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""KWin, which stands for Plasma."""

import json
import shutil
import subprocess

from desktop import KEY_VERBS, WaylandDesktop
from gi.repository import Gio, GLib
from session import Session
from waiting import wait_until


class Kwin(WaylandDesktop):
    """In a window of an X server, so that it has a keyboard. Operated by scripts of its own, which
    answer in its log.

    @cvar colours the scheme that the settings name; None as it comes
    @cvar scale of its screen"""

    lets_place = True
    colours = None
    scale = "1"

    def __init__(self):
        super().__init__(screen="2000x1000x24")

    def _start_x_server(self):
        Session._start_x_server(self)
        self._outer = self.environment.pop("DISPLAY")

    def _start_window_manager(self):
        self.environment |= {
            "XDG_CURRENT_DESKTOP": "KDE", "XDG_SESSION_TYPE": "wayland", "KDE_FULL_SESSION": "true",
            "KDE_SESSION_VERSION": self.run("kwin_wayland", "--version").split()[-1][:1],
            "QT_FORCE_STDERR_LOGGING": "1"}
        self._write_keys()
        self._scripts = 0
        self._bus = Gio.DBusConnection.new_for_address_sync(
            self.environment["DBUS_SESSION_BUS_ADDRESS"],
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        command = self.folder / "tell"
        command.write_text(f"#!/bin/sh\n{self._telling()}\n", encoding="utf-8")
        command.chmod(0o755)
        log = (self.folder / "kwin.log").open("w", encoding="utf-8")
        self._cleanup.callback(log.close)
        self._ends_with_session(self.spawn(
            ["kwin_wayland", "--x11-display", self._outer, "--width", "2000", "--height", "1000",
             "--scale", self.scale, "--no-lockscreen", "--socket", "wayland-0", "--xwayland", str(command)],
            # What its keys start inherits this: no more than what the scripts print.
            self.environment | {"QT_LOGGING_RULES": "kwin_scripting.debug=true"},
            stdout=log, stderr=log))
        self._take_told("WAYLAND_DISPLAY", "DISPLAY", "XAUTHORITY")
        # Keys go to the window below the pointer.
        self._outer_run("xdotool", "mousemove", "600", "600")

    def _write_keys(self):
        """As Plasma's settings write them: a desktop entry for each command, and its key."""
        entries = self.folder / ".local/share/applications"
        entries.mkdir(parents=True)
        (self.folder / ".local/share/kglobalaccel").symlink_to(entries)
        shortcuts = []
        for key in KEY_VERBS:
            entry = f"net.local.at-{key}.desktop"
            (entries / entry).write_text(
                f"[Desktop Entry]\nType=Application\nName={key}\nExec={self.command_at(key)}\n"
                f"NoDisplay=true\nStartupNotify=false\nX-KDE-GlobalAccel-CommandShortcut=true\n"
                f"X-KDE-Shortcuts={key}\n", encoding="utf-8")
            shortcuts.append(f"[{entry}]\n_k_friendly_name={key}\n_launch={key},none,{key}\n"
                             f"[services][{entry}]\n_launch={key}\n")
        configuration = self.folder / "config"
        configuration.mkdir(exist_ok=True)
        # The program has a folder of its own for its settings.
        self.environment["XDG_CONFIG_DIRS"] = f"{configuration}:/etc/xdg"
        if self.colours:
            shutil.copy(f"/usr/share/color-schemes/{self.colours}.colors",
                        configuration / "kdeglobals")
        (configuration / "kglobalshortcutsrc").write_text("".join(shortcuts), encoding="utf-8")

    def _outer_run(self, *arguments):
        return subprocess.run(arguments, env=self.environment | {"DISPLAY": self._outer},
                              check=False, text=True, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL).stdout

    def _evaluate(self, expression):
        self._scripts += 1
        name = f"script{self._scripts}"
        file = self.folder / f"{name}.js"
        file.write_text(f"""
            const windows = workspace.windowList ? workspace.windowList() : workspace.clientList();
            const titled = title => windows.find(each => each.caption == title);
            print("{name}:" + JSON.stringify({expression}) + ":end");""", encoding="utf-8")
        number = self._call("/Scripting", "org.kde.kwin.Scripting", "loadScript",
                            GLib.Variant("(ss)", (str(file), name)))[0]
        for path in (f"/Scripting/Script{number}", f"/{number}"):
            try:
                self._call(path, "org.kde.kwin.Script", "run")
                break
            except GLib.Error:
                continue
        answer = wait_until(lambda: self._answer(name), lambda: f"an answer to {expression}")
        self._call("/Scripting", "org.kde.kwin.Scripting", "unloadScript",
                   GLib.Variant("(s)", (name,)))
        return json.loads(answer)

    def _answer(self, name):
        log = (self.folder / "kwin.log").read_text(encoding="utf-8", errors="replace")
        return log.partition(f"{name}:")[2].partition(":end")[0]

    def _call(self, path, interface, method, arguments=None):
        return self._bus.call_sync("org.kde.KWin", path, interface, method, arguments, None,
                                   Gio.DBusCallFlags.NONE, 10_000, None).unpack()

    def windows(self):
        titles = self._evaluate("windows.map(each => each.caption)")
        return {title: place + 1 for place, title in enumerate(titles)}

    def activate(self, title):
        self._evaluate(f"""[workspace.activeWindow !== undefined
            ? workspace.activeWindow = titled({json.dumps(title)})
            : workspace.activeClient = titled({json.dumps(title)})].length""")

    def active_title(self):
        return self._evaluate("""((workspace.activeWindow || workspace.activeClient)
            || {caption: null}).caption""")

    def close_window(self, title):
        self._evaluate(f"[titled({json.dumps(title)}).closeWindow()].length")

    def press(self, key):
        self._outer_run("xdotool", "key", key)

    def take_picture(self, file):
        self._outer_run("import", "-window", "root", str(file))

    def is_above(self, title, other):
        layers = self._evaluate(f"""[{json.dumps(title)}, {json.dumps(other)}].map(each =>
            [titled(each).keepAbove ? 1 : 0,
             workspace.stackingOrder ? workspace.stackingOrder.indexOf(titled(each))
                                     : titled(each).stackingOrder || 0])""")
        return layers[0] > layers[1]

    def is_marked(self, title):
        return self._evaluate(f"titled({json.dumps(title)}).demandsAttention")


class KwinAtOneAndAHalf(Kwin):
    scale = "1.5"


class DarkKwin(Kwin):
    colours = "BreezeDark"
