# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""GNOME Shell, without a screen."""

import json
import pathlib

from desktop import KEY_VERBS, START_PATIENCE, WaylandDesktop
from gi.repository import Gio, GLib
from waiting import wait_until


class Gnome(WaylandDesktop):
    """GNOME Shell, operated by what its own scripts can do."""

    settings = """[org/gnome/shell]
welcome-dialog-last-shown-version='99'
[org/gnome/desktop/interface]
enable-animations=false
[org/gnome/mutter]
experimental-features=['scale-monitor-framebuffer']
[org/gnome/desktop/session]
idle-delay=uint32 0
"""

    more_arguments = ()
    has_x11 = True
    lets_place = True

    def _make_environment(self):
        # Of the bus too: it starts the portal.
        return super()._make_environment() | {
            "XDG_CURRENT_DESKTOP": "GNOME", "XDG_SESSION_TYPE": "wayland",
            "XDG_SESSION_DESKTOP": "gnome", "GSETTINGS_BACKEND": "keyfile"}

    def _start_window_manager(self):
        keyfile = self.folder / "config/glib-2.0/settings/keyfile"
        keyfile.parent.mkdir(parents=True)
        keyfile.write_text(self.settings + self._key_settings(), encoding="utf-8")
        self._bus = Gio.DBusConnection.new_for_address_sync(
            self.environment["DBUS_SESSION_BUS_ADDRESS"],
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        self._log = (self.folder / "shell.log").open("w", encoding="utf-8")
        self._cleanup.callback(self._log.close)
        self._ends_with_session(self.spawn(
            ["gnome-shell", "--headless", "--virtual-monitor", "2000x1000", "--unsafe-mode",
             "--wayland-display", "wayland-0", *self.more_arguments],
            stdout=self._log, stderr=self._log))
        wait_until(self._is_up, self._told, START_PATIENCE)
        self.environment |= {"WAYLAND_DISPLAY": "wayland-0"} | self._x11_display()
        # Without a keyboard no client gets the focus.
        self._evaluate("""
            const Clutter = imports.gi.Clutter;
            global.keys = Clutter.get_default_backend().get_default_seat()
                .create_virtual_device(Clutter.InputDeviceType.KEYBOARD_DEVICE);
            Main.overview.hide(); 0""")
        wait_until(lambda: self._evaluate("Main.overview.visible") is False, "no overview")
        self._ends_with_session(self.spawn(["/usr/libexec/gsd-media-keys"], stdout=self._log,
                                           stderr=self._log))

    def _key_settings(self):
        keys = "org/gnome/settings-daemon/plugins/media-keys"
        places = [f"{keys}/custom-keybindings/{key}" for key in KEY_VERBS]
        listed = ", ".join(f"'/{place}/'" for place in places)
        parts = [f"[{keys}]\ncustom-keybindings=[{listed}]\n"]
        for key, place in zip(KEY_VERBS, places):
            parts.append(f"[{place}]\nname='{key}'\nbinding='{key}'\n"
                         f"command='{self.command_at(key)}'\n")
        return "".join(parts)

    def _is_up(self):
        try:
            return (self._evaluate("Main.layoutManager._startingUp") is False
                    and (not self.has_x11 or self._cookie()))
        except GLib.Error:
            return False

    def _x11_display(self):
        return {"DISPLAY": self._evaluate("imports.gi.GLib.getenv('DISPLAY')"),
                "XAUTHORITY": self._cookie()}

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

    def set_scale(self, scale):
        serial, monitors, _, _ = self._display("GetCurrentState")
        (connector, *_), modes, _ = monitors[0]
        mode, *_, scales, _ = next(each for each in modes if each[-1].get("is-current"))
        nearest = min(scales, key=lambda each: abs(each - scale))
        temporary = 1
        self._display("ApplyMonitorsConfig", GLib.Variant(
            "(uua(iiduba(ssa{sv}))a{sv})",
            (serial, temporary, [(0, 0, nearest, 0, True, [(connector, mode, {})])], {})))

    def _display(self, method, arguments=None):
        return self._bus.call_sync(
            "org.gnome.Mutter.DisplayConfig", "/org/gnome/Mutter/DisplayConfig",
            "org.gnome.Mutter.DisplayConfig", method, arguments, None, Gio.DBusCallFlags.NONE,
            10_000, None).unpack()

    def is_above(self, title, other):
        places = self.windows()
        return places[title] > places[other]

    def cover(self, title, other):
        self._of_window(other, f"""
            const covered = global.get_window_actors().map(actor => actor.meta_window)
                .find(each => each.title == {json.dumps(title)}).get_frame_rect();
            window.move_frame(true, covered.x, covered.y); 0""")

    def is_marked(self, title):
        return self._of_window(title, "window.demands_attention || window.urgent")


class DarkGnome(Gnome):
    settings = Gnome.settings.replace("enable-animations=false", "enable-animations=false\n"
                                      "color-scheme='prefer-dark'")


class GnomeWithoutX11(Gnome):
    more_arguments = ("--no-x11",)
    has_x11 = False
    keeps_on_top = False
    second_start = "marked"
    tells_of_second_start = True
    lets_place = False
    lets_write_clipboard = False

    def _x11_display(self):
        return {}
