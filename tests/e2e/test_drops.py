# SPDX-License-Identifier: GPL-3.0-or-later
"""Things dragged out of another program and dropped on the editor's windows."""

import os
import time
import unittest
from pathlib import Path

from desk import ROOT, until
from pictures import DRAWING, PicturesCase

DRAG_SOURCE = Path(os.environ.get("QUILLABRAE_DRAG_SOURCE", ROOT / "build/bin/quillabrae-drag-source"))
SOURCE_PLACE = (24, 24)


class Drops(PicturesCase):
    def setUp(self):
        super().setUp()
        self.source = None

    def files(self, *paths):
        """What a file manager drags along for these files."""
        links = "".join(f"{path.as_uri()}\r\n" for path in paths).encode()
        names = "\n".join(map(str, paths)).encode()
        return {"text/uri-list": self.file_with("links", links),
                "text/plain": self.file_with("names", names)}

    def drop(self, editor, forms, place=None):
        """Drags these forms from the other program to the middle of the canvas, or to a place.

        Returns whether the window took them.
        """
        if self.source:
            self.source.terminate()
            self.source.wait(10)
        log = self.desk.folder / f"{DRAG_SOURCE.name}.log"
        log.unlink(missing_ok=True)
        self.source = self.desk.spawn(DRAG_SOURCE, *(f"{kind}={file}" for kind, file in forms.items()))
        until(lambda: self.desk.tool("xdotool", "search", "--name", "^Drag source$").strip().isdigit(),
              "the other program's window")
        x, y = place or editor.canvas_middle()
        self.desk.move(SOURCE_PLACE)
        self.desk.tool("xdotool", "mousedown", 1)
        # Enough of them that both sides have answered each other before the end.
        for step in range(1, 11):
            self.desk.move((SOURCE_PLACE[0] + (x - SOURCE_PLACE[0]) * step / 10,
                            SOURCE_PLACE[1] + (y - SOURCE_PLACE[1]) * step / 10))
            time.sleep(0.08)
        time.sleep(0.2)
        self.desk.tool("xdotool", "mouseup", 1)
        said = until(lambda: self.desk.log_of(DRAG_SOURCE.name).split(), "the end of the drag")
        # It goes on until the next drag: only now does the editor fetch what was dropped.
        self.assertIn(said[-1], ("taken", "refused"))
        return said[-1] == "taken"

    def drop_image(self, editor, forms):
        # The opened image came in by a paste too, which is on disk from the first edit on.
        before = max(editor.recorded_edits("Paste"), 1)
        self.assertTrue(self.drop(editor, forms))
        editor.wait_for_status("Pasted image as selected pixels")
        until(lambda: editor.recorded_edits("Paste") > before, "the paste to be recorded", 60)
        self.assertEqual(editor.recorded_edits("Paste"), before + 1)

    def drop_nothing(self, editor, forms, says="Drop failed: no image found"):
        before = editor.recorded_edits("Paste")
        self.drop(editor, forms)
        editor.wait_for_status(says)
        self.assertEqual(editor.recorded_edits("Paste"), before)
        self.assertIsNone(editor.process.poll())

    def test_a_file_and_several_files_are_pasted_once(self):
        editor = self.open_drawing()
        self.drop_image(editor, self.files(self.picture("a b.png")))
        editor.screenshot("drop-of-a-file")
        self.drop_image(editor, self.files(self.picture("1.png"), self.picture("2.png"),
                                           self.picture("3.png")))

    def test_an_image_from_a_browser_is_its_data(self):
        editor = self.open_drawing()
        self.drop_image(editor, {
            "text/uri-list": self.file_with("link", b"https://example.org/cat.png\r\n"),
            "text/html": self.file_with("html", b'<img src="https://example.org/cat.png">'),
            "text/plain": self.file_with("plain", b"https://example.org/cat.png"),
            "image/png": self.picture("cat.png")})

    def test_svg_text_asks_for_its_size(self):
        editor = self.open_drawing()
        self.assertTrue(self.drop(editor, {"text/plain": self.file_with("svg", DRAWING)}))
        editor.wait_for_window("Import SVG")
        editor.screenshot("drop-of-svg-text")
        self.desk.keys("Return")
        editor.wait_for_status("Pasted image as selected pixels")

    def test_what_holds_no_image_is_told(self):
        editor = self.open_drawing()
        folder = self.pictures / "Holidays"
        folder.mkdir()
        self.drop_nothing(editor, self.files(self.file_with("wall.ppm", b"P6 20000 20000 255\n")),
                          says="Open failed: image could not be read")
        self.drop_nothing(editor, self.files(folder))
        self.drop_image(editor, self.files(self.picture("a.png")))
        self.drop_nothing(editor, self.files(self.file_with("letter.txt", b"words")))
        self.drop_image(editor, self.files(self.picture("a.png")))
        self.drop_nothing(editor, {"text/plain": self.file_with("words", b"only words")})

    def test_a_package_is_opened(self):
        editor = self.open_drawing()
        saved = self.pictures / "boat.quillabrae"
        self.desk.keys("ctrl+shift+s")
        editor.wait_for_window("Save Quillabrae")
        self.desk.keys("ctrl+a")
        editor.desk.type(str(saved.with_suffix("")))
        self.desk.keys("Return")
        editor.wait_for_status("Saved boat.quillabrae", 60)
        self.assertTrue(self.drop(editor, self.files(saved)))
        editor.wait_for_status("Opened boat")
        editor.wait_for_window("boat - Quillabrae v")

    def test_an_image_on_the_welcome_window_is_a_project(self):
        editor = self.start()
        welcome = editor.wait_for_window("Welcome to Quillabrae")
        self.assertTrue(self.drop(editor, self.files(self.picture("a.png")), welcome.middle))
        editor.wait_for_window("Pasted Image - Quillabrae v")
        editor.wait_for_status("Created Pasted Image from clipboard")


if __name__ == "__main__":
    unittest.main()
