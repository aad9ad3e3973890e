# SPDX-License-Identifier: GPL-3.0-or-later
"""A real secret store on a desk's session bus, unlocked and empty."""

import signal
import subprocess

from accessible import connect_to_bus
from desk import until
from gi.repository import Gio, GLib

NAME = "org.freedesktop.secrets"


class Keyring:
    def __init__(self, desk):
        self._desk = desk
        self._bus = connect_to_bus(desk.environment["DBUS_SESSION_BUS_ADDRESS"])
        self.process = desk.spawn("gnome-keyring-daemon", "--foreground", "--components=secrets",
                                  "--unlock", stdin=subprocess.PIPE)
        self.process.stdin.write(b"password")
        self.process.stdin.close()
        until(self._is_there, "the keyring")

    def _is_there(self):
        return self._bus.call_sync(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
            "NameHasOwner", GLib.Variant("(s)", (NAME,)), None, Gio.DBusCallFlags.NONE, 20000,
            None).unpack()[0]

    def secret(self, service, account):
        """The secret of that name; empty without one."""
        return self._desk.tool("secret-tool", "lookup", "server", service, "user", account)

    def fall_silent(self):
        """Answers nothing from here on, as one does that waits for its user."""
        self.process.send_signal(signal.SIGSTOP)

    def go_on(self):
        self.process.send_signal(signal.SIGCONT)
