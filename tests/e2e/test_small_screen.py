# SPDX-License-Identifier: GPL-3.0-or-later
"""A screen of 1024 x 600 points with letters of double size: every window and dialog stays on it,
frame included, and the buttons that end a dialog are in sight. Pictures to look at are taken on the
way."""

import re
import unittest

import photos
from desk import Desk, until
from editor import store_records
from portal import Portal
from screens import ALERTS, DIALOGS, ScreensCase

SMALL = (1024, 600)
# What ends a dialog, one of which it has.
ENDS = ("Cancel", "Done", "Close")


class SmallScreen(ScreensCase):
    def setUp(self):
        super().setUp()
        self.theme, self.scale, self.look, self.screen = "light", 1, "small", SMALL
        self.desk = self.enterContext(Desk(size=SMALL))
        Portal(self.desk.environment["DBUS_SESSION_BUS_ADDRESS"], "light", "still",
               "double letters")
        store_records(self.desk)
        self.preferences = self.desk.home / ".config/Quillabrae/preferences.ini"
        # A first start.
        self.preferences.write_text("[General]\nQuillabrae.systemWasDark=false\n")

    def frame_of(self, number):
        """Left, top, right and bottom with the window manager's frame."""
        told = self.desk.tool("xprop", "-id", number, "_NET_FRAME_EXTENTS")
        sides = [int(side) for side in re.findall(r"\d+", told.partition("=")[2])] or [0] * 4
        left, top, right, bottom = self.place_of_window(number)
        return left - sides[0], top - sides[2], right + sides[1], bottom + sides[3]

    def is_whole(self, title):
        number = self.window_number(title)
        if number is None:
            return False
        left, top, right, bottom = self.frame_of(number)
        return min(left, top) >= 0 and right <= SMALL[0] and bottom <= SMALL[1]

    def assert_fits(self, name, title):
        # A window takes its frame into account once it has been told of it.
        until(lambda: self.is_whole(title), f"{name} on the screen", seconds=5)
        self.capture(name, title)

    def assert_in_sight(self, editor, window, names):
        """One of these buttons of the window is on the screen."""
        found = [button for name in names
                 if (button := editor.wait_for_window(window).find(name, "push button"))]
        self.assertTrue(found, f"{window}: none of {names}")
        for button in found:
            left, top, width, height = button.box
            self.assertGreaterEqual(min(left, top), 0, f"{window}: {button.name}")
            self.assertLessEqual(left + width, SMALL[0], f"{window}: {button.name}")
            self.assertLessEqual(top + height, SMALL[1], f"{window}: {button.name}")

    def test_the_windows_of_a_first_start(self):
        editor = self.start()
        editor.wait_for_window("Paint.NET Quick Start")
        for step in range(1, 7):
            editor.wait_for_control(f"Step {step} of 6")
            self.assert_fits(f"small-quick-start-{step}", "Paint.NET Quick Start")
            self.assert_in_sight(editor, "Paint.NET Quick Start", ["Back"])
            self.desk.keys("Page_Down")
        self.desk.keys("Escape")
        editor.wait_until_alone()
        self.assert_fits("small-welcome", "Welcome to Quillabrae")
        self.assert_in_sight(editor, "Welcome to Quillabrae", ["New Project", "Close"])
        self.desk.keys("ctrl+shift+p")
        editor.wait_for_window("Plugin Library")
        self.assert_fits("small-plugin-library", "Plugin Library")
        self.desk.keys("alt+F4")
        editor.wait_until_closed("Plugin Library")
        self.desk.keys("ctrl+comma")
        editor.wait_for_window("Settings")
        for section in range(1, 7):
            self.assert_fits(f"small-settings-{section}", "Settings")
            self.desk.keys("Down")

    def test_the_editor_and_its_dialogs(self):
        editor = self.open_the_lake()
        self.assert_fits("small-editor", "evening - Quillabrae v")
        self.copy_drawing()
        for dialog in DIALOGS:
            if dialog.keys:
                self.desk.keys(dialog.keys)
            else:
                editor.wait_for_control(dialog.button).press()
            editor.wait_for_window(dialog.title)
            self.assert_fits(f"small-dialog-{dialog.name}", dialog.title)
            self.assert_in_sight(editor, dialog.title, ENDS)
            self.leave(editor)
        self.desk.copy("image/png", photos.PNG)
        for alert in ALERTS[:1]:
            alert.ask(self.desk, editor)
            self.assert_fits(f"small-alert-{alert.name}", "Quillabrae$")
            self.leave(editor)


if __name__ == "__main__":
    unittest.main()
