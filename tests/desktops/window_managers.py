# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Window managers on a virtual X server."""

import subprocess

from desktop import KEY_VERBS, X11Desktop


class Openbox(X11Desktop):
    def _start_window_manager(self):
        keys = "".join(f"<keybind key='{key}'><action name='Execute'><command>"
                       f"{self.command_at(key)}</command></action></keybind>" for key in KEY_VERBS)
        configuration = self.folder / "openbox.xml"
        configuration.write_text("<openbox_config xmlns='http://openbox.org/3.4/rc'>"
                                 f"<keyboard>{keys}</keyboard></openbox_config>", encoding="utf-8")
        self.manager = ("openbox", "--sm-disable", "--config-file", str(configuration))
        super()._start_window_manager()


class Metacity(X11Desktop):
    manager = ("metacity", "--no-composite")
    has_keys = False  # they are the settings daemon's of whatever desktop it is part of


class Xfwm4(X11Desktop):
    """Its keys are the affair of Xfce's settings daemon."""

    manager = ("xfwm4", "--compositor=off")

    def _start_window_manager(self):
        super()._start_window_manager()
        for key in KEY_VERBS:
            self._set_key(key, "string", self.command_at(key))
        self._set_key("override", "bool", "true")  # of the keys that Xfce begins with
        self._ends_with_session(self.spawn(["xfsettingsd", "--no-daemon"],
                                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))

    def _set_key(self, name, kind, value):
        self.output_of("xfconf-query", "--channel", "xfce4-keyboard-shortcuts",
                       "--property", f"/commands/custom/{name}", "--create",
                       "--type", kind, "--set", value)


class KwinX11(X11Desktop):
    manager = ("env", "KWIN_COMPOSE=N", "kwin_x11")
    second_start = "marked"
    has_keys = False  # they are the affair of Plasma's session


class I3(X11Desktop):
    """Its windows stand side by side, and it keeps none above."""

    keeps_on_top = False
    lets_place = False

    def _start_window_manager(self):
        configuration = self.folder / "i3"
        keys = "".join(f"bindsym {key} exec --no-startup-id {self.command_at(key)}\n"
                       for key in KEY_VERBS)
        configuration.write_text(f"font pango:monospace 8\n{keys}", encoding="utf-8")
        self.manager = ("i3", "-c", str(configuration))
        super()._start_window_manager()

    def is_above(self, title, other):
        return None
