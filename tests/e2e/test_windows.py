# SPDX-License-Identifier: GPL-3.0-or-later
"""Second starts, closing, being killed, being told to end, and quitting."""

import shutil
import signal
import unittest

import photos
from case import DeskCase
from desk import until
from editor import store_settings

STROKE = [(2000, 1000), (3000, 1500)]


class Windows(DeskCase):
    def setUp(self):
        super().setUp()
        pictures = self.desk.home / "Pictures"
        pictures.mkdir()
        self.photo = pictures / "dandelion.jpg"
        self.drawing = pictures / "stripes.png"
        shutil.copy(photos.JPEG, self.photo)
        shutil.copy(photos.PNG, self.drawing)
        store_settings(self.desk, selectedTool="brush", brushSize=80,
                       primaryColor={"red": 1, "green": 0, "blue": 0, "alpha": 1})

    def open_photo(self):
        editor = self.start(self.photo)
        editor.wait_for_window("dandelion - Quillabrae v")
        editor.wait_for_status("Opened dandelion.jpg")
        return editor

    @staticmethod
    def paint(editor):
        editor.desk.keys("ctrl+b")
        editor.wait_for_status("Zoomed to fit canvas")
        editor.stroke("Paintbrush", editor.view(editor.canvas_middle()), STROKE)

    @staticmethod
    def tabs(editor):
        row = editor.wait_for_control("Open projects")
        return [title for title in ("dandelion", "stripes") if row.find(title)]

    def test_a_second_start_hands_its_file_to_the_running_window(self):
        editor = self.open_photo()
        self.assertEqual(self.second_start(editor, self.drawing), 0)
        editor.wait_for_window("stripes - Quillabrae v")
        self.assertEqual(self.tabs(editor), ["dandelion", "stripes"])
        self.assertEqual(len(editor.windows()), 1)
        editor.screenshot("8-two-tabs")

    def test_the_close_button_keeps_unsaved_work_for_reopening(self):
        editor = self.open_photo()
        self.paint(editor)
        self.desk.keys("alt+F4")
        until(lambda: not editor.windows(), "the editor window to close without asking")
        self.assertEqual(self.second_start(editor), 0)
        editor.wait_for_window("Welcome to Quillabrae")
        editor.wait_for_control("Reopen Closed Work")
        editor.screenshot("9-reopen-closed-work")
        editor.click("Reopen Closed Work")
        editor.wait_for_window("dandelion - Quillabrae v")
        self.assertTrue(editor.wait_for_control("Undo").has("enabled"))

    def test_work_is_there_again_after_a_kill(self):
        editor = self.open_photo()
        self.paint(editor)
        editor.kill()
        again = self.start()
        again.wait_for_window("dandelion - Quillabrae v")
        self.assertTrue(again.wait_for_control("Undo").has("enabled"))
        self.assertEqual(len(again.windows()), 1)

    def test_a_terminate_signal_leaves_the_recovery_file(self):
        editor = self.open_photo()
        self.paint(editor)
        editor.process.send_signal(signal.SIGTERM)
        editor.process.wait(30)
        self.assertTrue(editor.recovery_file.exists())
        again = self.start()
        again.wait_for_window("dandelion - Quillabrae v")

    def test_quitting_asks_about_unsaved_work(self):
        editor = self.open_photo()
        self.paint(editor)
        self.desk.keys("ctrl+q")
        editor.wait_for_control('Save changes to "dandelion" before closing?')
        editor.screenshot("10-quit-asks")
        editor.click("Cancel")
        editor.wait_for_status("Quit cancelled")
        self.assertIsNone(editor.process.poll())
        self.desk.keys("ctrl+q")
        editor.click("Don't Save")
        self.assertEqual(editor.process.wait(30), 0)
        self.assertFalse(editor.recovery_file.exists())


if __name__ == "__main__":
    unittest.main()
