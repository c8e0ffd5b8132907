# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""A stand-in for logind, on a bus of its own: it announces sleep and shutdown, and hands out
inhibitors. Only what the program asks of the real one is there."""

import os
import subprocess
import threading

from gi.repository import Gio, GLib

from session import end
from waiting import wait_until

_NAME = "org.freedesktop.login1"
_PATH = "/org/freedesktop/login1"
_INTERFACE = "org.freedesktop.login1.Manager"
_DESCRIPTION = f"""
<node>
  <interface name="{_INTERFACE}">
    <method name="Inhibit">
      <arg type="s" direction="in"/> <arg type="s" direction="in"/>
      <arg type="s" direction="in"/> <arg type="s" direction="in"/>
      <arg type="h" direction="out"/>
    </method>
    <signal name="PrepareForSleep"><arg type="b"/></signal>
    <signal name="PrepareForShutdown"><arg type="b"/></signal>
  </interface>
</node>
"""


class Inhibitor:
    """Held until the other side closes its end."""

    def __init__(self, what, mode):
        self.what = set(what.split(":"))
        self.mode = mode
        self._reading, self.writing = os.pipe()
        os.set_blocking(self._reading, False)

    def is_held(self):
        try:
            return os.read(self._reading, 1) != b""
        except BlockingIOError:
            return True


class LoginManager:
    def __init__(self, session):
        self.inhibitors = []
        self._bus = session.spawn(
            ["dbus-daemon", "--session", "--nofork", "--print-address",
             f"--address=unix:path={session.new_folder('system-bus')}/bus"],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.address = self._bus.stdout.readline().strip()
        self._bus.stdout.close()
        self._context = GLib.MainContext.new()
        self._loop = GLib.MainLoop.new(self._context, False)
        ready = threading.Event()
        self._thread = threading.Thread(target=self._serve, args=[ready], daemon=True)
        self._thread.start()
        ready.wait()

    def close(self):
        self._loop.quit()
        self._thread.join()
        end(self._bus)

    @property
    def held(self):
        return [each for each in self.inhibitors if each.is_held()]

    def wait_for_inhibitor(self):
        return wait_until(lambda: self.held, "an inhibitor")[0]

    def announce(self, what, begins):
        """@param what "PrepareForSleep" or "PrepareForShutdown\""""
        self._connection.emit_signal(None, _PATH, _INTERFACE, what,
                                     GLib.Variant("(b)", (begins,)))
        self._connection.flush_sync(None)

    def _serve(self, ready):
        self._context.push_thread_default()
        self._connection = Gio.DBusConnection.new_for_address_sync(
            self.address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
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
        what, _who, _why, mode = parameters.unpack()
        inhibitor = Inhibitor(what, mode)
        descriptors = Gio.UnixFDList.new()
        # It keeps a copy.
        index = descriptors.append(inhibitor.writing)
        os.close(inhibitor.writing)
        invocation.return_value_with_unix_fd_list(GLib.Variant("(h)", (index,)), descriptors)
        self.inhibitors.append(inhibitor)
