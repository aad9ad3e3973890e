# SPDX-License-Identifier: GPL-3.0-or-later
"""A test case whose desk has a folder of pictures, one of them to be opened."""

import shutil

from PIL import Image

import photos
from case import DeskCase
from editor import store_settings

DRAWING = b'<svg xmlns="http://www.w3.org/2000/svg" width="60" height="40"><rect width="60" height="40"/></svg>'


class PicturesCase(DeskCase):
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
