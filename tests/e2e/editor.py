# SPDX-License-Identifier: GPL-3.0-or-later
"""The editor, started on a Desk and used as a person would: by its controls, pointer and keys."""

import json
import os
import re
import signal
from dataclasses import dataclass
from pathlib import Path

from gi.repository import GLib

from accessible import Tree
from desk import ROOT, until

PROGRAM = Path(os.environ.get("QUILLABRAE", ROOT / "build/bin/quillabrae"))
SCREENSHOTS = Path(os.environ.get("QUILLABRAE_SCREENSHOTS", ROOT / "build/screenshots"))
COORDINATES = re.compile(r"(-?\d+) x (-?\d+)$")
# A corner of the screen that no window is at.
OUTSIDE = (5, 5)


@dataclass(frozen=True)
class View:
    """Where the canvas lies on the screen: pixel (x, y) of it begins at origin + zoom * (x, y)."""

    zoom: float
    origin: tuple

    def on_screen(self, point):
        return tuple(start + self.zoom * value for start, value in zip(self.origin, point))

    def on_canvas(self, point):
        return tuple((value - start) / self.zoom for start, value in zip(self.origin, point))


def store_records(desk, **records):
    """Puts JSON records where the program keeps them, as an earlier run would have left them."""
    file = desk.home / ".config/Quillabrae/preferences.ini"
    file.parent.mkdir(parents=True, exist_ok=True)
    lines = ["[General]", "Quillabrae.paintNetQuickStartSeen=true"]
    for key, record in records.items():
        text = json.dumps(record).replace("\\", "\\\\").replace('"', '\\"')
        lines.append(f'Quillabrae.{key}="@ByteArray({text})"')
    file.write_text("\n".join(lines) + "\n")


def store_settings(desk, **settings):
    store_records(desk, settings=settings)


class OthersProcess:
    """A process that somebody else on the desk has started; as much of Popen as is used here."""

    def __init__(self, pid):
        self.pid = pid
        self.folder = Path(f"/proc/{pid}")

    def poll(self):
        return None if self.folder.exists() else 0

    def send_signal(self, number):
        os.kill(self.pid, number)

    def wait(self, seconds=20.0):
        until(lambda: self.poll() is not None, f"the process {self.pid} to end", seconds)


