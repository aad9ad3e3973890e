# SPDX-License-Identifier: GPL-3.0-or-later
"""Strokes from a fast device, and painting by keyboard as a screen reader follows it."""

import unittest

from PIL import Image

from case import DeskCase
from desk import until
from editor import store_settings

SIZE = (800, 600)
BLACK = {"red": 0, "green": 0, "blue": 0, "alpha": 1}


class Canvas(DeskCase):
    def open_white(self):
        store_settings(self.desk, brushSize=5, primaryColor=BLACK)
        self.drawing = self.desk.home / "white.png"
        Image.new("RGB", SIZE, "white").save(self.drawing)
        editor = self.start(self.drawing)
        editor.wait_for_window("white - Quillabrae v")
        editor.wait_for_status("Opened white.png")
        editor.choose_tool("Paintbrush")
        return editor

    def saved(self, editor):
        self.desk.keys("ctrl+s")
        editor.wait_for_status("Saved white.png")
        return Image.open(self.drawing).convert("L")

    @staticmethod
    def is_inked(picture, point):
        column, row = round(point[0] - 0.5), round(point[1] - 0.5)
        return min(picture.getpixel((x, y)) for x in range(column - 2, column + 3)
                   for y in range(row - 2, row + 3)) < 100

    def test_every_place_that_the_pointer_was_at_is_in_the_stroke(self):
        editor = self.open_white()
        middle = editor.canvas_middle()
        view = editor.view(middle)
        # Up and down in steep turns of unequal height, so that one left out leaves a gap.
        places = [(middle[0] - 250 + 3 * i,
                   middle[1] + (1 if i % 2 else -1) * (40 + i * 37 % 90)) for i in range(160)]
        self.assertTrue(all(0 < x < SIZE[0] and 0 < y < SIZE[1]
                            for x, y in map(view.on_canvas, places)))
        recorded = editor.recorded_edits("Paintbrush")
        editor.press_at(places[0])
        turns = [word for x, y in places for word in ("mousemove", x, y)]
        # One program that waits for nothing: far faster than the editor paints.
        self.desk.tool("xdotool", *turns, "mouseup", 1)
        until(lambda: editor.recorded_edits("Paintbrush") > recorded, "the stroke to be recorded")
        picture = self.saved(editor)
        missing = [i for i, place in enumerate(places)
                   if not self.is_inked(picture, view.on_canvas(place))]
        self.assertEqual(missing, [])

    def test_the_keyboard_paints_and_a_screen_reader_follows(self):
        editor = self.open_white()
        canvas = editor.wait_for_control("Canvas")
        self.assertEqual(canvas.role, "canvas")
        self.desk.move((5, 5))
        until(lambda: canvas.has("focused"), "the canvas to have the keyboard")
        # A picture that was opened is selected as a whole.
        self.desk.keys("Escape")
        until(lambda: canvas.description.endswith("No selection"), "the selection to go")
        self.desk.keys("ctrl+alt+shift+Left")
        until(lambda: canvas.description.startswith("Pixel 390, 300, #ffffff. Paintbrush. "),
              "the keyboard's pixel")
        self.desk.keys("space")
        until(lambda: "Paintbrush, pressed." in canvas.description, "the press")
        for _ in range(3):
            self.desk.keys("ctrl+alt+shift+Right")
        editor.screenshot("14-keyboard-painting")
        self.desk.keys("space")
        until(lambda: canvas.description.startswith("Pixel 420, 300, #000000. Paintbrush. "),
              "the stroke's end")
        self.desk.keys("space", "ctrl+alt+shift+Down", "Escape")
        until(lambda: canvas.description.startswith("Pixel 420, 310, #ffffff. Paintbrush. "),
              "the given-up stroke to be gone")
        self.assertEqual(editor.recorded_edits("Paintbrush"), 1)
        picture = self.saved(editor)
        self.assertTrue(self.is_inked(picture, (405, 300)))
        self.assertFalse(self.is_inked(picture, (420, 308)))


if __name__ == "__main__":
    unittest.main()
