# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""A stand-in for the desktop's portal, on the session's bus: it has the colour scheme alone."""

from gi.repository import GLib

from bus_service import BusService

_NAME = "org.freedesktop.portal.Desktop"
_PATH = "/org/freedesktop/portal/desktop"
_INTERFACE = "org.freedesktop.portal.Settings"
_KEY = ("org.freedesktop.appearance", "color-scheme")
_DESCRIPTION = f"""
<node>
  <interface name="{_INTERFACE}">
    <method name="Read">
      <arg type="s" direction="in"/> <arg type="s" direction="in"/>
      <arg type="v" direction="out"/>
    </method>
    <signal name="SettingChanged"><arg type="s"/> <arg type="s"/> <arg type="v"/></signal>
  </interface>
</node>
"""

DARK = 1
LIGHT = 2


class Portal:
    def __init__(self, session, scheme):
        self._scheme = scheme
        self._service = BusService(session.environment["DBUS_SESSION_BUS_ADDRESS"], _NAME, _PATH,
                                   _DESCRIPTION, self._answer)

    def close(self):
        self._service.close()

    def change(self, scheme):
        self._scheme = scheme
        self._service.signal("SettingChanged",
                             GLib.Variant("(ssv)", (*_KEY, GLib.Variant("u", scheme))))

    def _answer(self, parameters, invocation):
        if parameters.unpack() != _KEY:
            invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "no such setting")
            return
        # Twice a variant, as the real one has it.
        value = GLib.Variant("v", GLib.Variant("u", self._scheme))
        invocation.return_value(GLib.Variant("(v)", (value,)))
