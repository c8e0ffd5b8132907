# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""A stand-in for logind, on a bus of its own: it announces sleep and shutdown, and hands out
inhibitors. Only what the program asks of the real one is there."""

import os
import subprocess

from gi.repository import Gio, GLib

from bus_service import BusService
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
        self._service = BusService(self.address, _NAME, _PATH, _DESCRIPTION, self._answer)

    def close(self):
        self._service.close()
        end(self._bus)

    @property
    def held(self):
        return [each for each in self.inhibitors if each.is_held()]

    def wait_for_inhibitor(self):
        return wait_until(lambda: self.held, "an inhibitor")[0]

    def announce(self, what, begins):
        """@param what "PrepareForSleep" or "PrepareForShutdown\""""
        self._service.signal(what, GLib.Variant("(b)", (begins,)))

    def _answer(self, parameters, invocation):
        what, _who, _why, mode = parameters.unpack()
        inhibitor = Inhibitor(what, mode)
        descriptors = Gio.UnixFDList.new()
        # It keeps a copy.
        index = descriptors.append(inhibitor.writing)
        os.close(inhibitor.writing)
        invocation.return_value_with_unix_fd_list(GLib.Variant("(h)", (index,)), descriptors)
        self.inhibitors.append(inhibitor)
