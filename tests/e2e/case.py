# SPDX-License-Identifier: GPL-3.0-or-later
"""A test case with a desk of its own, which on failure keeps what the screen showed."""

import sys
import unittest

import photos
from desk import Desk
from editor import PROGRAM, SCREENSHOTS, Editor


class DeskCase(unittest.TestCase):
    longMessage = True
    Desk = Desk
    program = PROGRAM

    def setUp(self):
        for needed in (self.program, photos.JPEG, photos.PNG):
            self.assertTrue(needed.exists(), f"{needed} is missing: run ./dev test")
        self.desk = self.enterContext(self.Desk())
        self.running = []

    def start(self, *files, **options):
        """`options` are those of a process."""
        editor = Editor(self.desk, *files, program=self.program, **options)
        self.running.append(editor)
        return editor

    def second_start(self, editor, *files):
        """Starts the program again beside a running one; its exit status."""
        self.assertIsNone(editor.process.poll(), "the first one has ended")
        return Editor(self.desk, *files, program=self.program).process.wait(30)

    def _callTestMethod(self, method):
        try:
            super()._callTestMethod(method)
        except Exception:
            self.show_what_there_was()
            raise

    def show_what_there_was(self):
        self.desk.screenshot(SCREENSHOTS / f"failed-{self.id().rpartition('.')[2]}.png")
        for editor in self.running:
            node = editor.node()
            print(node.outline() if node else "it has no window", file=sys.stderr)
        print(self.desk.log_of(self.program.name), file=sys.stderr)
