# SPDX-License-Identifier: GPL-3.0-or-later
"""Opening things as a desktop does: over the session bus, and without one."""

import os
import shutil
import unittest

import photos
from bus import PATH, SessionBus, install, launch
from case import DeskCase
from desk import until
from editor import PROGRAM, Editor, store_settings
from gi.repository import Gio, GLib
from startups import Startups

WELCOME = "Welcome to Quillabrae"


class OnTheBus(DeskCase):
    def setUp(self):
        super().setUp()
        store_settings(self.desk, selectedTool="brush")
        self.photo = self.desk.home / "a b%c.jpg"
        shutil.copy(photos.JPEG, self.photo)
        self.drawing = self.desk.home / "stripes.png"
        shutil.copy(photos.PNG, self.drawing)
        install(self.desk)
        self.bus = SessionBus(self.desk)

    def started_by_the_bus(self):
        editor = Editor.running(self.desk, self.bus.owner_pid())
        self.running.append(editor)
        return editor

    def start_and_wait(self, *files):
        editor = self.start(*files)
        until(self.bus.is_owned, "the program on the bus")
        self.assertEqual(self.bus.owner_pid(), editor.process.pid)
        return editor

    def test_the_running_program_opens_files_it_is_asked_for(self):
        editor = self.start_and_wait()
        editor.wait_for_window(WELCOME)
        self.bus.open(self.photo, activation_token="a_TIME1")
        editor.wait_for_window("a b%c - Quillabrae v")
        self.bus.open(self.drawing)
        editor.wait_for_window("stripes - Quillabrae v")
        self.assertEqual(len(editor.windows()), 1)

    def test_the_running_program_shows_itself_and_runs_actions(self):
        editor = self.start_and_wait(self.photo)
        editor.wait_for_window("a b%c - Quillabrae v")
        editor.wait_for_status("Opened a b%c.jpg")
        self.desk.click(editor.canvas_middle())
        self.desk.keys("alt+F4")
        until(lambda: not editor.windows(), "the editor window to close")
        self.bus.activate(desktop_startup_id="files_TIME1")
        editor.wait_for_window(WELCOME)
        self.bus.run_action("new-project")
        editor.wait_for_window("New Project")
        editor.screenshot("14-new-project-by-action")

    def test_the_bus_starts_the_program_for_a_file(self):
        self.bus.open(self.photo)
        editor = self.started_by_the_bus()
        editor.wait_for_window("a b%c - Quillabrae v")
        editor.wait_for_status("Opened a b%c.jpg")
        self.assertEqual(len(editor.windows()), 1)
        environment = (editor.process.folder / "environ").read_bytes()
        self.assertIn(b"DBUS_STARTER_BUS_TYPE=session", environment)

    def test_the_bus_starts_the_program_with_its_welcome_window(self):
        self.bus.activate()
        self.started_by_the_bus().wait_for_window(WELCOME)

    def test_the_bus_starts_the_program_for_an_action(self):
        self.bus.run_action("new-project")
        self.started_by_the_bus().wait_for_window("New Project")

    def test_a_desktop_file_starts_it_over_the_bus(self):
        launch(self.desk, self.drawing)
        editor = self.started_by_the_bus()
        editor.wait_for_window("stripes - Quillabrae v")
        launch(self.desk, self.photo)
        editor.wait_for_window("a b%c - Quillabrae v")

    def test_a_program_that_passes_the_bus_environment_on_holds_up_nothing(self):
        self.desk.environment["DBUS_STARTER_BUS_TYPE"] = "session"
        self.start().wait_for_window(WELCOME)

    def test_after_the_end_the_name_is_free(self):
        editor = self.start_and_wait()
        editor.wait_for_window(WELCOME)
        self.desk.keys("ctrl+q")
        self.assertEqual(editor.process.wait(30), 0)
        self.assertFalse(self.bus.is_owned())

    def test_the_busy_pointer_of_a_start_ends_however_it_arrives(self):
        startups = Startups(self.desk.environment["DISPLAY"])
        self.addCleanup(startups.close)

        def wait_for_end(token):
            until(lambda: f'remove: ID="{token}"' in startups.messages(), f"the end of {token}")
        self.bus.activate(desktop_startup_id="a-menu-that-starts-it-by-the-bus_TIME1")
        editor = self.started_by_the_bus()
        editor.wait_for_window(WELCOME)
        wait_for_end("a-menu-that-starts-it-by-the-bus_TIME1")
        self.bus.open(self.drawing, desktop_startup_id="files_TIME22")
        wait_for_end("files_TIME22")
        self.desk.environment["DESKTOP_STARTUP_ID"] = 'a_"quoted"_\\_one_TIME3'
        self.assertEqual(self.second_start(editor, self.photo), 0)
        wait_for_end('a_\\"quoted\\"_\\\\_one_TIME3')
        self.assertEqual(len(editor.windows()), 1)

    def test_unkind_callers_do_no_harm(self):
        editor = self.start_and_wait(self.drawing)
        editor.wait_for_window("stripes - Quillabrae v")
        endless = "x" * 1_000_000
        variant = GLib.Variant
        for method, arguments, error in (
                ("Open", variant("(asa{sv})", (["", "a", "file:", "https://a.example/b.png",
                                                "quillabrae://action/quit", "%%%", "file:///\n",
                                                endless], {})), None),
                ("Open", variant("(asa{sv})", (["a"] * 200_000, {})),
                 "org.freedesktop.DBus.Error.LimitsExceeded"),
                ("Open", variant("(asa{sv})", ([endless] * 17, {})),
                 "org.freedesktop.DBus.Error.LimitsExceeded"),
                ("Activate", variant("(a{sv})", ({"activation-token": variant("s", endless)},)),
                 None),
                ("Activate", variant("(a{sv})", ({"activation-token": variant("as", [endless])},)),
                 None),
                ("ActivateAction", variant("(sava{sv})", ("quit", [variant("s", "now")], {})), None),
                ("ActivateAction", variant("(sava{sv})", (endless, [], {})), None),
                ("Activate", variant("(s)", ("now",)), "org.freedesktop.DBus.Error.UnknownMethod"),
                ("Quit", None, "org.freedesktop.DBus.Error.UnknownMethod")):
            self.assertEqual(self.bus.send(method, arguments), error, method)
        self.bus.open(self.photo)
        editor.wait_for_window("a b%c - Quillabrae v")
        row = editor.wait_for_control("Open projects")
        self.assertTrue(row.find("stripes") and row.find("a b%c"))
        self.assertIsNone(editor.process.poll())

    def test_it_says_what_it_understands(self):
        self.start_and_wait()
        node = Gio.DBusNodeInfo.new_for_xml(self.bus.introspection())
        interface = node.lookup_interface("org.freedesktop.Application")
        self.assertIsNotNone(interface, PATH)
        self.assertEqual(
            {method.name: [argument.signature for argument in method.in_args]
             for method in interface.methods},
            {"Activate": ["a{sv}"], "Open": ["as", "a{sv}"],
             "ActivateAction": ["s", "av", "a{sv}"]})


class WithoutABus(DeskCase):
    def test_a_second_start_hands_over_all_the_same(self):
        store_settings(self.desk, selectedTool="brush")
        drawing = self.desk.home / "stripes.png"
        shutil.copy(photos.PNG, drawing)
        address = self.desk.environment.pop("DBUS_SESSION_BUS_ADDRESS")
        os.rename(self.desk.folder / "run/bus", self.desk.folder / "run/elsewhere")
        self.addCleanup(self.desk.environment.__setitem__, "DBUS_SESSION_BUS_ADDRESS", address)
        first = self.desk.spawn(PROGRAM)
        until(lambda: "Welcome to Quillabrae" in self.desk.tool("xdotool", "search", "--name", ".",
                                                                "getwindowname", "%@"),
              "the welcome window")
        second = self.desk.spawn(PROGRAM, drawing)
        self.assertEqual(second.wait(30), 0)
        until(lambda: "stripes - Quillabrae" in self.desk.tool("xdotool", "search", "--name", ".",
                                                               "getwindowname", "%@"),
              "the file in the first one's window")
        self.assertIsNone(first.poll())


if __name__ == "__main__":
    unittest.main()
