# SPDX-License-Identifier: GPL-3.0-or-later
"""The program by its keys alone: no test in here touches the pointer."""

import unittest

import package
from case import DeskCase
from desk import until

SIZE = (120, 80)


class Keyboard(DeskCase):
    def setUp(self):
        super().setUp()
        # The window manager's own keys would take those that move the pixel.
        keys = self.desk.home / ".config/openbox/rc.xml"
        keys.parent.mkdir(parents=True)
        keys.write_text('<?xml version="1.0"?><openbox_config><keyboard/></openbox_config>')
        self.desk.tool("openbox", "--reconfigure")

    def test_from_the_first_start_to_a_painted_project(self):
        editor = self.start()
        editor.wait_for_window("Paint.NET Quick Start")
        self.leave_the_tour(editor)
        self.make_a_project(editor)
        self.choose_the_pencil(editor)
        self.paint(editor)
        project = self.save(editor)
        self.assertEqual((project["canvasWidth"], project["canvasHeight"]), SIZE)
        self.compare(package.pixels(project["layers"][0]))

    def leave_the_tour(self, editor):
        self.wait_for_focus(editor, "Next")
        self.desk.keys("Return")
        editor.wait_for_control("Step 2 of 6")
        self.desk.keys("Escape")
        editor.wait_until_closed("Paint.NET Quick Start")

    def make_a_project(self, editor):
        self.wait_for_focus(editor, "New Project")
        self.desk.keys("Return")
        editor.wait_for_window("New Project")
        self.wait_for_focus(editor, "Width")
        self.desk.type(str(SIZE[0]))
        self.desk.keys("Tab")
        self.desk.type(str(SIZE[1]))
        self.desk.keys("Return")
        editor.wait_for_window("Untitled - Quillabrae v")
        self.wait_for_focus(editor, "Canvas")

    def choose_the_pencil(self, editor):
        tools = editor.wait_for_control("Tools")
        for _ in range(60):
            if self.focused_under(tools):
                break
            self.desk.keys("Tab")
        for _ in range(40):
            if tools.find("Pencil", "check box").has("focused"):
                break
            self.desk.keys("Down")
        self.desk.keys("space")
        until(lambda: tools.find("Pencil", "check box").has("checked"), "the pencil to be chosen")
        self.desk.keys("Escape")
        self.wait_for_focus(editor, "Canvas")

    def paint(self, editor):
        """A line of 40 pixels to the right, from the middle."""
        self.desk.keys("ctrl+alt+Right", "space")
        self.desk.keys(*["ctrl+alt+shift+Right"] * 4)
        self.desk.keys("space")
        until(lambda: editor.recorded_edits("Pencil"), "the stroke to be recorded")

    def save(self, editor):
        saved = self.desk.home / "drawing.quillabrae"
        editor.save_as(saved)
        return package.read(saved)

    def compare(self, picture):
        self.assertEqual(picture.size, SIZE)
        painted = [(x, y) for x in range(SIZE[0]) for y in range(SIZE[1])
                   if picture.getpixel((x, y)) != (255, 255, 255, 255)]
        self.assertTrue(painted, "nothing was painted")
        columns = [x for x, _ in painted]
        rows = [y for _, y in painted]
        thickness = max(rows) - min(rows) + 1
        self.assertAlmostEqual(max(columns) - min(columns) + 1, 40 + thickness, delta=2)
        middle = round(sum(rows) / len(rows))
        self.assertAlmostEqual(middle, SIZE[1] / 2, delta=2)
        for x in range(min(columns) + thickness, max(columns) - thickness):
            self.assertEqual(picture.getpixel((x, middle)), (0, 0, 0, 255))

    def wait_for_focus(self, editor, name):
        def has_focus():
            node = editor.node().find(name)
            return node and node.has("focused")
        until(has_focus, f"the keyboard to be at {name!r}")

    @staticmethod
    def focused_under(node):
        return any(part.has("focused") for part in node.walk())


if __name__ == "__main__":
    unittest.main()
