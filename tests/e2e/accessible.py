# SPDX-License-Identifier: GPL-3.0-or-later
"""What a screen reader sees of a program: its windows and controls with names, roles and places.

Asks over the accessibility bus each time and keeps nothing, so an answer is never an old one.
"""

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

ACCESSIBLE = "org.a11y.atspi.Accessible"
STATE_BITS = {"focused": 12, "sensitive": 24, "showing": 25, "visible": 30, "checked": 4,
              "enabled": 8, "focusable": 11, "selected": 23, "active": 1, "modal": 16}


class Tree:
    """The accessibility bus of one desk."""

    def __init__(self, session_bus_address):
        session = connect_to_bus(session_bus_address)
        reply = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress",
                                  None, None, Gio.DBusCallFlags.NONE, 20000, None)
        self._bus = connect_to_bus(reply.unpack()[0])

    def programs(self):
        root = Node(self._bus, "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root")
        return root.children()


def connect_to_bus(address):
    flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
             | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
    return Gio.DBusConnection.new_for_address_sync(address, flags, None, None)


class Node:
    def __init__(self, bus, owner, path):
        self._bus, self._owner, self._path = bus, owner, path

    def __eq__(self, other):
        return (self._owner, self._path) == (other._owner, other._path)

    def _call(self, interface, method, arguments=None):
        return self._bus.call_sync(self._owner, self._path, interface, method, arguments, None,
                                   Gio.DBusCallFlags.NONE, 20000, None).unpack()

    def _property(self, interface, name):
        return self._call("org.freedesktop.DBus.Properties", "Get",
                          GLib.Variant("(ss)", (interface, name)))[0]

    @property
    def name(self):
        return self._property(ACCESSIBLE, "Name")

    @property
    def description(self):
        return self._property(ACCESSIBLE, "Description")

    @property
    def role(self):
        return self._call(ACCESSIBLE, "GetRoleName")[0]

    @property
    def pid(self):
        return self._bus.call_sync(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
            "GetConnectionUnixProcessID", GLib.Variant("(s)", (self._owner,)), None,
            Gio.DBusCallFlags.NONE, 20000, None).unpack()[0]

    def children(self):
        return [Node(self._bus, owner, path)
                for owner, path in self._call(ACCESSIBLE, "GetChildren")[0]]

    @property
    def parent(self):
        """What the control is in, as a key: an owner and a path."""
        return self._property(ACCESSIBLE, "Parent")

    def has(self, state):
        low, high = self._call(ACCESSIBLE, "GetState")[0]
        return bool((low | high << 32) >> STATE_BITS[state] & 1)

    @property
    def box(self):
        """Left, top, width and height on the screen, in pixels."""
        return self._call("org.a11y.atspi.Component", "GetExtents", GLib.Variant("(u)", (0,)))[0]

    @property
    def middle(self):
        left, top, width, height = self.box
        return left + width / 2, top + height / 2

    def press(self):
        """Does what a click would, without a pointer."""
        self._call("org.a11y.atspi.Action", "DoAction", GLib.Variant("(i)", (0,)))

    def walk(self):
        """This node and everything under it that is still there when it is reached."""
        yield self
        try:
            children = self.children()
        except GLib.Error:
            return
        for child in children:
            yield from child.walk()

    def find(self, name=None, role=None, state="showing"):
        """The first control under this one of that name and role that is on the screen."""
        for node in self.walk():
            try:
                if ((name is None or node.name == name) and (role is None or node.role == role)
                        and (state is None or node.has(state))):
                    return node
            except GLib.Error:
                continue
        return None

    def outline(self, depth=0):
        """The tree as text, for the message of a failed test."""
        try:
            line = f"{'  ' * depth}{self.role} {self.name!r} {self.box}\n"
            return line + "".join(child.outline(depth + 1) for child in self.children())
        except GLib.Error:
            return ""
