# SPDX-License-Identifier: GPL-3.0-or-later
"""Every window and dialog as a screen reader and the Tab key meet it.

Each control that is on the screen has a name, a role and a place in the tab order.
"""

import unittest

from gi.repository import GLib

import landscape
import photos
from case import DeskCase
from desk import until
from editor import store_records
from keyring import Keyring
from pictures import DRAWING
from screens import ALERTS, DIALOGS, TOOLS
from services import ServicesCase

# What people operate. Items are reached with the arrow keys of what holds them.
CONTROLS = {"push button", "check box", "radio button", "toggle button", "slider", "spin button",
            "text", "password text", "combo box", "list", "tree", "table", "tree table",
            "page tab list", "page tab", "color chooser", "link", "canvas", "drawing area"}
ITEMS = {"list item", "menu item", "page tab", "table cell", "tree item"}
GROUPED = {"check box", "radio button"}
ROUND_TRIP = [*["Right"] * 12, *["Left"] * 12, *["Down"] * 12, "Right", *["Up"] * 12, "Right",
              *["Down"] * 12]
# Roles that say nothing of what a control is.
VAGUE = {"", "unknown", "invalid", "filler", "panel", "client"}


class Walk:
    """What both kinds of program are walked through with."""

    def start_with_a_project(self):
        store_records(self.desk, settings={"selectedTool": "brush"})
        editor = self.start(landscape.save(self.desk.home / "Pictures/evening.quillabrae"))
        editor.wait_for_window("evening - Quillabrae v")
        editor.wait_for_status("Opened evening")
        return editor

    def check(self, window, what):
        """The controls of a window; those that the Tab key is to reach it has reached."""
        with self.subTest(window=what):
            controls = self.controls_in(window)
            self.assertTrue(controls, window.outline())
            for node, name, role in controls:
                self.assertTrue(name, f"{what}: a {role} without a name at {node.box}")
            self.check_tab_order(controls, what)

    def controls_in(self, window):
        found = []
        for node in window.walk():
            try:
                role = node.role
                if not node.has("showing") or not node.has("sensitive"):
                    continue
                name = node.name
                if node.has("focusable") and role not in ITEMS:
                    self.assertNotIn(role, VAGUE, f"{name!r} at {node.box}")
                if role in CONTROLS - ITEMS and not self.is_part(node, role):
                    found.append((node, name, role))
            except GLib.Error:
                continue
        return found

    @staticmethod
    def is_part(node, role):
        """A field's own line, which has no place of its own, and the scroll bars' parts."""
        return role in ("text", "push button") and not node.has("focusable")

    def check_tab_order(self, controls, what):
        waiting = list(controls)
        groups = set()
        for _ in range(2 * len(controls) + 10):
            reached = [entry for entry in waiting if self.is_reached(entry[0])]
            waiting = [entry for entry in waiting if entry not in reached]
            for node, _name, role in reached:
                if role in GROUPED and (node.parent, role) not in groups:
                    groups.add((node.parent, role))
                    waiting = self.go_through_group((node.parent, role), waiting)
            # Another tool has other options.
            waiting = [entry for entry in waiting if entry[0].has("showing")]
            if not waiting:
                return
            self.desk.keys("Tab")
        self.assertEqual([(role, name) for _, name, role in waiting], [],
                         f"{what}: not reached with the Tab key")

    def go_through_group(self, group_of, waiting):
        """Of buttons that exclude each other the Tab key reaches one, the arrow keys the rest."""
        group = [entry for entry in waiting if (entry[0].parent, entry[2]) == group_of]
        for key in ROUND_TRIP:
            if not group:
                break
            self.desk.keys(key)
            reached = [entry for entry in group if self.is_reached(entry[0])]
            group = [entry for entry in group if entry not in reached]
            waiting = [entry for entry in waiting if entry not in reached]
        return waiting

    @staticmethod
    def is_reached(node):
        try:
            return node.has("focused") or any(child.has("focused") for child in node.children())
        except GLib.Error:
            return False


