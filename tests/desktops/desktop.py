# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Desktops to be brought up without a screen, each with the same few things that a person does."""

import json
import os
import pathlib
import subprocess

from gi.repository import Gio, GLib
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

    def take_picture(self, file):
        """Of the whole screen."""
        self.run("import", "-window", "root", str(file))

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

    def _telling(self):
        """For the compositor's shell: tells what its clients' environment is."""
        told = self.folder / "told"
        return f"env -0 > {told}.new && mv {told}.new {told}"

    def _take_told(self, *names):
        told = self.folder / "told"
        wait_until(told.exists, "a compositor")
        variables = dict(line.split("=", 1)
                         for line in told.read_text(encoding="utf-8").split("\0") if "=" in line)
        self.environment |= {name: variables[name] for name in names if name in variables}


class Sway(WaylandDesktop):
    configuration = "xwayland disable\n"

    def _start_window_manager(self):
        configuration = self.folder / "sway"
        configuration.write_text(f"{self.configuration}exec {self._telling()}\n",
                                 encoding="utf-8")
        self.environment |= {
            "XDG_CURRENT_DESKTOP": "sway", "XDG_SESSION_TYPE": "wayland",
            "WLR_BACKENDS": "headless", "WLR_LIBINPUT_NO_DEVICES": "1", "WLR_RENDERER": "pixman"}
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

    def is_marked(self, title):
        return any(node["name"] == title and node["urgent"] for node in self._nodes())

    def _nodes(self):
        def walk(node):
            yield node
            for child in node["nodes"] + node["floating_nodes"]:
                yield from walk(child)

        return list(walk(json.loads(self.run("swaymsg", "-r", "-t", "get_tree"))))


class Gnome(WaylandDesktop):
    """GNOME Shell, operated by what its own scripts can do."""

    settings = """[org/gnome/shell]
welcome-dialog-last-shown-version='99'
[org/gnome/desktop/interface]
enable-animations=false
[org/gnome/desktop/session]
idle-delay=uint32 0
"""

    def _start_window_manager(self):
        keyfile = self.folder / "config/glib-2.0/settings/keyfile"
        keyfile.parent.mkdir(parents=True)
        keyfile.write_text(self.settings, encoding="utf-8")
        self.environment |= {
            "XDG_CURRENT_DESKTOP": "GNOME", "XDG_SESSION_TYPE": "wayland",
            "XDG_SESSION_DESKTOP": "gnome", "GSETTINGS_BACKEND": "keyfile"}
        self._bus = Gio.DBusConnection.new_for_address_sync(
            self.environment["DBUS_SESSION_BUS_ADDRESS"],
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        self._log = (self.folder / "shell.log").open("w", encoding="utf-8")
        self._cleanup.callback(self._log.close)
        self._ends_with_session(self.spawn(
            ["gnome-shell", "--headless", "--virtual-monitor", "2000x1000", "--unsafe-mode",
             "--wayland-display", "wayland-0"], stdout=self._log, stderr=self._log))
        wait_until(self._is_up, self._told)
        self.environment |= {"WAYLAND_DISPLAY": "wayland-0",
                             "DISPLAY": self._evaluate("imports.gi.GLib.getenv('DISPLAY')"),
                             "XAUTHORITY": self._cookie()}
        # Without a keyboard no client gets the focus.
        self._evaluate("""
            const Clutter = imports.gi.Clutter;
            global.keys = Clutter.get_default_backend().get_default_seat()
                .create_virtual_device(Clutter.InputDeviceType.KEYBOARD_DEVICE);
            Main.overview.hide(); 0""")
        wait_until(lambda: self._evaluate("Main.overview.visible") is False, "no overview")

    def _is_up(self):
        try:
            return self._evaluate("Main.layoutManager._startingUp") is False and self._cookie()
        except GLib.Error:
            return False

    def _told(self):
        return "GNOME Shell:\n" + (self.folder / "shell.log").read_text(encoding="utf-8")

    def _cookie(self):
        runtime = pathlib.Path(self.environment["XDG_RUNTIME_DIR"])
        return next((str(each) for each in runtime.glob(".mutter-Xwaylandauth*")), "")

    def _evaluate(self, script):
        succeeded, result = self._bus.call_sync(
            "org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell", "Eval",
            GLib.Variant("(s)", (script,)), None, Gio.DBusCallFlags.NONE, 10_000, None).unpack()
        if not succeeded:
            raise AssertionError(f"{script}: {result}")
        return json.loads(result) if result else None

    def _of_window(self, title, expression):
        return self._evaluate(f"""
            const window = global.get_window_actors().map(actor => actor.meta_window)
                .find(each => each.title == {json.dumps(title)});
            {expression}""")

    def windows(self):
        titles = self._evaluate("global.get_window_actors().map(each => each.meta_window.title)")
        return {title: place + 1 for place, title in enumerate(titles)}

    def activate(self, title):
        self._of_window(title, "Main.activateWindow(window); 0")

    def active_title(self):
        return self._evaluate("global.display.focus_window && global.display.focus_window.title")

    def close_window(self, title):
        self._of_window(title, "window.delete(global.get_current_time()); 0")

    def press(self, key):
        for state in ("PRESSED", "RELEASED"):
            self._evaluate(f"""
                const Clutter = imports.gi.Clutter;
                global.keys.notify_keyval(imports.gi.GLib.get_monotonic_time(),
                    Clutter.KEY_{key}, Clutter.KeyState.{state}); 0""")

    def take_picture(self, file):
        self._bus.call_sync(
            "org.gnome.Shell", "/org/gnome/Shell/Screenshot", "org.gnome.Shell.Screenshot",
            "Screenshot", GLib.Variant("(bbs)", (False, False, str(file))), None,
            Gio.DBusCallFlags.NONE, 30_000, None)

    def is_above(self, title, other):
        places = self.windows()
        return places[title] > places[other]

    def is_marked(self, title):
        return self._of_window(title, "window.demands_attention || window.urgent")


class DarkGnome(Gnome):
    settings = Gnome.settings.replace("enable-animations=false", "enable-animations=false\n"
                                      "color-scheme='prefer-dark'")


class Kwin(WaylandDesktop):
    """In a window of an X server, so that it has a keyboard. Operated by scripts of its own, which
    answer in its log."""

    def __init__(self):
        super().__init__(screen="2000x1000x24")

    def _start_x_server(self):
        Session._start_x_server(self)
        self._outer = self.environment.pop("DISPLAY")

    def _start_window_manager(self):
        self.environment |= {
            "XDG_CURRENT_DESKTOP": "KDE", "XDG_SESSION_TYPE": "wayland", "KDE_FULL_SESSION": "true",
            "QT_FORCE_STDERR_LOGGING": "1"}
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
             "--no-lockscreen", "--socket", "wayland-0", "--xwayland", str(command)],
            self.environment | {"QT_LOGGING_RULES": "*.debug=true;qt.*=false"},
            stdout=log, stderr=log))
        self._take_told("WAYLAND_DISPLAY", "DISPLAY", "XAUTHORITY")
        # Keys go to the window below the pointer.
        self._outer_run("xdotool", "mousemove", "600", "600")

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


DESKTOPS = {
    "kwin": Kwin,
    "gnome": Gnome,
    "gnome-dark": DarkGnome,
    "openbox": Openbox,
    "metacity": Metacity,
    "xfwm4": Xfwm4,
    "kwin_x11": KwinX11,
    "i3": I3,
    "sway": Sway,
}


def chosen_desktop():
    return DESKTOPS[os.environ["POSTAL_SCALE_DESKTOP"]]
