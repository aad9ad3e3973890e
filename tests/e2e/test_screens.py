# SPDX-License-Identifier: GPL-3.0-or-later
"""Every window and dialog, in light and dark, at one and two pixels a point, as pictures to look at.

They are in build/screens. The test itself holds each to its size and to the theme; how it looks is
for people.
"""

import os
import unittest
from dataclasses import dataclass
from pathlib import Path

from gi.repository import GLib
from PIL import Image, ImageStat

import landscape
from case import DeskCase
from desk import ROOT, Desk, until
from editor import Editor, store_records
from portal import Portal

SCREENS = Path(os.environ.get("QUILLABRAE_SCREENS", ROOT / "build/screens"))
THEMES = ("light", "dark")
SCALES = (1, 2)
TOOLS = {"shapes": "Shapes", "text": "Text", "magic-wand": "Magic Wand", "bucket": "Paint Bucket",
         "eraser": "Eraser", "zoom": "Zoom"}


@dataclass(frozen=True)
class Dialog:
    """How a dialog is reached from the editor window: by keys or by a button's name."""

    name: str
    title: str
    size: tuple
    keys: str = ""
    button: str = ""


DIALOGS = (
    Dialog("new-project", "New Project", (420, 310), keys="ctrl+n"),
    Dialog("resize", "Resize", (520, 710), keys="ctrl+r"),
    Dialog("canvas-size", "Canvas Size", (520, 710), keys="ctrl+shift+r"),
    Dialog("align-object", "Align Object", (390, 440), keys="ctrl+shift+f"),
    Dialog("color-removal", "Color Removal", (520, 310), button="Color Removal"),
    Dialog("rotate-zoom", "Rotate / Zoom", (420, 260), keys="ctrl+alt+z"),
    Dialog("layer-properties", "Layer Properties", (380, 295), button="Layer Properties"),
    Dialog("feedback", "Give Feedback", (480, 520), button="Give Feedback"),
    Dialog("open", "Open Quillabrae Project or Image", None, keys="ctrl+o"),
    Dialog("save-as", "Save Quillabrae", None, keys="ctrl+shift+s"),
)


