# SPDX-License-Identifier: GPL-3.0-or-later
"""From a photograph to a saved project and back, as a person goes.

xdotool has no touchpad, so zooming by pinch is not in here; tests/canvas sends the widget the pinch
events themselves.
"""

import shutil
import unittest

from PIL import Image, ImageChops

import package
import photos
import strokes
from case import DeskCase
from desk import until
from editor import store_settings

RED = (255, 0, 0, 255)
WIDTH = 160
HARDNESS = 40
PAINTED = [(1300, 700), (2600, 1500), (3600, 1000)]
ERASED = [(2300, 1900), (2900, 600)]
# One screen pixel is several canvas pixels at the zoom of a fitted photograph; the status line
# tells a place to one canvas pixel.
PLACE_ERROR = 4


class Road(DeskCase):
    def test_from_a_jpeg_to_a_package_and_back(self):
        self.go(photos.JPEG, "dandelion.jpg")

    def test_from_a_png_to_a_package_and_back(self):
        self.go(photos.PNG, "stripes.png")

    def go(self, picture, file_name):
        photo = self.desk.home / "Pictures" / file_name
        photo.parent.mkdir()
        shutil.copy(picture, photo)
        self.photo, self.name = photo, photo.stem
        store_settings(self.desk, selectedTool="brush", brushSize=WIDTH, pencilHardness=HARDNESS,
                       primaryColor={"red": 1, "green": 0, "blue": 0, "alpha": 1})
        editor = self.start(photo)
        self.open_and_paint(editor)
        self.zoom_and_pan(editor)
        self.undo_and_redo(editor)
        saved = self.save_as(editor, self.name)
        self.compare_with_what_was_painted(package.read(saved), photo)
        self.reopen_from_the_welcome_window(editor, saved)
        self.reopen_with_the_file_dialog(editor, saved)

    def open_and_paint(self, editor):
        editor.wait_for_window(f"{self.name} - Quillabrae v")
        editor.wait_for_status(f"Opened {self.photo.name}")
        editor.screenshot(f"{self.name}-1-photo-opened")
        self.middle = editor.canvas_middle()
        self.desk.keys("ctrl+b")
        editor.wait_for_status("Zoomed to fit canvas")
        view = editor.view(self.middle)
        self.painted = editor.stroke("Paintbrush", view, PAINTED)
        self.erased = editor.stroke("Eraser", view, ERASED)
        editor.screenshot(f"{self.name}-2-painted-and-erased")

    def zoom_and_pan(self, editor):
        before = editor.view(self.middle)
        under = before.on_canvas(self.middle)
        editor.desk.wheel(self.middle, 3, modifier="ctrl")
        zoomed = until(lambda: self.changed(editor, before), "the zoom to change")
        self.assertGreater(zoomed.zoom, before.zoom * 1.2)
        for was, now in zip(under, zoomed.on_canvas(self.middle)):
            self.assertAlmostEqual(was, now, delta=2 / before.zoom)

        editor.choose_tool("Pan")
        start = self.middle
        editor.desk.drag([start, (start[0] - 60, start[1] - 40)])
        panned = editor.view(self.middle)
        self.assertAlmostEqual(panned.origin[0] - zoomed.origin[0], -60, delta=3)
        self.assertAlmostEqual(panned.origin[1] - zoomed.origin[1], -40, delta=3)
        self.assertAlmostEqual(panned.zoom, zoomed.zoom, delta=zoomed.zoom * 0.02)
        editor.screenshot(f"{self.name}-3-zoomed-and-panned")

    def changed(self, editor, before):
        view = editor.view(self.middle)
        return view if abs(view.zoom / before.zoom - 1) > 0.1 else None

    def undo_and_redo(self, editor):
        editor.desk.move(self.middle)
        with_both = self.canvas_picture(editor)
        editor.desk.keys("ctrl+z")
        until(lambda: self.differ(with_both, self.canvas_picture(editor)), "undo to show")
        editor.desk.keys("ctrl+shift+z")
        until(lambda: not self.differ(with_both, self.canvas_picture(editor)), "redo to show")

    def canvas_picture(self, editor):
        x, y = self.middle
        with Image.open(editor.screenshot(f"{self.name}-canvas-now")) as shot:
            return shot.convert("RGB").crop((x - 250, y - 150, x + 250, y + 150))

    @staticmethod
    def differ(one, other):
        return ImageChops.difference(one, other).getbbox() is not None

    def save_as(self, editor, name):
        saved = self.desk.home / f"Pictures/{name}.quillabrae"
        editor.desk.keys("ctrl+shift+s")
        editor.wait_for_window("Save Quillabrae")
        editor.screenshot(f"{self.name}-4-saving-{name}")
        editor.desk.keys("ctrl+a")
        editor.desk.type(str(saved.with_suffix("")))
        editor.desk.keys("Return")
        editor.wait_for_status(f"Saved {saved.name}", 60)
        self.assertEqual(sorted(p.name for p in saved.iterdir()), ["QuickLook", "project.json"])
        return saved

    def compare_with_what_was_painted(self, project, photo):
        self.assertEqual(project["title"], self.name)
        self.assertNotIn("fileURL", project)
        self.assertEqual(len(project["layers"]), 1)
        layer = project["layers"][0]
        self.assertEqual((layer["isVisible"], layer["isLocked"], layer["opacity"]), (True, False, 1))
        with Image.open(photo) as opened:
            expected = opened.convert("RGBA")
        self.assertEqual((project["canvasWidth"], project["canvasHeight"]), expected.size)
        result = package.pixels(layer)
        self.assertEqual(result.size, expected.size)
        self.assert_untouched_outside(result, expected)
        self.assert_red_along_the_stroke(result)
        self.assert_erased_with_a_soft_edge(result)

    def assert_untouched_outside(self, result, photo):
        touched = ImageChops.lighter(
            strokes.band(photo.size, self.painted, WIDTH + 2 * PLACE_ERROR),
            strokes.band(photo.size, self.erased, WIDTH + 2 * PLACE_ERROR))
        difference = ImageChops.difference(result, photo)
        for name, channel in zip("RGBA", difference.split()):
            channel.paste(0, mask=touched)
            self.assertIsNone(channel.getbbox(), f"channel {name} changed outside the strokes")

    def assert_red_along_the_stroke(self, result):
        red = strokes.band(result.size, self.painted, WIDTH - 2 * PLACE_ERROR - 2)
        red.paste(0, mask=strokes.band(result.size, self.erased, WIDTH + 2 * PLACE_ERROR))
        self.assertGreater(red.histogram()[255], 100_000)
        difference = ImageChops.difference(result, Image.new("RGBA", result.size, RED))
        for channel in difference.split():
            channel.paste(0, mask=ImageChops.invert(red))
            self.assertIsNone(channel.getbbox(), "the stroke is not all red")

    def assert_erased_with_a_soft_edge(self, result):
        (x0, y0), (x1, y1) = self.erased
        length = ((x1 - x0) ** 2 + (y1 - y0) ** 2) ** 0.5
        across = ((y0 - y1) / length, (x1 - x0) / length)
        worst, partly = 0, 0
        for t in (0.3, 0.5, 0.7):
            middle = (x0 + t * (x1 - x0), y0 + t * (y1 - y0))
            self.assertEqual(result.getpixel(tuple(map(round, middle)))[3], 0)
            worst_here = min(self.profile_error(result, middle, across, shift / 2)
                             for shift in range(-2 * PLACE_ERROR, 2 * PLACE_ERROR + 1))
            worst = max(worst, worst_here)
            partly += sum(0 < self.alpha(result, middle, across, d)[1] < 255
                          for d in range(-WIDTH // 2, WIDTH // 2))
        self.assertLess(worst, 12, "the eraser's edge is not as soft as its hardness says")
        self.assertGreater(partly, WIDTH // 2)

    def profile_error(self, result, middle, across, shift):
        """The most that alpha across the erased line is off, the line being moved by `shift`."""
        error = 0
        for d in range(-WIDTH // 2 - 10, WIDTH // 2 + 10, 3):
            pixel, alpha = self.alpha(result, middle, across, d)
            moved = (pixel[0] + 0.5 - shift * across[0], pixel[1] + 0.5 - shift * across[1])
            expected = strokes.alpha_after_erasing(moved, self.erased, WIDTH, HARDNESS)
            error = max(error, abs(alpha - expected))
        return error

    @staticmethod
    def alpha(result, middle, across, d):
        pixel = (int(middle[0] + d * across[0]), int(middle[1] + d * across[1]))
        return pixel, result.getpixel(pixel)[3]

    def reopen_from_the_welcome_window(self, editor, saved):
        editor.desk.keys("ctrl+w")
        until(lambda: not editor.windows(), "the editor window to close")
        self.assertEqual(self.second_start(editor), 0)
        editor.wait_for_window("Welcome to Quillabrae")
        editor.wait_for_control(self.name)
        editor.screenshot(f"{self.name}-5-welcome")
        editor.click(self.name)
        editor.wait_for_window(f"{self.name} - Quillabrae v")
        editor.wait_for_status(f"Opened {self.name}")
        editor.screenshot(f"{self.name}-6-reopened")
        again = self.save_as(editor, "again")
        self.assertEqual(*map(self.without_time, (package.read(saved), package.read(again))))

    def reopen_with_the_file_dialog(self, editor, saved):
        editor.desk.keys("ctrl+w")
        until(lambda: not editor.windows(), "the editor window to close")
        self.assertEqual(self.second_start(editor), 0)
        editor.wait_for_window("Welcome to Quillabrae")
        editor.click("Open Project...")
        editor.wait_for_window("Open Quillabrae Project or Image")
        editor.screenshot(f"{self.name}-7-open-dialog")
        editor.desk.type(str(saved))
        editor.desk.keys("Return")
        editor.wait_for_window(f"{self.name} - Quillabrae v")
        third = self.save_as(editor, "third")
        self.assertEqual(*map(self.without_time, (package.read(saved), package.read(third))))

    @staticmethod
    def without_time(project):
        return {key: value for key, value in project.items() if key != "lastModified"}


if __name__ == "__main__":
    unittest.main()
