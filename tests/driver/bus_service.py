# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""A service on a bus, with one object that has one interface. It answers in a thread of its own."""

import threading

from gi.repository import Gio, GLib


class BusService:
    def __init__(self, address, name, path, description, answer):
        """@param answer takes the parameters of a call and its invocation, and answers it"""
        self._path = path
        self._interface = Gio.DBusNodeInfo.new_for_xml(description).interfaces[0]
        self._context = GLib.MainContext.new()
        self._loop = GLib.MainLoop.new(self._context, False)
        ready = threading.Event()
        self._thread = threading.Thread(
            target=self._serve, args=[address, name, answer, ready], daemon=True)
        self._thread.start()
        ready.wait()

    def close(self):
        self._loop.quit()
        self._thread.join()

    def signal(self, name, values):
        self._connection.emit_signal(None, self._path, self._interface.name, name, values)
        self._connection.flush_sync(None)

    def _serve(self, address, name, answer, ready):
        self._context.push_thread_default()
        self._connection = Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        self._connection.register_object(
            self._path, self._interface, lambda *call: answer(*call[-2:]), None, None)
        self._connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                   "org.freedesktop.DBus", "RequestName",
                                   GLib.Variant("(su)", (name, 0)), None,
                                   Gio.DBusCallFlags.NONE, -1, None)
        ready.set()
        self._loop.run()
        self._connection.close_sync(None)
