# SPDX-License-Identifier: GPL-3.0-or-later
"""Logging out under an X session manager."""

import shutil
import unittest

import photos
from case import DeskCase
from desk import until
from editor import store_settings
from session import Session

QUESTION = 'Save changes to "dandelion" before closing?'
STROKE = [(2000, 1000), (3000, 1500)]


class LogOut(DeskCase):
    def setUp(self):
        super().setUp()
        self.photo = self.desk.home / "dandelion.jpg"
        shutil.copy(photos.JPEG, self.photo)
        store_settings(self.desk, selectedTool="brush", brushSize=80,
                       primaryColor={"red": 1, "green": 0, "blue": 0, "alpha": 1})
        self.session = Session(self.desk)
        self.editor = self.start(self.photo)
        self.editor.wait_for_window("dandelion - Quillabrae v")
        self.editor.wait_for_status("Opened dandelion.jpg")

    def paint(self):
        self.desk.keys("ctrl+b")
        self.editor.wait_for_status("Zoomed to fit canvas")
        self.editor.stroke("Paintbrush", self.editor.view(self.editor.canvas_middle()), STROKE)

    def assert_all_end(self):
        self.assertEqual(self.editor.process.wait(30), 0)
        self.session.process.wait(30)
        self.assertFalse(self.editor.recovery_file.exists())

    def test_with_nothing_unsaved_it_ends_without_a_question(self):
        self.session.log_out()
        self.assert_all_end()

    def test_refusing_cancels_the_log_out_and_discarding_lets_it_end(self):
        self.paint()
        self.session.log_out()
        self.editor.wait_for_control(QUESTION)
        self.editor.screenshot("11-log-out-asks")
        self.editor.click("Cancel")
        self.editor.wait_for_status("Quit cancelled")
        self.session.acknowledge_refusal()
        self.assertIsNone(self.editor.process.poll())

        self.session.log_out()
        self.editor.click("Don't Save")
        self.assert_all_end()

    def test_a_checkpoint_ends_nothing(self):
        self.paint()
        self.session.checkpoint()
        self.editor.click("Don't Save")
        self.desk.keys("ctrl+z")
        until(lambda: self.editor.wait_for_control("Redo").has("enabled"), "the stroke to be undone")
        self.assertIsNone(self.editor.process.poll())
        self.assertTrue(self.editor.recovery_file.exists())


if __name__ == "__main__":
    unittest.main()
