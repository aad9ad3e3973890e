# SPDX-License-Identifier: GPL-3.0-or-later
"""Light and dark, in high contrast, with large letters, moving and still, as the desktop is."""

import time
import unittest

from PIL import Image, ImageStat

from case import DeskCase
from desk import until
from editor import store_settings
from portal import Portal


class Looks(DeskCase):
    def is_dark(self, editor):
        window = editor.wait_for_window("Welcome to Quillabrae")
        left, top, width, height = window.box
        with Image.open(editor.screenshot("12-looks")) as shot:
            inside = shot.convert("L").crop((left, top, left + width, top + height))
        return ImageStat.Stat(inside).median[0] < 100

    def test_the_window_follows_the_desktop_while_it_is_open(self):
        portal = Portal(self.desk.environment["DBUS_SESSION_BUS_ADDRESS"], "light")
        editor = self.start()
        self.assertFalse(self.is_dark(editor))
        portal.change("dark")
        until(lambda: self.is_dark(editor), "the window to turn dark")
        portal.change("light")
        until(lambda: not self.is_dark(editor), "the window to turn light")

    def test_the_window_takes_on_what_the_desktop_was_before(self):
        Portal(self.desk.environment["DBUS_SESSION_BUS_ADDRESS"], "dark")
        editor = self.start()
        until(lambda: self.is_dark(editor), "the window to turn dark")

    def test_a_settings_service_may_come_later_and_come_again(self):
        bus = self.desk.environment["DBUS_SESSION_BUS_ADDRESS"]
        editor = self.start()
        self.assertFalse(self.is_dark(editor))
        first = Portal(bus, "light")
        first.change("dark")
        until(lambda: self.is_dark(editor), "the window to turn dark")
        first.close()
        second = Portal(bus, "dark")
        second.change("light")
        until(lambda: not self.is_dark(editor), "the window to turn light")

    def ground(self, editor):
        """The colour of most of the welcome window."""
        left, top, width, height = editor.wait_for_window("Welcome to Quillabrae").box
        with Image.open(editor.screenshot("12-looks")) as shot:
            inside = shot.convert("RGB").crop((left, top, left + width, top + height))
        return max(inside.getcolors(width * height))[1]

    def assert_contrast_follows(self, plain, stark):
        """The two words are what the desktop says."""
        portal = Portal(self.desk.environment["DBUS_SESSION_BUS_ADDRESS"], "light", plain)
        editor = self.start()
        self.assertNotEqual(self.ground(editor), (255, 255, 255))
        portal.change(stark)
        until(lambda: self.ground(editor) == (255, 255, 255), "a purely white ground")
        portal.change("dark")
        until(lambda: self.ground(editor) == (0, 0, 0), "a purely black ground")
        portal.change(plain)
        until(lambda: self.ground(editor) != (0, 0, 0), "a dark ground")

    def test_contrast_is_high_while_the_user_prefers_it(self):
        self.assert_contrast_follows("any contrast", "more contrast")

    def test_contrast_is_high_while_the_desktop_has_a_stark_theme(self):
        self.assert_contrast_follows("plain theme", "stark theme")

    def test_contrast_is_high_from_the_first_frame_of_the_next_start(self):
        portal = Portal(self.desk.environment["DBUS_SESSION_BUS_ADDRESS"], "more contrast")
        editor = self.start()
        until(lambda: self.ground(editor) == (255, 255, 255), "a purely white ground")
        self.desk.keys("ctrl+q")
        editor.process.wait(20)
        self.running.remove(editor)
        portal.close()
        editor = self.start()
        self.assertEqual(self.ground(editor), (255, 255, 255))

    def test_letters_are_as_large_as_the_desktop_has_them(self):
        portal = Portal(self.desk.environment["DBUS_SESSION_BUS_ADDRESS"], "usual letters")
        editor = self.start()
        texts = ("Quillabrae", "No recent projects yet")

        def heights():
            return [editor.wait_for_control(text, "label").box[3] for text in texts]
        # The last window of a first start; the first one has been laid out when it comes.
        editor.wait_for_window("Paint.NET Quick Start")
        usual = until(lambda: heights() == heights() and heights(), "the windows to stand")
        portal.change("large letters")
        until(lambda: all(now > 1.3 * before for now, before in zip(heights(), usual)),
              "larger letters")
        self.assert_inside_their_window(editor, "Welcome to Quillabrae")
        self.desk.keys("ctrl+n")
        editor.wait_for_window("New Project")
        self.assert_inside_their_window(editor, "New Project")
        portal.change("usual letters")
        until(lambda: heights() == usual, "letters as they were")
        until(lambda: editor.wait_for_window("New Project").box[2:] == (420, 310),
              "the dialog to be as large as before")

    def assert_inside_their_window(self, editor, title):
        window = editor.wait_for_window(title)
        left, top, width, height = window.box
        for control in window.walk():
            if not control.has("showing"):
                continue
            x, y, w, h = control.box
            self.assertTrue(left <= x and top <= y and x + w <= left + width
                            and y + h <= top + height, (control.name, control.box, window.box))

    def ants_move(self, editor):
        """Whether the marching ants around the whole canvas look different within a second."""
        left, top, width, height = editor.wait_for_control("Canvas").box
        seen = set()
        for _ in range(6):
            with Image.open(editor.screenshot("13-ants")) as shot:
                seen.add(shot.crop((left, top, left + width, top + height)).tobytes())
            time.sleep(0.15)
        return len(seen) > 1

    def assert_ants_follow(self, still, moving):
        """The two words are what the desktop says."""
        portal = Portal(self.desk.environment["DBUS_SESSION_BUS_ADDRESS"], "light", still)
        store_settings(self.desk, selectedTool="brush")
        drawing = self.desk.home / "drawing.png"
        Image.new("RGB", (400, 300), "white").save(drawing)
        editor = self.start(drawing)
        editor.wait_for_window("drawing - Quillabrae v")
        editor.wait_for_status("Opened drawing.png")
        self.desk.move(editor.canvas_middle())
        self.desk.keys("ctrl+a")
        editor.wait_for_status("Selected canvas pixels")
        until(lambda: not self.ants_move(editor), "the ants to stand still")
        portal.change(moving)
        until(lambda: self.ants_move(editor), "the ants to march")
        portal.change(still)
        until(lambda: not self.ants_move(editor), "the ants to stand still again")

    def test_the_ants_stand_still_when_the_desktop_has_no_animations(self):
        self.assert_ants_follow("still", "moving")

    def test_the_ants_stand_still_when_the_user_prefers_less_motion(self):
        self.assert_ants_follow("less motion", "any motion")


if __name__ == "__main__":
    unittest.main()
