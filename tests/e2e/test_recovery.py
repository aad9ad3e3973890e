# SPDX-License-Identifier: GPL-3.0-or-later
"""Work that is kept: told of when it is not, and by two programs at once."""

import contextlib
import resource
import shutil
import unittest

from PIL import Image

from case import DeskCase
from desk import until
from editor import Editor, store_settings

KEPT_AGAIN = "Recovery is being kept again"


class Recovery(DeskCase):
    def setUp(self):
        super().setUp()
        store_settings(self.desk, selectedTool="brush", brushSize=5)

    def picture(self, name):
        file = self.desk.home / f"{name}.png"
        Image.effect_noise((400, 300), 90).save(file)
        return file

    def open(self, name, **options):
        editor = Editor(self.desk, self.picture(name), **options)
        self.running.append(editor)
        editor.wait_for_window(f"{name} - Quillabrae v")
        editor.wait_for_status(f"Opened {name}.png")
        editor.choose_tool("Paintbrush")
        return editor

    def paint(self, editor):
        left, top = editor.canvas_middle()
        self.desk.drag([(left, top), (left + 20, top)])

    def test_the_status_line_tells_when_the_disk_takes_no_more(self):
        # A limit is refused as a full disk is; the signal beside it is for programs that ask.
        editor = self.open("boat", restore_signals=False)
        before = editor.recovery_file.read_bytes()
        pid = editor.process.pid
        _, hard = resource.prlimit(pid, resource.RLIMIT_FSIZE)
        resource.prlimit(pid, resource.RLIMIT_FSIZE, (len(before) // 2, hard))
        self.paint(editor)
        editor.wait_for_status("Recovery is not being kept: ")
        editor.wait_for_status("could not be written: File too large")
        editor.screenshot("15-no-recovery")
        self.assertEqual(editor.recovery_file.read_bytes(), before)
        self.assertEqual([], [name for name in editor.recovery_file.parent.iterdir()
                              if name.suffix == ".writing"])
        resource.prlimit(pid, resource.RLIMIT_FSIZE, (hard, hard))
        self.paint(editor)
        editor.wait_for_status(KEPT_AGAIN)
        self.assertEqual(editor.recorded_edits("Paintbrush"), 2)

    def test_the_status_line_tells_when_there_is_no_folder_to_write_in(self):
        editor = self.open("boat")
        folder = editor.recovery_file.parent
        shutil.rmtree(folder)
        folder.write_text("in the way")
        self.paint(editor)
        editor.wait_for_status("Recovery is not being kept: ")
        folder.unlink()
        self.paint(editor)
        editor.wait_for_status(KEPT_AGAIN)
        self.assertEqual(editor.recorded_edits("Paintbrush"), 2)

    def test_two_programs_on_two_screens_keep_their_work_apart(self):
        first = self.open("boat")
        self.paint(first)
        until(lambda: first.recorded_edits("Paintbrush") == 1, "the first one's stroke to be kept")
        with self.another_screen():
            second = self.open("tree")
            self.assertIsNone(first.process.poll())
            self.paint(second)
            others = first.recovery_file.with_name("Recovery 2.quillabraesession")
            until(lambda: b'"Paintbrush"' in others.read_bytes(), "the second one's stroke")
            self.assertEqual(first.recorded_edits("Paintbrush"), 1)
            second.kill()
        first.kill()
        again = self.start()
        again.wait_for_window("")
        again.wait_for_status("Restored autosaved work and history")
        tabs = again.wait_for_control("Open projects")
        for title in ("boat", "tree"):
            until(lambda: tabs.find(title), f"the tab {title!r}")
        until(lambda: not others.exists(), "the work of both to be in one file")
        self.assertEqual(again.recorded_edits("Paintbrush"), 2)

    @contextlib.contextmanager
    def another_screen(self):
        """What is started and done meanwhile is on another display of the same user."""
        display = self.desk.environment["DISPLAY"]
        self.desk.start_screen()
        try:
            yield
        finally:
            self.desk.environment["DISPLAY"] = display


if __name__ == "__main__":
    unittest.main()
