# SPDX-License-Identifier: GPL-3.0-or-later
"""The program as a Wayland client: start, second start, the bus, and work after a kill."""

import shutil
import unittest

from PIL import Image

import photos
from bus import SessionBus, install
from case import DeskCase
from desk import until
from editor import Editor, store_settings
from wayland import WaylandDesk


class OnWayland(DeskCase):
    Desk = WaylandDesk

    def setUp(self):
        super().setUp()
        store_settings(self.desk, selectedTool="brush")
        self.photo = self.desk.home / "dandelion.jpg"
        shutil.copy(photos.JPEG, self.photo)
        self.drawing = self.desk.home / "stripes.png"
        shutil.copy(photos.PNG, self.drawing)

    def open_photo(self):
        editor = self.start(self.photo)
        editor.wait_for_window("dandelion - Quillabrae v")
        editor.wait_for_status("Opened dandelion.jpg")
        return editor

    def test_the_window_shows_the_picture(self):
        editor = self.open_photo()
        self.assertEqual(len(editor.windows()), 1)

        def shows_the_photo():
            with Image.open(editor.screenshot("15-wayland")) as shot:
                middle = shot.convert("RGB").crop((500, 350, 900, 650))
            # A photograph has many colours; an empty window or the desk's ground has few.
            return len(set(middle.getdata())) > 1000
        until(shows_the_photo, "the photograph on the compositor's screen")

    def test_a_second_start_hands_its_file_to_the_running_window(self):
        editor = self.open_photo()
        self.assertEqual(self.second_start(editor, self.drawing), 0)
        editor.wait_for_window("stripes - Quillabrae v")
        self.assertEqual(len(editor.windows()), 1)

    def test_the_bus_starts_it_here_and_reaches_it(self):
        install(self.desk)
        bus = SessionBus(self.desk)
        bus.open(self.photo, activation_token="token-of-the-asker")
        editor = Editor.running(self.desk, bus.owner_pid())
        self.running.append(editor)
        editor.wait_for_window("dandelion - Quillabrae v")
        self.assertIn(b"QT_QPA_PLATFORM=wayland",
                      (editor.process.folder / "environ").read_bytes().split(b"\0"))
        bus.open(self.drawing, activation_token="another-token")
        editor.wait_for_window("stripes - Quillabrae v")

    def test_work_is_there_again_after_a_kill(self):
        editor = self.open_photo()
        self.assertFalse(editor.wait_for_control("Undo").has("enabled"))
        editor.wait_for_control("New Layer", "push button").press()
        until(lambda: editor.wait_for_control("Undo").has("enabled"), "the new layer")
        editor.kill()
        again = self.start()
        again.wait_for_window("dandelion - Quillabrae v")
        self.assertTrue(again.wait_for_control("Undo").has("enabled"))


if __name__ == "__main__":
    unittest.main()
