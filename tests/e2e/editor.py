# SPDX-License-Identifier: GPL-3.0-or-later
"""The editor, started on a Desk and used as a person would: by its controls, pointer and keys."""

import json
import os
import re
import signal
import time
from dataclasses import dataclass
from pathlib import Path

from gi.repository import GLib

from accessible import Tree
from desk import ROOT, until

PROGRAM = Path(os.environ.get("QUILLABRAE", ROOT / "build/bin/quillabrae"))
SCREENSHOTS = Path(os.environ.get("QUILLABRAE_SCREENSHOTS", ROOT / "build/screenshots"))
COORDINATES = re.compile(r"(-?\d+) x (-?\d+)$")


@dataclass(frozen=True)
class View:
    """Where the canvas lies on the screen: pixel (x, y) of it begins at origin + zoom * (x, y)."""

    zoom: float
    origin: tuple

    def on_screen(self, point):
        return tuple(start + self.zoom * value for start, value in zip(self.origin, point))

    def on_canvas(self, point):
        return tuple((value - start) / self.zoom for start, value in zip(self.origin, point))


def store_settings(desk, **settings):
    """Puts tool settings where the program keeps them, as an earlier run would have left them."""
    file = desk.home / ".config/Quillabrae/preferences.ini"
    file.parent.mkdir(parents=True, exist_ok=True)
    text = json.dumps(settings).replace("\\", "\\\\").replace('"', '\\"')
    file.write_text("[General]\n"
                    "Quillabrae.paintNetQuickStartSeen=true\n"
                    f'Quillabrae.settings="@ByteArray({text})"\n')


class Editor:
    """One running process of the program."""

    def __init__(self, desk, *files, **options):
        self.desk = desk
        self.process = desk.spawn(PROGRAM, *files, **options)
        self._tree = Tree(desk.environment["DBUS_SESSION_BUS_ADDRESS"])

    @property
    def recovery_file(self):
        return self.desk.home / ".local/share/Quillabrae/Autosave/Recovery.quillabraesession"

    def kill(self):
        """Ends the process with no chance to tidy up."""
        self.process.send_signal(signal.SIGKILL)
        self.process.wait()

    # Finding things

    def node(self):
        for program in self._tree.programs():
            try:
                if program.pid == self.process.pid:
                    return program
            except GLib.Error:
                continue
        return None

    def windows(self):
        node = self.node()
        return [] if node is None else [w for w in node.children() if w.has("showing")]

    def titles(self):
        try:
            return [window.name for window in self.windows()]
        except GLib.Error:
            return []

    def wait_for_window(self, words, seconds=30.0):
        """The window whose title begins with `words`."""
        def look():
            try:
                return next((w for w in self.windows() if w.name.startswith(words)), None)
            except GLib.Error:
                return None
        return until(look, f"a window titled {words!r}; there are {self.titles()}", seconds)

    def wait_for_control(self, name, role=None, seconds=10.0):
        def look():
            node = self.node()
            return node and node.find(name, role)
        return until(look, f"the control {name!r}", seconds)

    def click(self, name, role=None):
        self.desk.click(self.wait_for_control(name, role).middle)

    def labels(self):
        """The texts of all labels on the screen."""
        texts = []
        for node in self.node().walk():
            try:
                if node.role in ("label", "static") and node.has("showing"):
                    texts.append(node.text)
            except GLib.Error:
                continue
        return texts

    def wait_for_status(self, text, seconds=30.0):
        until(lambda: any(text in label for label in self.labels()), f"the status {text!r}", seconds)

    # The canvas

    def pointer_pixel(self, point):
        """The canvas pixel that the status line tells for a place on the screen."""
        self.desk.move((point[0] + 3, point[1]))
        self.desk.move(point)
        time.sleep(0.15)
        for label in self.labels():
            match = COORDINATES.search(label)
            if match:
                return int(match.group(1)), int(match.group(2))
        return None

    def view(self, around):
        """Where the canvas lies now, from what the status line tells for two places of it."""
        first = (around[0] - 200, around[1] - 120)
        last = (around[0] + 200, around[1] + 120)
        low = until(lambda: self.pointer_pixel(first), f"coordinates at {first}")
        high = until(lambda: self.pointer_pixel(last), f"coordinates at {last}")
        zoom = ((last[0] - first[0]) / (high[0] - low[0]) +
                (last[1] - first[1]) / (high[1] - low[1])) / 2
        # The status line tells whole pixels: the true place is half a pixel further on average.
        middle = [(a + b + 1) / 2 for a, b in zip(low, high)]
        return View(zoom, tuple(place - zoom * value for place, value in zip(around, middle)))

    def after_a_change_on_disk(self, act, seconds=60.0):
        """Does `act` and waits until the recovery file has been written anew."""
        def mark():
            try:
                status = self.recovery_file.stat()
                return status.st_mtime_ns, status.st_ino
            except OSError:
                return None
        before = mark()
        act()
        until(lambda: mark() not in (None, before), "the recovery file to follow", seconds)

    def screenshot(self, name):
        file = SCREENSHOTS / f"{name}.png"
        self.desk.screenshot(file)
        return file