class Editor:
    """One running process of the program."""

    def __init__(self, desk, *files, program=PROGRAM, process=None, **options):
        self.desk = desk
        self.process = process or desk.spawn(program, *files, **options)
        self._position = None
        self._tree = Tree(desk.environment["DBUS_SESSION_BUS_ADDRESS"])

    @classmethod
    def running(cls, desk, pid):
        """The one of that process number, started by somebody else."""
        return cls(desk, process=OthersProcess(pid))

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
        """The windows on the screen. One that goes while it is asked is none any more."""
        showing = []
        node = self.node()
        for window in node.children() if node else []:
            try:
                if window.has("showing"):
                    showing.append((window, window.name))
            except GLib.Error:
                continue
        return showing

    def titles(self):
        return [title for _, title in self.windows()]

    def wait_for_window(self, words, seconds=30.0):
        """The window whose title begins with `words`."""
        return until(lambda: next((w for w, title in self.windows() if title.startswith(words)), None),
                     f"a window titled {words!r}", seconds)

    def wait_until_closed(self, title):
        """Until no window has that title, and another one has the keys that are pressed next."""
        until(lambda: title not in self.titles() and self._has_active_window(), f"{title!r} to close")

    def wait_until_alone(self):
        """Until one window is left, and has the keys that are pressed next."""
        until(lambda: len(self.windows()) == 1 and self._has_active_window(),
              "all windows but one to close")

    def _has_active_window(self):
        try:
            return any(window.has("active") for window, _ in self.windows())
        except GLib.Error:
            return False

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
                if node.role == "label" and node.has("showing"):
                    texts.append(node.name)
            except GLib.Error:
                continue
        return texts

    def wait_for_status(self, text, seconds=30.0):
        until(lambda: any(text in label for label in self.labels()), f"the status {text!r}", seconds)

    def save_as(self, path):
        """Saves the project by keys alone."""
        self.desk.keys("ctrl+shift+s")
        self.wait_for_window("Save Quillabrae")
        self.desk.keys("ctrl+a")
        self.desk.type(str(path.with_suffix("")))
        self.desk.keys("Return")
        self.wait_for_status(f"Saved {path.name}", 60)

    def choose_tool(self, title):
        self.desk.click(self.wait_for_control("Tools").find(title, "check box").middle)
        until(lambda: self.node().find(title, "check box").has("checked"), f"the tool {title!r}")

    # The canvas

    def canvas_middle(self):
        return tuple(map(round, self.wait_for_control("Canvas").middle))

    def pointer_pixel(self):
        """The canvas pixel under the pointer, as the status line tells it."""
        try:
            match = COORDINATES.match(self._position.name)
        except (AttributeError, GLib.Error):
            self._position = next((node for node in self.node().walk()
                                   if node.description == "Pointer position"), None)
            match = self._position and COORDINATES.match(self._position.name)
        return match and (int(match.group(1)), int(match.group(2)))

    def pixel_at(self, place):
        """The canvas pixel at a place on the screen. Moves the pointer there.

        It comes from outside the window, where there are no coordinates to be taken for its.
        """
        self.desk.move(OUTSIDE)
        until(lambda: not self.pointer_pixel(), "the pointer's coordinates to go")
        self.desk.move(place)
        return until(self.pointer_pixel, f"the pointer to be seen at {place}")

    def view(self, around):
        """Where the canvas lies now, from what the status line tells for two places of it."""
        first = (around[0] - 200, around[1] - 120)
        last = (around[0] + 200, around[1] + 120)
        low, high = self.pixel_at(first), self.pixel_at(last)
        zoom = ((last[0] - first[0]) / (high[0] - low[0]) +
                (last[1] - first[1]) / (high[1] - low[1])) / 2
        # The status line tells whole pixels: the true place is half a pixel further on average.
        middle = [(a + b + 1) / 2 for a, b in zip(low, high)]
        return View(zoom, tuple(place - zoom * value for place, value in zip(around, middle)))

    def stroke(self, tool, view, points):
        """Drags a tool along canvas points. Returns the path in the pixels it truly went through.

        Waits for each sample to arrive, since two that wait in line are taken as one, and in the
        end until the recovery file holds the edit.
        """
        self.choose_tool(tool)
        recorded = self.recorded_edits(tool)
        places = [tuple(map(round, view.on_screen(point))) for point in points]
        self.pixel_at(places[0])
        self.desk.tool("xdotool", "mousedown", 1)
        for place in places[1:]:
            self.pixel_after_moving_to(place)
        self.desk.tool("xdotool", "mouseup", 1)
        until(lambda: self.recorded_edits(tool) > recorded, f"the edit {tool!r} to be on disk", 60)
        return [view.on_canvas(place) for place in places]

    def press_at(self, place):
        """Presses the pointer beside a place, drags it there and waits until the canvas follows.

        Until the window manager has passed the press on, the X server keeps the pointer's last
        place alone and forgets those it was at before.
        """
        self.pixel_at((place[0] - 8, place[1]))
        self.desk.tool("xdotool", "mousedown", 1)
        self.pixel_after_moving_to(place)

    def pixel_after_moving_to(self, place):
        before = self.pointer_pixel()
        self.desk.move(place)
        until(lambda: self.pointer_pixel() != before, f"the pointer to be seen at {place}")

    def recorded_edits(self, title):
        """How many steps of that title the recovery file holds."""
        try:
            content = self.recovery_file.read_bytes()
        except OSError:
            return 0
        return len(re.findall(rb'"title"\s*:\s*"%s"' % title.encode(), content))

    def screenshot(self, name):
        file = SCREENSHOTS / f"{name}.png"
        self.desk.screenshot(file)
        return file
