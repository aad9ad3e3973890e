# SPDX-License-Identifier: GPL-3.0-or-later
"""The clipboard with other programs as owners: xclip, which offers one type at a time."""

import shutil
import time
import unittest

from PIL import Image

import photos
from case import DeskCase
from desk import until
from editor import store_settings


class Clipboard(DeskCase):
    def setUp(self):
        super().setUp()
        self.pictures = self.desk.home / "Pictures"
        self.pictures.mkdir()
        self.drawing = self.pictures / "stripes.png"
        shutil.copy(photos.PNG, self.drawing)
        store_settings(self.desk, selectedTool="brush")

    def open_drawing(self):
        editor = self.start(self.drawing)
        editor.wait_for_window("stripes - Quillabrae v")
        editor.wait_for_status("Opened stripes.png")
        return editor

    def picture(self, name, size=(200, 100), color=(255, 0, 0, 255)):
        file = self.pictures / name
        Image.new("RGBA", size, color).save(file)
        return file

    def file_with(self, name, content):
        file = self.pictures / name
        file.write_bytes(content)
        return file

    def put(self, kind, file):
        """Another program copies a file's bytes as one type."""
        self.desk.spawn("xclip", "-selection", "clipboard", "-t", kind, "-i", file)
        until(lambda: kind in self.desk.tool("xclip", "-selection", "clipboard", "-o", "-t", "TARGETS"),
              f"xclip to offer {kind}")

    def paste(self, editor):
        """Pastes what is there and waits until the edit is on disk."""
        before = editor.recorded_edits("Paste")
        self.desk.keys("ctrl+v")
        until(lambda: editor.recorded_edits("Paste") > before, "the paste to be recorded", 60)

    def paste_nothing(self, editor):
        """Pastes what is no image: nothing comes of it, and the editor goes on."""
        before = editor.recorded_edits("Paste")
        self.desk.keys("ctrl+v")
        time.sleep(1.0)
        self.assertEqual(editor.recorded_edits("Paste"), before)
        self.assertIsNone(editor.process.poll())

    def test_pictures_are_pasted_in_each_form(self):
        editor = self.open_drawing()
        for kind, name in (("image/png", "a.png"), ("image/tiff", "a.tiff"), ("image/webp", "a.webp"),
                           ("image/bmp", "a.bmp")):
            with self.subTest(kind):
                self.put(kind, self.picture(name))
                self.paste(editor)
                editor.wait_for_status("Pasted image as selected pixels")
        editor.screenshot("clipboard-pasted")

    def test_a_file_copied_in_a_file_manager_is_its_picture(self):
        editor = self.open_drawing()
        picture = self.picture("a b.png")
        self.put("x-special/gnome-copied-files", self.file_with("copied", f"copy\n{picture.as_uri()}".encode()))
        self.paste(editor)
        self.put("text/uri-list", self.file_with("list", f"{picture.as_uri()}\r\n".encode()))
        self.paste(editor)

    def test_what_is_no_image_is_not_pasted(self):
        editor = self.open_drawing()
        rubbish = self.file_with("rubbish", bytes(range(256)) * 40)
        for kind, file in (("UTF8_STRING", self.file_with("words", b"words")),
                           ("image/png", rubbish), ("image/tiff", rubbish),
                           ("text/uri-list", rubbish),
                           ("image/png", self.file_with("empty", b""))):
            with self.subTest(kind):
                self.put(kind, file)
                self.paste_nothing(editor)
        self.put("image/png", self.picture("a.png"))
        self.paste(editor)

    def test_a_large_picture_asks_where_it_goes(self):
        editor = self.open_drawing()
        self.put("image/png", self.picture("large.png", (8000, 8000)))
        self.desk.keys("ctrl+v")
        editor.wait_for_control("Paste Image", seconds=60)
        editor.screenshot("clipboard-paste-asks")
        editor.click("Cancel")
        editor.wait_for_status("Paste cancelled")
        self.desk.keys("ctrl+v")
        editor.wait_for_control("Paste Image", seconds=60)
        before = editor.recorded_edits("Paste")
        editor.click("Keep canvas size")
        until(lambda: editor.recorded_edits("Paste") > before, "the paste to be recorded", 60)

    def test_a_picture_pasted_on_the_welcome_window_is_a_project(self):
        editor = self.start()
        editor.wait_for_window("Welcome to Quillabrae")
        self.put("image/png", self.picture("a.png"))
        self.desk.keys("ctrl+v")
        editor.wait_for_window("Pasted Image - Quillabrae v")
        editor.wait_for_status("Created Pasted Image from clipboard")


if __name__ == "__main__":
    unittest.main()
