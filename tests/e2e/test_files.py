# SPDX-License-Identifier: GPL-3.0-or-later
"""Choosing files: in the desktop's own dialogs where it has them, and in ours where not."""

import shutil
import time
import unittest

from PIL import Image

import package
import photos
from case import DeskCase
from desk import until
from editor import store_settings
from filechooser import CANCELLED, FAILED, FileChooser
from portal import Portal

SAVE = "Save Quillabrae"
IMPORT = "Import Layer From File"
FORMATS = ["project", "png", "jpeg", "heic", "webp", "tiff", "svg", "bmp", "gif", "jpeg2000"]


class Choosing(DeskCase):
    def setUp(self):
        super().setUp()
        store_settings(self.desk, selectedTool="brush")
        self.pictures = self.desk.home / "Pictures"
        self.pictures.mkdir()
        self.drawing = self.desk.home / "stripes.png"
        Image.new("RGBA", (60, 40), "teal").save(self.drawing)

    def desktop(self, **options):
        return FileChooser(self.desk.environment["DBUS_SESSION_BUS_ADDRESS"], **options)

    def open_drawing(self):
        editor = self.start(self.drawing)
        editor.wait_for_window("stripes - Quillabrae v")
        editor.wait_for_status("Opened stripes.png")
        return editor

    def ask_to_save(self):
        self.desk.keys("ctrl+shift+s")

    def ask_to_import(self, editor):
        bar = editor.wait_for_control(None, "menu bar")
        self.desk.click(next(menu for menu in bar.children() if menu.name == "Layers").middle)
        self.desk.click(editor.wait_for_control("Import From File...").middle)

    def question(self, desktop):
        return until(lambda: desktop.requests and desktop.requests[-1], "the desktop to be asked")

    def assert_waits(self, editor):
        """It answers, and knows of a dialog that it shows no window of."""
        self.assertIn(SAVE, editor.titles())
        self.assertFalse(self.visible(SAVE))

    def visible(self, title):
        return self.desk.tool("xdotool", "search", "--onlyvisible", "--name", f"^{title}").split()

    # The desktop's own

    def test_what_the_desktop_is_asked_for_and_says_is_saved(self):
        desktop = self.desktop()
        editor = self.open_drawing()
        self.ask_to_save()
        request = self.question(desktop)
        self.assertEqual((request.method, request.title), ("SaveFile", SAVE))
        self.assertEqual(request.folder, str(self.pictures))
        self.assertEqual(request.options["current_name"], "stripes")
        self.assertEqual(request.options["accept_label"], "Save")
        (_, title, options, selected), = request.options["choices"]
        self.assertEqual(title, "Format:")
        self.assertEqual([name for name, _ in options], FORMATS)
        self.assertEqual(dict(options)["webp"], "WebP Image (.webp)")
        self.assertEqual(selected, "project")
        window, = self.visible("stripes - ")
        self.assertEqual(request.window, f"x11:{int(window):x}")
        self.assert_waits(editor)
        desktop.choose(request, self.pictures / "evening.jpg", options="png")
        editor.wait_for_status("Saved evening.png")
        with Image.open(self.pictures / "evening.png") as saved:
            self.assertEqual(saved.size, (60, 40))
        self.assertFalse((self.pictures / "evening.jpg").exists())

    def test_its_window_is_held_back_while_the_desktop_asks(self):
        desktop = self.desktop()
        editor = self.open_drawing()
        self.ask_to_save()
        request = self.question(desktop)
        self.desk.keys("ctrl+n")
        self.desk.keys("ctrl+shift+s")
        time.sleep(0.5)
        self.assert_waits(editor)
        self.assertEqual(len(desktop.requests), 1)
        # A second start still reaches it.
        other = self.desk.home / "other.png"
        Image.new("RGB", (30, 30), "red").save(other)
        self.assertEqual(self.second_start(editor, other), 0)
        editor.wait_for_status("Opened other.png")
        desktop.respond(request, CANCELLED)
        self.desk.keys("ctrl+n")
        editor.wait_for_window("New Project")

    def test_a_cancelled_question_changes_nothing_and_can_be_asked_again(self):
        desktop = self.desktop()
        editor = self.open_drawing()
        self.ask_to_save()
        desktop.respond(self.question(desktop), CANCELLED)
        until(lambda: self.ask_to_save() or len(desktop.requests) > 1, "a second question")
        desktop.choose(desktop.requests[-1], self.pictures / "evening", options="project")
        editor.wait_for_status("Saved evening.quillabrae")
        self.assertEqual(package.read(self.pictures / "evening.quillabrae")["canvasWidth"], 60)
        # The next question starts where the last answer was.
        until(lambda: self.ask_to_save() or len(desktop.requests) > 2, "a third question")
        self.assertEqual(desktop.requests[-1].folder, str(self.pictures))

    def test_a_picture_is_imported_from_the_desktops_answer(self):
        desktop = self.desktop()
        editor = self.open_drawing()
        photo = self.desk.home / "a b%c.jpg"
        shutil.copy(photos.JPEG, photo)
        self.ask_to_import(editor)
        request = self.question(desktop)
        self.assertEqual((request.method, request.title), ("OpenFile", IMPORT))
        (images, patterns), (everything, all_files) = request.options["filters"]
        self.assertEqual((images, everything), ("Images", "All Files"))
        self.assertIn((0, "*.[pP][nN][gG]"), patterns)
        self.assertEqual(all_files, [(0, "*")])
        self.assertFalse(request.options.get("multiple") or request.options.get("directory"))
        desktop.choose(request, photo)
        editor.wait_for_status("a b%c")

    def test_a_name_alone_decides_where_the_desktop_shows_no_formats(self):
        desktop = self.desktop()
        editor = self.open_drawing()
        self.ask_to_save()
        desktop.choose(self.question(desktop), self.pictures / "evening.bmp")
        editor.wait_for_status("Saved evening.bmp")

    def test_a_file_is_agreed_to_be_replaced_once(self):
        desktop = self.desktop()
        editor = self.open_drawing()
        there = self.pictures / "evening.png"
        there.write_bytes(b"old")
        # Asked about by the desktop.
        self.ask_to_save()
        desktop.choose(self.question(desktop), there, options="png")
        editor.wait_for_status("Saved evening.png")
        self.assertNotEqual(there.read_bytes(), b"old")
        # Named by the format, so the desktop did not know.
        there.write_bytes(b"old")
        until(lambda: self.ask_to_save() or len(desktop.requests) > 1, "a second question")
        desktop.choose(desktop.requests[-1], self.pictures / "evening", options="png")
        editor.wait_for_control('A file named "evening.png" already exists.')
        self.desk.keys("Escape")
        until(lambda: len(editor.windows()) == 1, "the question to close")
        self.assertEqual(there.read_bytes(), b"old")

    def test_a_package_that_was_entered_is_the_package(self):
        desktop = self.desktop()
        editor = self.open_drawing()
        self.ask_to_save()
        desktop.choose(self.question(desktop), self.pictures / "evening", options="project")
        editor.wait_for_status("Saved evening.quillabrae")
        until(lambda: self.ask_to_save() or len(desktop.requests) > 1, "a second question")
        desktop.choose(desktop.requests[-1], self.pictures / "evening.quillabrae/stripes",
                       options="project")
        editor.wait_for_control('A file named "evening.quillabrae" already exists.')
        self.desk.keys("Return")
        editor.wait_for_status("Saved evening.quillabrae")
        self.assertFalse((self.pictures / "evening.quillabrae/stripes.quillabrae").exists())

    # Ours

    def save_with_our_dialog(self, editor):
        until(lambda: self.visible(SAVE), "our dialog")
        self.desk.keys("ctrl+a")
        self.desk.type(str(self.pictures / "evening"))
        self.desk.keys("Return")
        editor.wait_for_status("Saved evening.quillabrae")

    def test_projects_are_picked_in_our_dialog(self):
        desktop = self.desktop()
        editor = self.open_drawing()
        self.desk.keys("ctrl+o")
        editor.wait_for_window("Open Quillabrae Project or Image")
        self.assertEqual(desktop.requests, [])

    def test_a_desktop_without_dialogs_leaves_them_to_us(self):
        Portal(self.desk.environment["DBUS_SESSION_BUS_ADDRESS"], "light")
        editor = self.open_drawing()
        self.ask_to_save()
        self.save_with_our_dialog(editor)

    def test_an_error_leaves_it_to_us(self):
        desktop = self.desktop(manner="refuses")
        editor = self.open_drawing()
        self.ask_to_save()
        self.save_with_our_dialog(editor)
        self.assertEqual(len(desktop.requests), 1)

    def test_a_dialog_that_fails_leaves_it_to_us(self):
        desktop = self.desktop()
        editor = self.open_drawing()
        self.ask_to_save()
        desktop.respond(self.question(desktop), FAILED)
        self.save_with_our_dialog(editor)

    def test_a_desktop_that_vanishes_leaves_it_to_us(self):
        desktop = self.desktop()
        editor = self.open_drawing()
        self.ask_to_save()
        self.question(desktop)
        time.sleep(0.3)
        desktop.vanish()
        self.save_with_our_dialog(editor)

    def test_a_dialog_that_comes_too_late_is_closed(self):
        desktop = self.desktop(manner="sleeps")
        editor = self.open_drawing()
        self.ask_to_save()
        request = self.question(desktop)
        until(lambda: self.visible(SAVE), "our dialog")
        desktop.wake(request)
        until(lambda: request.is_closed, "the late dialog to be closed")
        desktop.choose(request, self.desk.home / "wrong", options="project")
        self.save_with_our_dialog(editor)
        self.assertFalse((self.desk.home / "wrong.quillabrae").exists())


if __name__ == "__main__":
    unittest.main()
