# SPDX-License-Identifier: GPL-3.0-or-later
"""The program as other programs see it on the session bus of a desk."""

import sys
from pathlib import Path

from accessible import connect_to_bus
from desk import ROOT, until
from editor import PROGRAM
from gi.repository import Gio, GLib

NAME = "com.orvik.Quillabrae"
PATH = "/com/orvik/Quillabrae"
INTERFACE = "org.freedesktop.Application"
SCREEN = ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")
PACKAGING = ROOT / "packaging"
# It stays until the call is answered: the bus drops what a caller that has gone wanted started.
LAUNCHER = """
import sys
from gi.repository import Gio, GLib
loop = GLib.MainLoop()
entry = Gio.DesktopAppInfo.new(sys.argv[1])
entry.launch_uris_async(sys.argv[2:], None, None, lambda *_: loop.quit())
loop.run()
"""


def install(desk):
    """Puts what makes the program known on a desk where an installation puts it."""
    data = desk.home / ".local/share"
    service = (PACKAGING / f"{NAME}.service.in").read_text()
    for file, content in (
            (data / f"dbus-1/services/{NAME}.service",
             service.replace("@QUILLABRAE_PROGRAM@", str(PROGRAM))),
            (data / f"applications/{NAME}.desktop",
             (PACKAGING / f"{NAME}.desktop").read_text().replace(
                 "Exec=quillabrae", f"Exec={PROGRAM}"))):
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(content)
    tell_screen(desk)


def tell_screen(desk):
    """Has the bus of a desk read what is installed, and start programs on the desk's screen."""
    bus = SessionBus(desk)
    bus.call_bus("ReloadConfig")
    # As a session tells the bus, which is older than the screen, for the programs that it starts.
    screen = {name: desk.environment[name] for name in SCREEN if name in desk.environment}
    bus.call_bus("UpdateActivationEnvironment", GLib.Variant("(a{ss})", (screen,)))
    return bus


def launch(desk, *files):
    """Starts the program by its desktop file with these files, as a file manager does."""
    desk.tool(sys.executable, "-c", LAUNCHER, f"{NAME}.desktop", *(file.as_uri() for file in files))


class SessionBus:
    def __init__(self, desk):
        self._bus = connect_to_bus(desk.environment["DBUS_SESSION_BUS_ADDRESS"])

    def call_bus(self, method, arguments=None):
        return self._call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                          method, arguments).unpack()

    def is_owned(self):
        return self.call_bus("NameHasOwner", GLib.Variant("(s)", (NAME,)))[0]

    def owner_pid(self):
        until(self.is_owned, "the program on the bus")
        return self.call_bus("GetConnectionUnixProcessID", GLib.Variant("(s)", (NAME,)))[0]

    def activate(self, **platform_data):
        self._ask("Activate", GLib.Variant("(a{sv})", (texts(platform_data),)))

    def open(self, *files, **platform_data):
        uris = [file.as_uri() if isinstance(file, Path) else file for file in files]
        self._ask("Open", GLib.Variant("(asa{sv})", (uris, texts(platform_data))))

    def run_action(self, name, **platform_data):
        self._ask("ActivateAction",
                  GLib.Variant("(sava{sv})", (name, [], texts(platform_data))))

    def send(self, method, arguments):
        """Any call at all, as an unkind program would make it. The name of its error, if any."""
        try:
            self._ask(method, arguments)
        except GLib.Error as error:
            return Gio.DBusError.get_remote_error(error)
        return None

    def introspection(self):
        return self._call(NAME, PATH, "org.freedesktop.DBus.Introspectable",
                          "Introspect").unpack()[0]

    def _ask(self, method, arguments):
        self._call(NAME, PATH, INTERFACE, method, arguments)

    def _call(self, name, path, interface, method, arguments=None):
        return self._bus.call_sync(name, path, interface, method, arguments, None,
                                   Gio.DBusCallFlags.NONE, 20000, None)


def texts(platform_data):
    return {key.replace("_", "-"): GLib.Variant("s", value) for key, value in platform_data.items()}
