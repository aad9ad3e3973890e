# SPDX-License-Identifier: GPL-3.0-or-later
"""A desktop's settings service: whether the desktop is light or dark and in high contrast, how large
letters are, and whether things move."""

import threading

from accessible import connect_to_bus
from gi.repository import Gio, GLib

NAME = "org.freedesktop.portal.Desktop"
PATH = "/org/freedesktop/portal/desktop"
INTERFACE = "org.freedesktop.portal.Settings"
SCHEME = ("org.freedesktop.appearance", "color-scheme")
ANIMATIONS = ("org.gnome.desktop.interface", "enable-animations")
PREFERENCE = ("org.freedesktop.appearance", "reduced-motion")
CONTRAST = ("org.freedesktop.appearance", "contrast")
HIGH_CONTRAST = ("org.gnome.desktop.a11y.interface", "high-contrast")
TEXT_SCALE = ("org.gnome.desktop.interface", "text-scaling-factor")
VALUES = {"light": GLib.Variant("u", 2), "dark": GLib.Variant("u", 1),
          "moving": GLib.Variant("b", True), "still": GLib.Variant("b", False),
          "any motion": GLib.Variant("u", 0), "less motion": GLib.Variant("u", 1),
          "any contrast": GLib.Variant("u", 0), "more contrast": GLib.Variant("u", 1),
          "plain theme": GLib.Variant("b", False), "stark theme": GLib.Variant("b", True),
          "usual letters": GLib.Variant("d", 1.0), "large letters": GLib.Variant("d", 1.5),
          "double letters": GLib.Variant("d", 2.0)}
SETTINGS = {"light": SCHEME, "dark": SCHEME, "moving": ANIMATIONS, "still": ANIMATIONS,
            "any motion": PREFERENCE, "less motion": PREFERENCE,
            "any contrast": CONTRAST, "more contrast": CONTRAST,
            "plain theme": HIGH_CONTRAST, "stark theme": HIGH_CONTRAST,
            "usual letters": TEXT_SCALE, "large letters": TEXT_SCALE,
            "double letters": TEXT_SCALE}
DESCRIPTION = f"""
<node><interface name="{INTERFACE}">
  <method name="Read">
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/>
  </method>
  <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
</interface></node>"""


class Portal:
    """Answers from a thread of its own until the bus goes."""

    def __init__(self, bus_address, *words):
        """Each word is one of VALUES. What no word tells is no setting of this desktop."""
        self._values = {SETTINGS[word]: VALUES[word] for word in words}
        self._context = GLib.MainContext()
        self._bus = None
        ready = threading.Event()
        threading.Thread(target=self._run, args=(bus_address, ready), daemon=True).start()
        if not ready.wait(20):
            raise RuntimeError("the settings service did not start")

    def change(self, word):
        self._values[SETTINGS[word]] = VALUES[word]
        self._bus.emit_signal(None, PATH, INTERFACE, "SettingChanged",
                              GLib.Variant("(ssv)", (*SETTINGS[word], VALUES[word])))

    def close(self):
        self._bus.close_sync(None)

    def _run(self, bus_address, ready):
        self._context.push_thread_default()
        self._bus = connect_to_bus(bus_address)
        self._bus.set_exit_on_close(False)
        interface = Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces[0]
        self._bus.register_object(PATH, interface, self._answer, None, None)
        Gio.bus_own_name_on_connection(self._bus, NAME, Gio.BusNameOwnerFlags.NONE,
                                       lambda *_: ready.set(), None)
        GLib.MainLoop.new(self._context, False).run()

    def _answer(self, _bus, _sender, _path, _interface, _method, arguments, invocation):
        value = self._values.get(arguments.unpack())
        if value is not None:
            # As it has always been: a variant in a variant.
            invocation.return_value(GLib.Variant("(v)", (GLib.Variant("v", value),)))
        else:
            invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "no such setting")
