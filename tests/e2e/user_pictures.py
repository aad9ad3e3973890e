#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Makes the pictures of docs/user and docs/images: of the tools by using each, of dialogs and windows
from what test_screens has taken, at one pixel a point.

Run it after `./dev test` when the windows look different from before; names of pictures as arguments
make those alone.
"""

import math
import shutil
import sys
import time
from dataclasses import dataclass
from pathlib import Path

from PIL import Image

import landscape
from desk import Desk, until
from editor import Editor, store_settings
from portal import Portal
from screens import SCREENS

ROOT = Path(__file__).resolve().parents[2]
PICTURES = ROOT / "docs/user/images"
IMAGES = ROOT / "docs/images"
# What of the editor window shows a tool at work, in pixels from the window's corner.
PART = (0, 110, 640, 470)
ORANGE = {"red": 1, "green": 0.55, "blue": 0.1, "alpha": 1}
CREAM = {"red": 1, "green": 0.93, "blue": 0.75, "alpha": 1}
WAVE = [(x, 170 - 60 * math.sin((x - 90) / 60)) for x in range(90, 541, 10)]
LOOP = [(310 - 170 * math.sin(turn / 6), 195 - (95 + 15 * math.sin(turn)) * math.cos(turn / 6))
        for turn in range(0, 35)]


@dataclass(frozen=True)
class Scene:
    """A tool at work: drags in canvas pixels, the first of them by another tool where one prepares."""

    tool: str
    drags: tuple = ()
    layer: str = "Reeds"
    before: tuple = ()
    typed: str = ""
    settings: tuple = ()
    part: tuple = PART


SCENES = {
    "rectangle-select": Scene("Rectangle Select", ([(110, 110), (480, 300)],)),
    "move-selected-pixels": Scene("Move Selected Pixels", ([(300, 380), (330, 200)],), "Hills",
                                  before=("Rectangle Select", [(190, 310), (430, 470)])),
    "lasso-select": Scene("Lasso Select", (LOOP,)),
    "move-selection": Scene("Move Selection", ([(280, 200), (400, 240)],),
                            before=("Ellipse Select", [(110, 90), (420, 300)])),
    "ellipse-select": Scene("Ellipse Select", ([(110, 90), (520, 310)],)),
    "zoom": Scene("Zoom", ([(250, 370)],) * 3),
    "magic-wand": Scene("Magic Wand", ([(60, 470)],), "Hills"),
    "pan": Scene("Pan", ([(300, 200), (330, 320)],)),
    "paint-bucket": Scene("Paint Bucket", ([(60, 470)],), "Hills"),
    "gradient": Scene("Gradient", ([(120, 60), (420, 330)],), "Sky"),
    "paintbrush": Scene("Paintbrush", (WAVE,)),
    "eraser": Scene("Eraser", ([(20, 400), (160, 440), (300, 400), (420, 460), (600, 430)],), "Hills",
                    settings=(("brushSize", 60), ("pencilHardness", 30))),
    "pencil": Scene("Pencil", (WAVE, [(x, y + 90) for x, y in WAVE]),
                    settings=(("brushSize", 6),)),
    "color-picker": Scene("Color Picker", ([(250, 370)],), "Hills", part=(0, 110, 640, 780)),
    "clone-stamp": Scene("Clone Stamp", ([(100, 130), (220, 250)], [(260, 130), (380, 250)])),
    "recolor": Scene("Recolor", (WAVE,), "Hills"),
    "text": Scene("Text", ([(120, 120)],), typed="Evening by the lake",
                  settings=(("textFontSize", 48), ("textFontFamily", "DejaVu Sans"))),
    "line-curve": Scene("Line/Curve", ([(90, 280), (300, 90)], [(300, 90), (530, 280)])),
    "shapes": Scene("Shapes", ([(130, 100), (480, 300)],),
                    settings=(("selectedShape", "diamond"), ("shapeDrawingMode", "fillAndOutline"),
                              ("shapeOutlineWidth", 8))),
}
DIALOGS = {
    name: name for name in (
        "alert-flatten", "alert-paste", "alert-replace", "alert-save", "dialog-align-object",
        "dialog-canvas-size", "dialog-color-removal", "dialog-feedback", "dialog-generative-fill",
        "dialog-import-svg", "dialog-layer-properties", "dialog-new-project", "dialog-open",
        "dialog-progress", "dialog-resize", "dialog-rotate-zoom", "dialog-save-as", "plugin-library",
        "settings-account", "settings-canvas", "settings-history-restore", "settings-intelligence",
        "settings-privacy", "settings-view", "welcome-recents")
} | {"quick-start": "quick-start-1-workspace"}
# Parts of the editor window, in pixels.
MANY_COLORS = ("panel-colors", "tool-color-picker")
PARTS = {
    "panel-history": ("editor-history", (918, 124, 1154, 376)),
    "panel-layers": ("editor-history", (918, 386, 1154, 767)),
    "panel-colors": ("editor-colors", (4, 545, 594, 774)),
    "options-text": ("editor-text", (560, 70, 1180, 108)),
}
# From below the folder that it happens to show.
DIALOGS_BELOW = {"dialog-open": 34, "dialog-save-as": 34}
WHOLE = {"editor": "editor", "selection": "editor-selection", "library": "plugin-library",
         "editor-dark": "editor-text"}


def save(picture, file):
    file.parent.mkdir(parents=True, exist_ok=True)
    picture = picture.convert("RGB")
    if file.parent == PICTURES and file.stem not in MANY_COLORS:
        # 256 colours spread wide are plenty, and a third of the bytes.
        picture = picture.quantize(256, Image.Quantize.MAXCOVERAGE, kmeans=2,
                                   dither=Image.Dither.NONE)
    picture.save(file, optimize=True)
    print(f"{file.relative_to(ROOT)}: {file.stat().st_size} bytes")


def screen(name, theme="light"):
    return Image.open(SCREENS / f"{name}-{theme}-1x.png")


class Stage:
    """The lake on a desk, opened anew for each scene."""

    def __init__(self, desk):
        self._desk = desk
        Portal(desk.environment["DBUS_SESSION_BUS_ADDRESS"], "light", "still")
        self._lake = landscape.save(desk.home / "Pictures/evening.quillabrae")

    def picture(self, scene):
        settings = {"selectedTool": "pencil", "brushSize": 24, "primaryColor": ORANGE,
                    "secondaryColor": CREAM} | dict(scene.settings)
        store_settings(self._desk, **settings)
        editor = Editor(self._desk, self._lake)
        editor.wait_for_window("evening - Quillabrae v")
        editor.wait_for_status("Opened evening")
        self._desk.keys("ctrl+b")
        editor.wait_for_status("Zoomed to fit")
        self._desk.click(editor.wait_for_control(scene.layer, "list item").middle)
        view = editor.view((560, 440))
        try:
            if scene.before:
                self._use(editor, view, scene.before[0], scene.before[1:])
            self._use(editor, view, scene.tool, scene.drags)
            if scene.typed:
                self._desk.type(scene.typed)
            return self._still_picture(scene.part)
        finally:
            editor.kill()
            shutil.rmtree(editor.recovery_file.parent)

    def _use(self, editor, view, tool, drags):
        editor.choose_tool(tool)
        for points in drags:
            places = [view.on_screen(point) for point in points]
            if places[1:]:
                self._desk.drag(places)
            else:
                self._desk.click(places[0])
            time.sleep(0.3)

    def _still_picture(self, part):
        self._desk.tool("xdotool", "mousemove", 1, 958)
        number = self._desk.tool("xdotool", "search", "--onlyvisible", "--name", "^evening - ").split()[-1]
        file = self._desk.folder / "shot.png"
        shots = []

        def is_still():
            self._desk.tool("import", "-window", number, file)
            with Image.open(file) as shot:
                shots.append(shot.convert("RGB").crop(part))
            return len(shots) > 1 and shots[-1].tobytes() == shots[-2].tobytes()
        until(is_still, "the window to stand still", pause=0.3)
        return shots[-1]


def main(names):
    wanted = names or [*SCENES, *DIALOGS, *PARTS, *WHOLE]
    scenes = [name for name in wanted if name in SCENES]
    if scenes:
        with Desk(size=(1320, 960)) as desk:
            stage = Stage(desk)
            for name in scenes:
                save(stage.picture(SCENES[name]), PICTURES / f"tool-{name}.png")
    for name in wanted:
        if name in DIALOGS:
            shot = screen(DIALOGS[name])
            save(shot.crop((0, DIALOGS_BELOW.get(name, 0), *shot.size)), PICTURES / f"{name}.png")
        elif name in PARTS:
            shot, part = PARTS[name]
            save(screen(shot).crop(part), PICTURES / f"{name}.png")
        elif name in WHOLE:
            theme = "dark" if name.endswith("-dark") else "light"
            save(screen(WHOLE[name], theme), IMAGES / f"{name}.png")


if __name__ == "__main__":
    main(sys.argv[1:])
