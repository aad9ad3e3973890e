# SPDX-License-Identifier: GPL-3.0-or-later
"""What an X11 desktop hears of programs that start, as the one who shows the busy pointer."""

import ctypes

PROPERTY_CHANGE_MASK = 1 << 22
CLIENT_MESSAGE = 33


class ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong),
                ("message_type", ctypes.c_ulong), ("format", ctypes.c_int),
                ("data", ctypes.c_long * 5), ("room", ctypes.c_long * 24)]


class Startups:
    """Listens from now on."""

    def __init__(self, display):
        self._x = ctypes.CDLL("libX11.so.6")
        self._x.XOpenDisplay.restype = ctypes.c_void_p
        self._x.XDefaultRootWindow.restype = ctypes.c_ulong
        self._x.XInternAtom.restype = ctypes.c_ulong
        self._display = ctypes.c_void_p(self._x.XOpenDisplay(display.encode()))
        root = ctypes.c_ulong(self._x.XDefaultRootWindow(self._display))
        self._x.XSelectInput(self._display, root, ctypes.c_long(PROPERTY_CHANGE_MASK))
        self._x.XSync(self._display, 0)
        self._begin, self._more = (
            self._x.XInternAtom(self._display, name, 0)
            for name in (b"_NET_STARTUP_INFO_BEGIN", b"_NET_STARTUP_INFO"))
        self._pieces = {}

    def messages(self):
        """The whole messages so far."""
        event = ClientMessage()
        while self._x.XPending(self._display):
            self._x.XNextEvent(self._display, ctypes.byref(event))
            if event.type != CLIENT_MESSAGE:
                continue
            data = bytes(event.data)[:20]
            if event.message_type == self._begin:
                self._pieces.setdefault(event.window, []).append(data)
            elif event.message_type == self._more:
                self._pieces[event.window][-1] += data
        return [text.partition(b"\0")[0].decode() for texts in self._pieces.values()
                for text in texts if b"\0" in text]

    def close(self):
        self._x.XCloseDisplay(self._display)
