# SPDX-License-Identifier: GPL-3.0-or-later
"""The windows in the made-up languages that are longer, and written from right to left, as pictures
to look at."""

import sys
import unittest
from functools import partial

import services
from desk import ROOT
from screens import DIALOGS, TOOLS, ScreensCase, add_test

sys.path.append(str(ROOT / "tools"))
import translations  # noqa: E402 (it is found by the line above)


class OtherWords(ScreensCase):
    def all_in(self, language):
        """What keys lead to, and some more. Windows may be larger than in English."""
        self.program = services.PROGRAM
        self.set_up_services()
        self.desk.environment["LANGUAGE"] = language
        self.language = language
        self.tour_and_welcome()
        editor = self.start(self.lake())
        editor.wait_for_window("evening - Quillabrae v")
        for name, tool in TOOLS.items():
            self.press(editor, self.said(tool), "check box")
            self.capture(f"{language}-editor-{name}", "evening - Quillabrae v")
        self.press(editor, self.said("More"))
        self.capture(f"{language}-editor-colors", "evening - Quillabrae v")
        for number, menu in enumerate(editor.wait_for_control(None, "menu bar").children(), 1):
            self.desk.click(self.place_of(menu))
            self.capture(f"{language}-menu-{number}", "evening - Quillabrae v")
            self.desk.keys("Escape")
        self.dialogs_in_other_words(editor)
        self.sections_in_other_words(editor)

    def said(self, text):
        return translations.pseudo(text, self.language)

    def capture_said(self, name, title):
        words = self.said(title).replace("[", r"\[").replace("]", r"\]")
        self.capture(f"{self.language}-{name}", words)

    def tour_and_welcome(self):
        editor = self.start()
        editor.wait_for_window(self.said("Paint.NET Quick Start"))
        for step in range(1, 7):
            self.capture_said(f"quick-start-{step}", "Paint.NET Quick Start")
            self.desk.keys("Page_Down")
        self.desk.keys("Escape")
        editor.wait_until_alone()
        self.capture_said("welcome", "Welcome to Quillabrae")
        self.end(editor)

    def dialogs_in_other_words(self, editor):
        self.copy_drawing()
        for dialog in DIALOGS:
            if dialog.keys:
                self.desk.keys(dialog.keys)
            else:
                self.press(editor, self.said(dialog.button))
            editor.wait_for_window(self.said(dialog.title))
            self.capture_said(f"dialog-{dialog.name}", dialog.title)
            self.leave(editor)

    def sections_in_other_words(self, editor):
        self.desk.keys("ctrl+shift+p")
        editor.wait_for_window(self.said("Plugin Library"))
        self.capture_said("plugin-library", "Plugin Library")
        self.desk.keys("alt+F4")
        editor.wait_until_alone()
        self.desk.keys("ctrl+comma")
        editor.wait_for_window(self.said("Settings"))
        sections = editor.wait_for_control(self.said("Sections"))
        for number, _ in enumerate(sections.children(), 1):
            self.capture_said(f"settings-{number}", "Settings")
            self.desk.keys("Down")


for _language in translations.PSEUDO:
    add_test(OtherWords, _language, partial(OtherWords.all_in, language=_language), "light", 1)


if __name__ == "__main__":
    unittest.main()