class Screens(DeskCase):
    """One desk for each theme and scale."""

    def setUp(self):
        self.running = []

    def use_desk(self, theme, scale):
        self.theme, self.scale = theme, scale
        self.desk = self.enterContext(Desk(size=(1320 * scale, 960 * scale)))
        self.desk.environment["QT_SCALE_FACTOR"] = str(scale)
        Portal(self.desk.environment["DBUS_SESSION_BUS_ADDRESS"], theme, "still")
        # The theme of the last run, so that the first frame has it already.
        store_records(self.desk)
        self.preferences = self.desk.home / ".config/Quillabrae/preferences.ini"
        self.preferences.write_text(
            f"[General]\nQuillabrae.systemWasDark={'true' if theme == 'dark' else 'false'}\n")

    def remember(self, **records):
        """What an earlier run has left behind."""
        store_records(self.desk, **records)
        with self.preferences.open("a", encoding="utf-8") as file:
            file.write(f"Quillabrae.systemWasDark={'true' if self.theme == 'dark' else 'false'}\n")

    # Capturing

    def capture(self, name, title, size=None):
        """Takes the window of that title, once two looks at it are the same."""
        file = SCREENS / f"{name}-{self.theme}-{self.scale}x.png"
        file.parent.mkdir(parents=True, exist_ok=True)
        number = until(lambda: self.window_number(title), f"the window {title!r}")
        # Not waiting for it to move, since it may be there.
        self.desk.tool("xdotool", "mousemove", 1, 960 * self.scale - 2)
        before = b""

        def is_still():
            nonlocal before
            self.desk.tool("import", "-window", number, file)
            with Image.open(file) as shot:
                now = shot.convert("RGB").tobytes()
            was, before = before, now
            return was == now
        until(is_still, f"{title!r} to stand still")
        self.check(file, size)

    def window_number(self, title):
        numbers = self.desk.tool("xdotool", "search", "--onlyvisible", "--name",
                                 "^" + title).split()
        return numbers[-1] if numbers else None

    def check(self, file, size):
        with Image.open(file) as shot:
            picture = shot.convert("L")
        if size:
            self.assertEqual(picture.size, tuple(self.scale * n for n in size), file.name)
        # At the lower left every window has its plain ground.
        ground = picture.getpixel((6, picture.height - 7))
        self.assertEqual(ground < 100, self.theme == "dark", f"{file.name}: {ground}")
        self.assertGreater(ImageStat.Stat(picture).stddev[0], 4, f"{file.name} is empty")

    def press(self, editor, name, role=None):
        """The accessibility bus counts in points."""
        place = editor.wait_for_control(name, role).middle
        self.desk.click([self.scale * value for value in place])

    # The windows

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
        until(lambda: len(editor.windows()) == 1, "the tour to close")
        self.capture("welcome-first", "Welcome to Quillabrae", (480, 632))
        self.end(editor)

    def end(self, editor):
        editor.kill()
        self.running.remove(editor)

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
        until(lambda: "Plugin Library" not in editor.titles(), "the library to close")

    def settings(self, editor):
        self.desk.keys("ctrl+comma")
        editor.wait_for_window("Settings")
        sections = editor.wait_for_control("Sections")
        for section in [row.name for row in sections.children()]:
            self.capture(f"settings-{section.lower().replace(' & ', '-')}", "Settings")
            self.desk.keys("Down")

    def editor_window(self):
        self.remember(settings={"selectedTool": "brush", "brushSize": 24})
        left, top, radius = landscape.SUN
        lake = landscape.save(
            self.desk.home / "Pictures/evening.quillabrae", isCanvasSelected=True,
            pixelSelection={"x": left - radius, "y": top - radius, "width": 2 * radius,
                            "height": 2 * radius})
        editor = self.start(lake)
        editor.wait_for_window("evening - Quillabrae v")
        editor.wait_for_status("Opened evening")
        self.desk.keys("ctrl+b")
        editor.wait_for_status("Zoomed to fit")
        self.capture("editor", "evening - Quillabrae v", (1180, 820))
        self.press(editor, "Move Selection", "check box")
        self.capture("editor-selection", "evening - Quillabrae v", (1180, 820))
        self.tools(editor)
        self.history(editor)
        self.dialogs(editor)
        self.alerts(editor)
        self.smallest(editor)
        self.many_tabs(editor)

    def tools(self, editor):
        for name, tool in TOOLS.items():
            self.press(editor, tool, "check box")
            self.capture(f"editor-{name}", "evening - Quillabrae v", (1180, 820))
        self.press(editor, "More")
        self.capture("editor-colors", "evening - Quillabrae v", (1180, 820))
        self.press(editor, "More")

    def history(self, editor):
        """Some steps, the last of which is undone."""
        self.desk.keys("ctrl+shift+n", "ctrl+shift+Delete", "ctrl+shift+d", "ctrl+shift+i", "ctrl+z")
        until(lambda: editor.wait_for_control("Redo").has("enabled"), "a step that can be redone")
        self.capture("editor-history", "evening - Quillabrae v", (1180, 820))

    def dialogs(self, editor):
        for dialog in DIALOGS:
            if dialog.keys:
                self.desk.keys(dialog.keys)
            else:
                self.press(editor, dialog.button)
            editor.wait_for_window(dialog.title)
            self.capture(f"dialog-{dialog.name}", dialog.title, dialog.size)
            self.desk.keys("Escape")
            until(lambda: len(editor.windows()) == 1, f"{dialog.title} to close")

    def alerts(self, editor):
        self.desk.keys("ctrl+shift+n")
        self.capture("editor-unsaved", "evening - Quillabrae v", (1180, 820))
        self.desk.keys("ctrl+w")
        editor.wait_for_control('Save changes to "evening" before closing?')
        self.capture("alert-save", "Quillabrae$")
        self.desk.keys("Escape")
        until(lambda: len(editor.windows()) == 1, "the question to close")

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


def add_test(theme, scale):
    def test(self):
        self.use_desk(theme, scale)
        self.all_screens()
    setattr(Screens, f"test_{theme}_at_{scale}x", test)


for _theme in THEMES:
    for _scale in SCALES:
        add_test(_theme, _scale)


if __name__ == "__main__":
    unittest.main()
