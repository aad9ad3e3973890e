# SPDX-License-Identifier: GPL-3.0-or-later
"""An X session manager on a desk, which asks its programs before it ends the session."""

import re

from desk import until

SIZE_AND_PLACE = re.compile(r"(\d+)x(\d+)\+-?\d+\+-?\d+ +\+(-?\d+)\+(-?\d+)$", re.MULTILINE)


class Session:
    """A running session. What is started on the desk from here on belongs to it."""

    def __init__(self, desk):
        self._desk = desk
        address = desk.folder / "session-manager"
        # It starts what this file says, and only its children are told where it listens.
        (desk.home / ".xsmstartup").write_text(
            f"sh -c 'echo $SESSION_MANAGER > {address}; exec sleep infinity'\n")
        desk.environment["SM_SAVE_DIR"] = str(desk.home)
        self.process = desk.spawn("xsm")
        until(lambda: address.exists() and address.read_text().strip(), "the session manager")
        desk.environment["SESSION_MANAGER"] = address.read_text().strip()

    def log_out(self):
        """Ends the session as one does by hand, with leave for the programs to ask."""
        # Of the four buttons the one at the lower right; its menu is open while it is held.
        window = self._activate("^xsm: ")
        width, height, left, top = max(self._boxes("-id", window)[1:], key=lambda box: box[2:])
        self._desk.move((left + width / 2, top + height / 2))
        self._desk.tool("xdotool", "mousedown", 1)
        menu = until(lambda: self._box_below(left, top + height), "the menu of ways to log out")
        self._desk.move((menu[2] + menu[0] / 2, menu[3] + menu[1] / 4))
        self._desk.tool("xdotool", "mouseup", 1)
        self._answer("^Shutdown$")

    def checkpoint(self):
        """Has every program save its state, with leave to ask, and goes on."""
        window = self._activate("^xsm: ")
        width, height, left, top = max(self._boxes("-id", window)[1:],
                                       key=lambda box: (-box[2], box[3]))
        self._desk.click((left + width / 2, top + height / 2))
        self._answer("^Checkpoint$")

    def acknowledge_refusal(self):
        """Takes note that a program would not save; where the log-out goes on, it goes on now."""
        self._activate("^Save Failure$")
        self._desk.keys("Return")
        until(lambda: not self._windows("^Save Failure$"), "the note of the refusal to close")

    def _answer(self, name):
        """Names the session, as it wants once, and agrees to the rest."""
        self._activate(name)
        self._desk.type("work")
        self._desk.keys("Return")

    def _activate(self, name):
        window = until(lambda: self._windows(name), f"the session manager's window {name!r}")[0]
        self._desk.tool("xdotool", "windowactivate", "--sync", window)
        return window

    def _windows(self, name):
        return self._desk.tool("xdotool", "search", "--onlyvisible", "--name", name).split()

    def _box_below(self, left, top):
        return next((box for box in self._boxes("-root")
                     if abs(box[2] - left) < 8 and 0 <= box[3] - top < 8 and box[1] > 30), None)

    def _boxes(self, *window):
        """Width, height, left and top of a window's children, itself the first."""
        tree = self._desk.tool("xwininfo", *window, "-tree")
        return [tuple(map(int, match.groups())) for match in SIZE_AND_PLACE.finditer(tree)]
