# SPDX-License-Identifier: GPL-3.0-or-later
"""The clipboard with other programs as owners: xclip, which offers one type at a time."""

import io
import json
import shutil
import subprocess
import time
import unittest
import urllib.request

from PIL import Image

from desk import until
from pictures import DRAWING, PicturesCase


class Clipboard(PicturesCase):
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

    def get(self, kind):
        """What another program gets of that type."""
        return subprocess.run(["xclip", "-selection", "clipboard", "-o", "-t", kind], check=True,
                              env=self.desk.environment, capture_output=True, timeout=60).stdout

    def copy_all(self, editor):
        """Selects and copies the whole canvas."""
        self.desk.keys("ctrl+a")
        editor.wait_for_status("Selected canvas pixels")
        self.desk.keys("ctrl+c")
        editor.wait_for_status("Copied selected pixels")

    def start_under(self, home):
        """Another instance, of another user as it were."""
        environment = self.desk.environment
        places = {"HOME": home, "XDG_CONFIG_HOME": home / ".config",
                  "XDG_DATA_HOME": home / ".local/share", "XDG_CACHE_HOME": home / ".cache",
                  "XDG_STATE_HOME": home / ".local/state", "XDG_RUNTIME_DIR": home / "run"}
        for place in places.values():
            place.mkdir(parents=True, exist_ok=True)
            place.chmod(0o700)
        # The first start's tour would stand in front.
        shutil.copytree(self.desk.home / ".config/Quillabrae", home / ".config/Quillabrae")
        self.desk.environment = environment | {name: str(place) for name, place in places.items()}
        try:
            return self.start()
        finally:
            self.desk.environment = environment

    def test_another_program_gets_the_copied_picture(self):
        editor = self.open_drawing()
        self.copy_all(editor)
        kinds = self.get("TARGETS").decode().split()
        self.assertIn("image/png", kinds)
        self.assertLess(kinds.index("image/png"), kinds.index("image/tiff"))
        self.assertNotIn("application/x-qt-image", kinds)
        original = Image.open(self.drawing).convert("RGBA")
        file = urllib.request.url2pathname(
            self.get("text/uri-list").decode().strip().removeprefix("file://"))
        self.assertEqual(self.get("x-special/gnome-copied-files").decode(),
                         f"copy\n{self.get('text/uri-list').decode().strip()}")
        self.assertRegex(file, "/Quillabrae/Clipboard/stripes-[0-9A-F-]{36}[.]png$")
        for picture in (io.BytesIO(self.get("image/png")), io.BytesIO(self.get("image/tiff")), file):
            copied = Image.open(picture)
            self.assertEqual(copied.size, original.size)
            self.assertEqual(copied.convert("RGBA").getpixel((700, 500)),
                             original.getpixel((700, 500)))
        self.assertEqual(json.loads(self.get("com.orvik.Quillabrae.clipboard-metadata")),
                         {"sourceX": 0, "sourceY": 0})

    def test_another_instance_pastes_the_copied_picture(self):
        editor = self.open_drawing()
        self.copy_all(editor)
        other = self.start_under(self.desk.folder / "other")
        other.wait_for_window("Welcome to Quillabrae")
        self.desk.keys("ctrl+v")
        other.wait_for_window("Pasted Image - Quillabrae v")

    def test_a_copy_outlives_the_program_where_copies_are_kept(self):
        self.desk.spawn("xfce4-clipman")
        # Nothing tells from outside when it is ready.
        time.sleep(3)
        editor = self.open_drawing()
        self.copy_all(editor)
        self.desk.keys("ctrl+q")
        self.assertEqual(editor.process.wait(30), 0)
        picture = Image.open(io.BytesIO(self.get("image/png")))
        self.assertEqual(picture.size, Image.open(self.drawing).size)
        again = self.start()
        again.wait_for_window("Welcome to Quillabrae")
        self.desk.keys("ctrl+v")
        again.wait_for_window("Pasted Image - Quillabrae v")

    def test_pictures_are_pasted_in_each_form(self):
        editor = self.open_drawing()
        for kind, name in (("image/png", "a.png"), ("image/tiff", "a.tiff"), ("image/webp", "a.webp"),
                           ("image/bmp", "a.bmp")):
            with self.subTest(kind):
                self.desk.copy(kind, self.picture(name))
                self.paste(editor)
                editor.wait_for_status("Pasted image as selected pixels")
        editor.screenshot("clipboard-pasted")

    def test_an_svg_asks_for_its_size_as_a_drawing_and_as_text(self):
        editor = self.open_drawing()
        for kind in ("image/svg+xml", "UTF8_STRING"):
            with self.subTest(kind):
                self.desk.copy(kind, self.file_with("drawing", DRAWING))
                before = editor.recorded_edits("Paste")
                self.desk.keys("ctrl+v")
                editor.wait_for_window("Import SVG")
                self.desk.keys("Return")
                until(lambda: editor.recorded_edits("Paste") > before, "the paste to be recorded")

    def test_a_file_copied_in_a_file_manager_is_its_picture(self):
        editor = self.open_drawing()
        picture = self.picture("a b.png")
        self.desk.copy("x-special/gnome-copied-files", self.file_with("copied", f"copy\n{picture.as_uri()}".encode()))
        self.paste(editor)
        self.desk.copy("text/uri-list", self.file_with("list", f"{picture.as_uri()}\r\n".encode()))
        self.paste(editor)

    def test_what_is_no_image_is_not_pasted(self):
        editor = self.open_drawing()
        rubbish = self.file_with("rubbish", bytes(range(256)) * 40)
        for kind, file in (("UTF8_STRING", self.file_with("words", b"words")),
                           ("image/png", rubbish), ("image/tiff", rubbish),
                           ("text/uri-list", rubbish),
                           ("image/png", self.file_with("empty", b""))):
            with self.subTest(kind):
                self.desk.copy(kind, file)
                self.paste_nothing(editor)
        self.desk.copy("image/png", self.picture("a.png"))
        self.paste(editor)

    def test_a_large_picture_asks_where_it_goes(self):
        editor = self.open_drawing()
        self.desk.copy("image/png", self.picture("large.png", (8000, 8000)))
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
        self.desk.copy("image/png", self.picture("a.png"))
        self.desk.keys("ctrl+v")
        editor.wait_for_window("Pasted Image - Quillabrae v")
        editor.wait_for_status("Created Pasted Image from clipboard")


if __name__ == "__main__":
    unittest.main()