class Accessibility(Walk, DeskCase):
    def test_the_first_windows(self):
        editor = self.start()
        tour = editor.wait_for_window("Paint.NET Quick Start")
        for step in range(1, 7):
            editor.wait_for_control(f"Step {step} of 6")
            self.check(tour, f"Quick Start {step}")
            next_button = tour.find("Next") or tour.find("Done")
            while not next_button.has("focused"):
                self.desk.keys("Tab")
            self.desk.keys("Return")
        editor.wait_until_alone()
        self.check(editor.wait_for_window("Welcome to Quillabrae"), "Welcome")

    def test_the_welcome_window_with_recents(self):
        store_records(self.desk, recents=[
            {"title": name, "url": (self.desk.home / f"{name}.quillabrae").as_uri(),
             "openedAt": "2026-01-01T12:00:00Z"} for name in ("boat", "lake")])
        editor = self.start()
        self.check(editor.wait_for_window("Welcome to Quillabrae"), "Welcome with recents")

    def test_the_editor_with_every_tools_options(self):
        editor = self.start_with_a_project()
        window = editor.wait_for_window("evening - Quillabrae v")
        editor.click("More")
        self.check(window, "Editor")
        for tool in TOOLS.values():
            editor.choose_tool(tool)
            options = editor.wait_for_control("Quick toolbar")
            for node, name, role in self.controls_in(options):
                self.assertTrue(name, f"{tool}: a {role} without a name")
                self.assertTrue(node.has("focusable"), f"{tool}: {role} {name!r}")

    def test_every_dialog(self):
        editor = self.start_with_a_project()
        # What the dialog that is opened by pasting asks about.
        drawing = self.desk.home / "drawing.svg"
        drawing.write_bytes(DRAWING)
        self.desk.copy("image/svg+xml", drawing)
        for dialog in DIALOGS:
            if dialog.keys:
                self.desk.keys(dialog.keys)
            else:
                editor.click(dialog.button)
            self.check(editor.wait_for_window(dialog.title), dialog.title)
            self.desk.keys("Escape")
            editor.wait_until_alone()

    def test_every_question(self):
        editor = self.start_with_a_project()
        self.desk.keys("ctrl+shift+n")
        self.desk.copy("image/png", photos.PNG)
        for alert in ALERTS:
            alert.ask(self.desk, editor)
            self.check(editor.wait_for_window(alert.words), alert.name)
            self.desk.keys("Escape")
            editor.wait_until_alone()

    def test_every_pane_of_the_settings(self):
        editor = self.start_with_a_project()
        self.desk.keys("ctrl+comma")
        settings = until(lambda: next((w for w, title in editor.windows()
                                       if not title.startswith("evening")), None), "the settings")
        sections = settings.find("Sections")
        for row in range(len(sections.children())):
            self.check(settings, f"Settings {row}")
            while not sections.has("focused") and not any(
                    row.has("focused") for row in sections.children()):
                self.desk.keys("Tab")
            self.desk.keys("Down")
        self.desk.keys("Escape")
        editor.wait_until_alone()

    def test_the_library(self):
        editor = self.start_with_a_project()
        self.desk.keys("ctrl+shift+p")
        self.check(editor.wait_for_window("Plugin Library"), "Plugin Library")

    def test_the_feedback_dialog(self):
        editor = self.start_with_a_project()
        editor.click("Give Feedback")
        until(lambda: len(editor.windows()) == 2, "the feedback dialog")
        dialog = next(w for w, title in editor.windows() if not title.startswith("evening"))
        self.check(dialog, "Feedback")


class AccessibilityWithServices(Walk, ServicesCase):
    def test_the_fill_dialog(self):
        Keyring(self.desk)
        self.configure(IMAGE_EDIT_URL=self.serve().url)
        editor = self.start_with_a_project()
        self.desk.keys("ctrl+comma")
        editor.wait_for_window("Settings")
        editor.click("Intelligence", "list item")
        until(lambda: editor.labels().count("No key saved") == 2, "the keychain's answer")
        editor.click("Bring your own OpenAI API key", "text")
        self.desk.type("sk-a-key-of-the-test")
        self.desk.keys("Return")
        editor.wait_for_control("Connected with BYOK", "label")
        self.desk.keys("Escape")
        editor.wait_until_alone()
        self.desk.keys("ctrl+a")
        editor.wait_for_status("Selected canvas pixels")
        editor.click("Generative Fill")
        self.check(editor.wait_for_window("Generative Fill"), "Generative Fill")


if __name__ == "__main__":
    unittest.main()
