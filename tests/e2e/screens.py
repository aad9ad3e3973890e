# SPDX-License-Identifier: GPL-3.0-or-later
"""What the tests share that take pictures of every window and dialog.

The pictures are in build/screens. A test itself holds each to its size and to the theme; how it
looks is for people.
"""

import os
import re
import signal
import time
from contextlib import contextmanager
from dataclasses import dataclass
from pathlib import Path

from PIL import ImageGrab, ImageStat

import editor as plain
import landscape
from desk import ROOT, Desk, until
from editor import store_records
from pictures import DRAWING
from portal import Portal
from services import ServicesCase

SCREENS = Path(os.environ.get("QUILLABRAE_SCREENS", ROOT / "build/screens"))
THEMES = ("light", "dark")
SCALES = (1, 2)
# Beside the usual one, and what the desktop says for it.
LOOKS = {"large": ("large letters",), "stark": ("more contrast",)}
LARGE_ROOM = (1800, 1300)
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
    Dialog("import-svg", "Import SVG", (420, 250), keys="ctrl+v"),
    Dialog("open", "Open Quillabrae Project or Image", None, keys="ctrl+o"),
    Dialog("save-as", "Save Quillabrae", None, keys="ctrl+shift+s"),
)


@dataclass(frozen=True)
class Alert:
    """A question, the keys that lead to it and the last of which it is asked after."""

    name: str
    words: str
    keys: tuple

    def ask(self, desk, editor):
        desk.keys(*self.keys[:-1])
        if self.keys[1:]:
            editor.wait_for_window("Save Quillabrae")
        desk.keys(self.keys[-1])
        editor.wait_for_control(self.words)


ALERTS = (
    Alert("paste", "Paste Image", ("ctrl+v",)),
    Alert("replace", 'A file named "evening.quillabrae" already exists.',
          ("ctrl+shift+s", "Return")),
    Alert("save", 'Save changes to "evening" before closing?', ("ctrl+w",)),
)


class ScreensCase(ServicesCase):
    """One desk for each theme and scale."""

    program = plain.PROGRAM

    def setUp(self):
        self.running = []

    def use_desk(self, theme, scale, look=""):
        """A look is one of LOOKS, or as most desktops are."""
        self.theme, self.scale, self.look = theme, scale, look
        width, height = LARGE_ROOM if look else (1320, 960)
        self.screen = (width * scale, height * scale)
        self.desk = self.enterContext(Desk(size=self.screen))
        self.desk.environment["QT_SCALE_FACTOR"] = str(scale)
        Portal(self.desk.environment["DBUS_SESSION_BUS_ADDRESS"], theme, "still",
               *LOOKS.get(look, ()))
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

    def capture(self, name, title, size=None, hovers=False):
        """Takes the window of that title and what is open above it, once two looks at it are the
        same. `hovers` leaves the pointer where it is."""
        look = f"-{self.look}" if self.look else ""
        file = SCREENS / f"{name}-{self.theme}-{self.scale}x{look}.png"
        file.parent.mkdir(parents=True, exist_ok=True)
        number = until(lambda: self.window_number(title), f"the window {title!r}")
        place = self.place_of_window(number)
        if not hovers:
            self.desk.move((1, self.screen[1] - 2))
        shot = None

        def is_still():
            nonlocal shot
            before, shot = shot, ImageGrab.grab(place, xdisplay=self.desk.environment["DISPLAY"])
            return shot == before
        until(is_still, f"{title!r} to stand still")
        shot.save(file, compress_level=1)
        self.check(file.name, shot, size)

    @contextmanager
    def standing_still(self, editor):
        """The process is stopped, and so is what moves in its windows."""
        time.sleep(0.2)  # What is there already may yet have to be painted.
        editor.process.send_signal(signal.SIGSTOP)
        try:
            yield
        finally:
            editor.process.send_signal(signal.SIGCONT)

    def window_number(self, title):
        numbers = self.desk.tool("xdotool", "search", "--onlyvisible", "--name",
                                 "^" + title).split()
        return numbers[-1] if numbers else None

    def place_of_window(self, number):
        """Left, top, right and bottom in pixels, without the window manager's frame."""
        told = self.desk.tool("xwininfo", "-id", number)
        left, top, width, height = (
            int(re.search(rf"{name}: +(-?[0-9]+)", told).group(1))
            for name in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))
        return left, top, left + width, top + height

    def check(self, name, shot, size):
        picture = shot.convert("L")
        if size:
            least = tuple(self.scale * n for n in size)
            # Larger letters need more room.
            compare = self.assertGreaterEqual if self.look == "large" else self.assertEqual
            for now, wanted in zip(picture.size, least):
                compare(now, wanted, name)
        # At the lower left every window has its plain ground.
        ground = picture.getpixel((6, picture.height - 7))
        self.assertEqual(ground < 100, self.theme == "dark", f"{name}: {ground}")
        self.assertGreater(ImageStat.Stat(picture).stddev[0], 4, f"{name} is empty")

    def press(self, editor, name, role=None):
        self.desk.click(self.place_of(editor.wait_for_control(name, role)))

    def place_of(self, control):
        """The accessibility bus counts in points."""
        return [self.scale * value for value in control.middle]

    def leave(self, editor):
        """Closes what is open beside the one window that stays."""
        self.desk.keys("Escape")
        editor.wait_until_alone()

    def end(self, editor):
        editor.kill()
        self.running.remove(editor)

    def lake(self):
        """A project with its sun selected."""
        left, top, radius = landscape.SUN
        return landscape.save(
            self.desk.home / "Pictures/evening.quillabrae", isCanvasSelected=True,
            pixelSelection={"x": left - radius, "y": top - radius, "width": 2 * radius,
                            "height": 2 * radius})

    def open_the_lake(self):
        self.remember(settings={"selectedTool": "brush", "brushSize": 24})
        editor = self.start(self.lake())
        editor.wait_for_window("evening - Quillabrae v")
        editor.wait_for_status("Opened evening")
        self.desk.keys("ctrl+b")
        editor.wait_for_status("Zoomed to fit")
        return editor

    def copy_drawing(self):
        drawing = self.desk.home / "drawing.svg"
        drawing.write_bytes(DRAWING)
        self.desk.copy("image/svg+xml", drawing)


def add_test(case, name, capture_all, theme, scale, look=""):
    def test(self):
        self.use_desk(theme, scale, look)
        capture_all(self)
    setattr(case, f"test_{name}_{theme}_at_{scale}x{'_' * bool(look)}{look}", test)
