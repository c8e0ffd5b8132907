# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""A stand-in for the desktop's portal, on the session's bus: it has the colour scheme alone."""

import threading

from gi.repository import Gio, GLib

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
        self._context = GLib.MainContext.new()
        self._loop = GLib.MainLoop.new(self._context, False)
        ready = threading.Event()
        self._thread = threading.Thread(
            target=self._serve, args=[session.environment["DBUS_SESSION_BUS_ADDRESS"], ready],
            daemon=True)
        self._thread.start()
        ready.wait()

    def close(self):
        self._loop.quit()
        self._thread.join()

    def change(self, scheme):
        self._scheme = scheme
        self._connection.emit_signal(
            None, _PATH, _INTERFACE, "SettingChanged",
            GLib.Variant("(ssv)", (*_KEY, GLib.Variant("u", scheme))))
        self._connection.flush_sync(None)

    def _serve(self, address, ready):
        self._context.push_thread_default()
        self._connection = Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        interface = Gio.DBusNodeInfo.new_for_xml(_DESCRIPTION).interfaces[0]
        self._connection.register_object(_PATH, interface, self._answer, None, None)
        self._connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                   "org.freedesktop.DBus", "RequestName",
                                   GLib.Variant("(su)", (_NAME, 0)), None,
                                   Gio.DBusCallFlags.NONE, -1, None)
        ready.set()
        self._loop.run()
        self._connection.close_sync(None)

    def _answer(self, _connection, _sender, _path, _interface, _method, parameters, invocation):
        if parameters.unpack() != _KEY:
            invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "no such setting")
            return
        # Twice a variant, as the real one has it.
        value = GLib.Variant("v", GLib.Variant("u", self._scheme))
        invocation.return_value(GLib.Variant("(v)", (value,)))
