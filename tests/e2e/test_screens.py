# SPDX-License-Identifier: GPL-3.0-or-later
"""Every window and dialog, in light and dark, at one and two pixels a point, with large letters and
with more contrast, as pictures to look at."""

import unittest

from PIL import Image

import photos
from desk import until
from editor import Editor
from screens import ALERTS, DIALOGS, LOOKS, SCALES, THEMES, TOOLS, ScreensCase, add_test


class Screens(ScreensCase):
    def all_screens(self):
        self.first_start()
        self.later_start()
        self.editor_window()

    def first_start(self):
        editor = self.start()
        editor.wait_for_window("Welcome to Quillabrae")
        editor.wait_for_window("Paint.NET Quick Start")
        steps = editor.wait_for_control("Steps")
        for index, step in enumerate([step.name for step in steps.children()], 1):
            editor.wait_for_control(f"Step {index} of 6")
            self.capture(f"quick-start-{index}-{step.lower()}", "Paint.NET Quick Start", (760, 610))
            self.desk.keys("Page_Down")
        self.desk.keys("Escape")
        editor.wait_until_alone()
        self.capture("welcome-first", "Welcome to Quillabrae", (480, 632))
        self.end(editor)

    def later_start(self):
        names = ("evening by the lake", "poster", "a name that is far too long for one line of the "
                 "welcome panel, and goes on", "sketch", "icon", "portrait", "logo", "map")
        self.remember(recents=[
            {"title": name, "url": (self.desk.home / f"Pictures/{name}.quillabrae").as_uri(),
             "openedAt": "2026-01-01T12:00:00Z"} for name in names])
        editor = self.start()
        editor.wait_for_window("Welcome to Quillabrae")
        self.capture("welcome-recents", "Welcome to Quillabrae", (480, 632))
        self.press(editor, "poster")
        editor.wait_for_status("Open failed: ")
        self.capture("welcome-recent-gone", "Welcome to Quillabrae", (480, 632))
        self.library(editor)
        self.settings(editor)
        self.end(editor)

    def library(self, editor):
        self.desk.keys("ctrl+shift+p")
        editor.wait_for_window("Plugin Library")
        self.capture("plugin-library", "Plugin Library", (980, 680))
        self.desk.tool("xdotool", "windowsize", "--sync", self.window_number("Plugin Library"),
                       300 * self.scale, 300 * self.scale)
        self.capture("plugin-library-smallest", "Plugin Library", (820, 560))
        self.desk.keys("alt+F4")
        editor.wait_until_closed("Plugin Library")

    def settings(self, editor):
        self.desk.keys("ctrl+comma")
        editor.wait_for_window("Settings")
        sections = editor.wait_for_control("Sections")
        for section in [row.name for row in sections.children()]:
            self.capture(f"settings-{section.lower().replace(' & ', '-')}", "Settings")
            self.desk.keys("Down")

    def editor_window(self):
        editor = self.open_the_lake()
        self.capture("editor", "evening - Quillabrae v", (1180, 820))
        self.press(editor, "Move Selection", "check box")
        self.capture("editor-selection", "evening - Quillabrae v", (1180, 820))
        self.tools(editor)
        self.menus(editor)
        self.history(editor)
        self.dialogs(editor)
        self.alerts(editor)
        self.long_work(editor)
        self.keyboard_and_pointer(editor)
        self.smallest(editor)
        self.many_tabs(editor)

    def tools(self, editor):
        for name, tool in TOOLS.items():
            self.press(editor, tool, "check box")
            self.capture(f"editor-{name}", "evening - Quillabrae v", (1180, 820))
        self.press(editor, "More")
        self.capture("editor-colors", "evening - Quillabrae v", (1180, 820))
        self.press(editor, "More")

    def menus(self, editor):
        for menu in editor.wait_for_control(None, "menu bar").children():
            self.desk.click(self.place_of(menu))
            self.capture(f"menu-{menu.name.lower()}", "evening - Quillabrae v", (1180, 820))
            self.desk.keys("Escape")

    def keyboard_and_pointer(self, editor):
        tools = editor.wait_for_control("Tools")
        self.desk.move(self.place_of(tools.find("Gradient", "check box")))
        editor.wait_for_control("Gradient", "label", 30)
        self.capture("editor-tooltip", "evening - Quillabrae v", (1180, 820), hovers=True)
        for _ in range(60):
            if tools.find(state="focused"):
                break
            self.desk.keys("Tab")
        self.desk.keys("Down")
        self.capture("editor-focus", "evening - Quillabrae v", (1180, 820))
        # From the selection, and from the tools.
        self.desk.keys("Escape", "Escape")

    def history(self, editor):
        """Some steps, the last of which is undone."""
        self.desk.keys("ctrl+shift+n", "ctrl+shift+Delete", "ctrl+shift+d", "ctrl+shift+i", "ctrl+z")
        until(lambda: editor.wait_for_control("Redo").has("enabled"), "a step that can be redone")
        self.capture("editor-history", "evening - Quillabrae v", (1180, 820))

    def dialogs(self, editor):
        self.copy_drawing()
        for dialog in DIALOGS:
            if dialog.keys:
                self.desk.keys(dialog.keys)
            else:
                self.press(editor, dialog.button)
            editor.wait_for_window(dialog.title)
            self.capture(f"dialog-{dialog.name}", dialog.title, dialog.size)
            self.leave(editor)

    def alerts(self, editor):
        self.desk.keys("ctrl+shift+n")
        self.capture("editor-unsaved", "evening - Quillabrae v", (1180, 820))
        self.desk.copy("image/png", photos.PNG)
        for alert in ALERTS:
            alert.ask(self.desk, editor)
            self.capture(f"alert-{alert.name}", "Quillabrae$")
            self.leave(editor)

    def long_work(self, editor):
        self.desk.keys("ctrl+r")
        editor.wait_for_window("Resize")
        self.desk.type("1000")
        self.desk.keys("Return")
        # The accessibility bus may be slower than the work.
        until(lambda: self.window_number("Quillabrae$"), "the work to be shown", pause=0.01)
        with self.standing_still(editor):
            self.capture("dialog-progress", "Quillabrae$")
        self.leave(editor)

    def smallest(self, editor):
        window = self.window_number("evening - Quillabrae v")
        self.desk.tool("xdotool", "windowsize", "--sync", window, 400 * self.scale, 300 * self.scale)
        self.press(editor, "Text", "check box")
        self.capture("editor-smallest", "evening - Quillabrae v", (1100, 760))

    def many_tabs(self, editor):
        pictures = []
        for number in range(30):
            pictures.append(self.desk.home / f"Pictures/{number * 7919} sketches.png")
            Image.new("RGB", (90, 60), (number * 8, 120, 255 - number * 8)).save(pictures[-1])
        Editor(self.desk, *pictures).process.wait(60)
        until(lambda: editor.windows()[0][1].startswith(pictures[-1].stem), "the last picture", 60)
        title = pictures[-1].stem
        self.capture("editor-tabs-last", title, (1100, 760))
        self.desk.click([self.scale * value for value in
                         editor.wait_for_control("Open projects").middle])
        until(lambda: not editor.windows()[0][1].startswith(title), "another tab")
        self.capture("editor-tabs-middle", editor.windows()[0][1], (1100, 760))
        # A picture cannot keep a second layer.
        self.desk.keys("ctrl+shift+n", "ctrl+s")
        editor.wait_for_control("Flatten layers before saving?")
        self.capture("alert-flatten", "Quillabrae$")


for _theme in THEMES:
    for _scale in SCALES:
        add_test(Screens, "windows", Screens.all_screens, _theme, _scale)
    for _look in LOOKS:
        add_test(Screens, "windows", Screens.all_screens, _theme, 1, _look)


if __name__ == "__main__":
    unittest.main()
