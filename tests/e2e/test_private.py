# SPDX-License-Identifier: GPL-3.0-or-later
"""What a running program lets other users and other computers have of it: nothing."""

import os
import shutil
import socket
import stat
import subprocess
import sys
import unittest

import photos
import sockets
from bus import NAME, SessionBus, install
from case import DeskCase
from desk import descendants, until
from editor import store_settings

NOBODY = 65534
IS_ROOT = os.geteuid() == 0

# Each prints "let in" or the name of what kept it out.
CONNECT = """
import socket, sys
try:
    with socket.socket(socket.AF_UNIX) as peer:
        peer.connect(sys.argv[1])
    print("let in")
except OSError as error:
    print(type(error).__name__)
"""
CALL = """
import sys
from gi.repository import Gio, GLib
try:
    bus = Gio.DBusConnection.new_for_address_sync(
        sys.argv[1], Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
        | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
    bus.call_sync(sys.argv[2], sys.argv[3], "org.freedesktop.Application", "Activate",
                  GLib.Variant("(a{sv})", ({},)), None, 0, 5000, None)
    print("let in")
except GLib.Error as error:
    print("refused")
"""


class Private(DeskCase):
    def setUp(self):
        super().setUp()
        store_settings(self.desk, selectedTool="brush")
        self.drawing = self.desk.home / "stripes.png"
        shutil.copy(photos.PNG, self.drawing)
        install(self.desk)
        self.editor = self.start(self.drawing)
        self.editor.wait_for_window("stripes - Quillabrae v")
        until(SessionBus(self.desk).is_owned, "the program on the bus")
        self.processes = [self.editor.process.pid, *descendants(self.editor.process.pid)]

    def meeting_socket(self):
        place, = (self.desk.folder / "run").glob("quillabrae-*.socket")
        return str(place)

    def as_another_user(self, script, *arguments):
        def step_down():
            os.setgroups([])
            os.setgid(NOBODY)
            os.setuid(NOBODY)
        return subprocess.run([sys.executable, "-c", script, *arguments], preexec_fn=step_down,
                              cwd="/", check=False, text=True, timeout=60,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT).stdout.strip()

    def as_this_user(self, script, *arguments):
        return self.desk.tool(sys.executable, "-c", script, *arguments).strip()

    def test_nothing_listens_on_the_network(self):
        # The search does find what is there.
        with socket.create_server(("127.0.0.1", 0)), socket.socket(type=socket.SOCK_DGRAM) as udp:
            udp.bind(("127.0.0.1", 0))
            self.assertEqual([table for table, _ in sockets.on_the_network([os.getpid()])],
                             ["tcp", "udp"])
        self.assertEqual(sockets.on_the_network(self.processes), [])

    def test_the_one_local_socket_is_this_users(self):
        # It was made in a folder of its own and moved; the system lists it by its first name.
        name, = sockets.local(self.processes)
        self.assertTrue(name.startswith(f"{self.desk.folder}/run/"), name)
        place = self.meeting_socket()
        self.assertEqual(stat.S_IMODE(os.stat(place).st_mode) & 0o077, 0)

    @unittest.skipUnless(IS_ROOT, "only root can act as another user")
    def test_another_user_is_refused(self):
        place = self.meeting_socket()
        address = f"unix:path={self.desk.folder}/run/bus"
        path = "/" + NAME.replace(".", "/")
        self.assertEqual(self.as_another_user(CONNECT, place), "PermissionError")
        # Whoever opens the folders of a session opens neither the program nor the bus.
        for folder in (self.desk.folder, self.desk.folder / "run"):
            folder.chmod(0o755)
        (self.desk.folder / "run/bus").chmod(0o777)
        self.assertEqual(self.as_another_user(CONNECT, place), "PermissionError")
        self.assertEqual(self.as_another_user(CALL, address, NAME, path), "refused")
        # The questions themselves are in order.
        self.assertEqual(self.as_this_user(CONNECT, place), "let in")
        self.assertEqual(self.as_this_user(CALL, address, NAME, path), "let in")


if __name__ == "__main__":
    unittest.main()
