# SPDX-License-Identifier: GPL-3.0-or-later
"""A desktop's file dialogs, which show nothing: the test is their user."""

import threading
from dataclasses import dataclass

from accessible import connect_to_bus
from gi.repository import Gio, GLib
from portal import NAME, PATH

INTERFACE = "org.freedesktop.portal.FileChooser"
REQUEST = "org.freedesktop.portal.Request"
DESCRIPTION = f"""
<node><interface name="{INTERFACE}">
  <property name="version" type="u" access="read"/>
  <method name="OpenFile">
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="a{{sv}}" direction="in"/>
    <arg type="o" direction="out"/>
  </method>
  <method name="SaveFile">
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="a{{sv}}" direction="in"/>
    <arg type="o" direction="out"/>
  </method>
</interface><interface name="{REQUEST}">
  <method name="Close"/>
  <signal name="Response"><arg type="u"/><arg type="a{{sv}}"/></signal>
</interface></node>"""
CHOSEN, CANCELLED, FAILED = 0, 1, 2


@dataclass
class Request:
    """A dialog that a program has asked for."""

    method: str
    window: str
    title: str
    options: dict
    sender: str
    invocation: object
    handle: str
    is_closed: bool = False

    @property
    def folder(self):
        return bytes(self.options["current_folder"]).rstrip(b"\0").decode()


class FileChooser:
    """Answers from a thread of its own until the bus goes. `manner` is how it takes a question:
    "shows" a dialog, "refuses" with an error, or "sleeps" and does nothing."""

    def __init__(self, bus_address, manner="shows"):
        self.manner = manner
        self.requests = []
        self._context = GLib.MainContext()
        self._bus = None
        node = Gio.DBusNodeInfo.new_for_xml(DESCRIPTION)
        self._chooser, self._request = (node.lookup_interface(name)
                                        for name in (INTERFACE, REQUEST))
        ready = threading.Event()
        threading.Thread(target=self._run, args=(bus_address, ready), daemon=True).start()
        if not ready.wait(20):
            raise RuntimeError("the file dialogs did not start")

    def choose(self, request, *files, **choices):
        self.respond(request, CHOSEN, {
            "uris": GLib.Variant("as", [file.as_uri() for file in files]),
            "choices": GLib.Variant("a(ss)", list(choices.items()))})

    def respond(self, request, response, results=None):
        self._bus.emit_signal(request.sender, request.handle, REQUEST, "Response",
                              GLib.Variant("(ua{sv})", (response, results or {})))

    def wake(self, request):
        """Shows at last what it was asked for while it slept."""
        source = GLib.idle_source_new()
        source.set_callback(lambda *_: self._show(request))
        source.attach(self._context)

    def vanish(self):
        self._bus.close_sync(None)

    def _run(self, bus_address, ready):
        self._context.push_thread_default()
        self._bus = connect_to_bus(bus_address)
        self._bus.set_exit_on_close(False)
        self._bus.register_object(PATH, self._chooser, self._answer, self._tell, None)
        Gio.bus_own_name_on_connection(self._bus, NAME, Gio.BusNameOwnerFlags.NONE,
                                       lambda *_: ready.set(), None)
        GLib.MainLoop.new(self._context, False).run()

    def _tell(self, *_):
        return GLib.Variant("u", 3)

    def _answer(self, _bus, sender, _path, _interface, method, arguments, invocation):
        window, title, options = arguments.unpack()
        handle = f"{PATH}/request/{sender[1:].replace('.', '_')}/{options['handle_token']}"
        request = Request(method, window, title, options, sender, invocation, handle)
        self.requests.append(request)
        if self.manner == "refuses":
            invocation.return_dbus_error("org.freedesktop.portal.Error.Failed", "no dialogs today")
        elif self.manner == "shows":
            self._show(request)

    def _show(self, request):
        def close(_bus, _sender, _path, _interface, _method, _arguments, invocation):
            request.is_closed = True
            invocation.return_value(None)
        self._bus.register_object(request.handle, self._request, close, None, None)
        request.invocation.return_value(GLib.Variant("(o)", (request.handle,)))
