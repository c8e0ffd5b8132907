# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What a screen reader gets, asked for over the bus itself: the usual client library keeps
copies, and they lag behind without a main loop."""

import dataclasses

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

_ACCESSIBLE = "org.a11y.atspi.Accessible"
_ACTION = "org.a11y.atspi.Action"
_COMPONENT = "org.a11y.atspi.Component"
_REGISTRY = ("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root")
_PROPERTIES = "org.freedesktop.DBus.Properties"
_EVENT = "org.a11y.atspi.Event.Object"

_SCREEN_COORDINATES = 0
_TIMEOUT_MS = 10_000

_GONE = (Gio.DBusError.UNKNOWN_OBJECT, Gio.DBusError.UNKNOWN_INTERFACE)

# Positions in the state set.
CHECKED = 4
ENABLED = 8
FOCUSED = 12
SHOWING = 25


@dataclasses.dataclass(frozen=True)
class Extents:
    x: int
    y: int
    width: int
    height: int


class Accessible:
    """One object of a program, by its address on the bus."""

    def __init__(self, bus, address):
        self._bus = bus
        self._address = tuple(address)

    @property
    def name(self):
        return self._property("Name")

    @property
    def description(self):
        return self._property("Description")

    @property
    def role(self):
        return self._call(_ACCESSIBLE, "GetRoleName")[0]

    @property
    def children(self):
        return [Accessible(self._bus, each) for each in self._call(_ACCESSIBLE, "GetChildren")[0]]

    @property
    def extents(self):
        """On the screen, in pixels."""
        return Extents(*self._call(_COMPONENT, "GetExtents",
                                   GLib.Variant("(u)", (_SCREEN_COORDINATES,)))[0])

    @property
    def is_checked(self):
        return self._has(CHECKED)

    @property
    def is_enabled(self):
        return self._has(ENABLED)

    @property
    def is_focused(self):
        return self._has(FOCUSED)

    @property
    def is_showing(self):
        return self._has(SHOWING)

    def act(self, action):
        """Does what the object offers under that name."""
        count = self._call(_PROPERTIES, "Get",
                           GLib.Variant("(ss)", (_ACTION, "NActions")))[0]
        names = [self._call(_ACTION, "GetName", GLib.Variant("(i)", (index,)))[0]
                 for index in range(count)]
        self._call(_ACTION, "DoAction", GLib.Variant("(i)", (names.index(action),)))

    def descendants(self):
        """Windows change while they are read: what has gone has no children."""
        for child in _unless_gone(lambda: self.children, []):
            yield child
            yield from child.descendants()

    def focused(self):
        """What has the keyboard, or None. An item of a closed pop-up says that it does, and that it
        shows; its list does not show."""
        for child in _unless_gone(lambda: self.children, []):
            if not _unless_gone(lambda child=child: child.is_showing, False):
                continue
            if _unless_gone(lambda child=child: child.is_focused, False):
                return child
            if found := child.focused():
                return found
        return None

    def names(self):
        """Of all that it holds, without those that have none."""
        return [name for each in self.descendants()
                if (name := _unless_gone(lambda each=each: each.name, ""))]

    def descendants_that(self, matches):
        """Without those that go while `matches` looks at them."""
        for each in self.descendants():
            if _unless_gone(lambda each=each: matches(each), False):
                yield each

    def _has(self, state):
        low, high = self._call(_ACCESSIBLE, "GetState")[0]
        return bool((high << 32 | low) >> state & 1)

    def _property(self, name):
        return self._call(_PROPERTIES, "Get", GLib.Variant("(ss)", (_ACCESSIBLE, name)))[0]

    def _call(self, interface, method, arguments=None):
        return self._bus.call_sync(*self._address, interface, method, arguments, None,
                                   Gio.DBusCallFlags.NONE, _TIMEOUT_MS, None).unpack()


class AccessibilityBus:
    """The bus of its own that a session's programs meet their screen readers on."""

    def __init__(self, session_bus_address):
        session = _connection(session_bus_address)
        address = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress",
                                    None, None, Gio.DBusCallFlags.NONE, _TIMEOUT_MS, None)
        session.close_sync(None)
        self._session_address = session_bus_address
        self._bus = _connection(address.unpack()[0])

    def tell_that_a_reader_runs(self):
        """As a screen reader does, to whom it concerns."""
        session = _connection(self._session_address)
        session.call_sync("org.a11y.Bus", "/org/a11y/bus", _PROPERTIES, "Set",
                          GLib.Variant("(ssv)", ("org.a11y.Status", "ScreenReaderEnabled",
                                                 GLib.Variant("b", True))),
                          None, Gio.DBusCallFlags.NONE, _TIMEOUT_MS, None)
        session.close_sync(None)

    def close(self):
        # It ends by itself when the X server is gone.
        if not self._bus.is_closed():
            self._bus.close_sync(None)

    def listen_for_names(self):
        """Has programs tell of new names, as a screen reader does. Returns a function that gives
        those of which was told until then."""
        def name(_object, parameters):
            # Qt 6.4 sends whose name it is, 6.8 which.
            what = parameters.unpack()[3]
            return what if isinstance(what, str) else Accessible(self._bus, what).name

        return self._listen("PropertyChange", "accessible-name",
                            "object:property-change:accessible-name", name)

    def listen_for_shown(self):
        """The same with the names of what comes up, or says that it does."""
        def name(address, parameters):
            return Accessible(self._bus, address).name if parameters.unpack()[1] else None

        return self._listen("StateChanged", "showing", "object:state-changed:showing", name)

    def _listen(self, signal, detail, event, read):
        """@param read what is to be noted of an object and what the signal has; None: nothing"""
        told = []

        def take(_bus, sender, path, _interface, _signal, parameters):
            try:
                words = read((sender, path), parameters)
            except GLib.Error:
                return  # an earlier test's program, which has ended since
            if words is not None:
                told.append(words)

        self._bus.signal_subscribe(None, _EVENT, signal, None, detail,
                                   Gio.DBusSignalFlags.NONE, take)
        self._bus.call_sync("org.a11y.atspi.Registry", "/org/a11y/atspi/registry",
                            "org.a11y.atspi.Registry", "RegisterEvent",
                            GLib.Variant("(sass)", (event, [], "")),
                            None, Gio.DBusCallFlags.NONE, _TIMEOUT_MS, None)

        def so_far():
            while GLib.MainContext.default().iteration(False):
                pass
            return list(told)

        return so_far

    def showing_windows(self):
        """Programs come and go while they are asked: those that do not answer have no window."""
        windows = []
        for application in Accessible(self._bus, _REGISTRY).children:
            try:
                windows += [each for each in application.children if each.is_showing]
            except GLib.Error:
                continue
        return windows


def _unless_gone(read, otherwise):
    """What `read` gives; `otherwise` when the program says that there is no such object."""
    try:
        return read()
    except GLib.Error as error:
        if not any(error.matches(Gio.DBusError.quark(), each) for each in _GONE):
            raise
        return otherwise


def _connection(address):
    flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
             | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
    connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
    connection.set_exit_on_close(False)
    return connection
