# SPDX-License-Identifier: GPL-3.0-or-later
"""The settings and the plugin library, used by pointer and keys."""

import base64
import io
import json
import unittest

from PIL import Image

import traces
from desk import until
from editor import store_settings
from keyring import Keyring
from services import Answer, ServicesCase

CANARY = "sk-Canary7Zk2Qw9LmXv4"

# Preferences with the recent projects in them, recovery, copies, and what the program said.
KEPT = ("home/.config/Quillabrae/preferences.ini",
        "home/.local/share/Quillabrae/Autosave/Recovery.quillabraesession",
        "home/.local/share/Quillabrae/Clipboard/*.png", "quillabrae*.log", "home/.cache")
KEY_FIELD = "Bring your own OpenAI API key"


def picture():
    file = io.BytesIO()
    Image.new("RGBA", (64, 48), "red").save(file, "PNG")
    return json.dumps({"data": [{"b64_json": base64.b64encode(file.getvalue()).decode()}]}).encode()


class Settings(ServicesCase):
    def setUp(self):
        super().setUp()
        store_settings(self.desk, selectedTool="brush")
        self.drawing = self.desk.home / "drawing.png"
        Image.new("RGB", (400, 300), "white").save(self.drawing)

    def open_drawing(self, **options):
        editor = self.start(self.drawing, **options)
        editor.wait_for_window("drawing - Quillabrae v")
        editor.wait_for_status("Opened drawing.png")
        return editor

    def open_settings(self, editor, section):
        self.desk.keys("ctrl+comma")
        editor.wait_for_window("Settings")
        editor.click(section, "list item")
        until(lambda: editor.wait_for_control(section, "list item").has("selected"), section)

    def preferences(self):
        return (self.desk.home / ".config/Quillabrae/preferences.ini").read_text()

    def leave_settings(self, editor):
        self.desk.keys("Escape")
        editor.wait_until_closed("Settings")

    def choose_in_menu(self, editor, current, wanted_key, wanted):
        """Opens the menu that shows `current` and goes to an end of it by key."""
        editor.click(current, "combo box")
        self.desk.keys(wanted_key, "Return")
        editor.wait_for_control(wanted, "combo box")

    def test_there_is_one_settings_window_and_it_comes_to_the_front(self):
        editor = self.open_drawing()
        editor.click("Settings")
        editor.wait_for_window("Settings")
        # The press brings the editor to the front, and the command the settings.
        self.desk.click(editor.wait_for_control("Quick toolbar").find("Settings").middle)
        until(lambda: editor.wait_for_window("Settings").has("active"), "the settings in front")
        self.assertEqual(editor.titles().count("Settings"), 1)
        self.leave_settings(editor)

    def test_what_is_chosen_is_stored_and_takes_effect_at_once(self):
        editor = self.open_drawing()
        for _ in range(12):
            self.desk.keys("ctrl+shift+i")
        until(lambda: editor.recorded_edits("Invert") == 12, "twelve edits in the recovery file")
        self.open_settings(editor, "History & Restore")
        editor.screenshot("14-settings-history")
        self.choose_in_menu(editor, "25 steps", "Home", "10 steps")
        until(lambda: editor.recorded_edits("Invert") == 10, "a shorter history on disk")
        editor.click("Keep edit history in recovered projects", "check box")
        until(lambda: editor.recorded_edits("Invert") == 0, "no history on disk")
        editor.click("Privacy", "list item")
        editor.click("Share anonymous usage data", "check box")
        until(lambda: "Quillabrae.shareAnonymousUsageData=false" in self.preferences(),
              "the choice to be stored")
        editor.click("Canvas", "list item")
        self.choose_in_menu(editor, "Move Selected Pixels", "End", "Shapes")
        editor.screenshot("14-settings-canvas")
        self.leave_settings(editor)
        until(lambda: editor.wait_for_control("Tools").find("Shapes", "check box").has("checked"),
              "the tool to be chosen in the editor")

    def test_the_window_lives_while_the_keychain_keeps_it_waiting(self):
        keyring = Keyring(self.desk)
        editor = self.open_drawing()
        keyring.fall_silent()
        self.open_settings(editor, "Intelligence")
        editor.wait_for_control("Waiting for the keychain...", "label")
        editor.screenshot("14-settings-waiting")
        editor.click("Privacy", "list item")
        editor.click("Share anonymous usage data", "check box")
        until(lambda: "Quillabrae.shareAnonymousUsageData=false" in self.preferences(),
              "the choice to be stored")
        editor.click("Intelligence", "list item")
        keyring.go_on()
        until(lambda: editor.labels().count("No key saved") == 2, "the keychain's answer")

    def save_key(self, editor):
        self.open_settings(editor, "Intelligence")
        until(lambda: editor.labels().count("No key saved") == 2, "the keychain's answer")
        editor.click(KEY_FIELD, "text")
        self.desk.type(CANARY)
        # Shown, so that nothing of the showing stays behind either.
        editor.click("Show API key", "check box")
        editor.click("Save API Key")
        editor.wait_for_control("API key saved in Keychain", "label")
        editor.wait_for_control("Connected with BYOK", "label")
        editor.screenshot("14-settings-key")
        self.leave_settings(editor)

    def fill(self, editor):
        editor.click("Generative Fill")
        editor.click("Prompt", "text")
        self.desk.type("a red hat")
        editor.click("Generate")

    def expect_no_trace(self, editor, *more_places):
        count, found = traces.files_with(CANARY, self.desk.folder)
        self.assertEqual(found, [])
        self.assertGreater(count, 8)
        # What the program keeps of itself and of the user was there to be searched.
        for place in (*KEPT, *more_places):
            self.assertTrue(list(self.desk.folder.glob(place)), place)
        # The search does find what is there.
        self.assertTrue(traces.files_with("Connected with BYOK", self.desk.folder)[1])
        if editor.process.poll() is None:
            self.assertNotIn(CANARY.encode(), traces.arguments(editor.process.pid))
            self.assertNotIn(CANARY.encode(), traces.environment(editor.process.pid))

    def test_a_key_is_in_the_keychain_and_nowhere_else(self):
        keyring = Keyring(self.desk)
        answers = [Answer(401, b'{"error":{"message":"Bad key."}}'), Answer(200, picture())]
        server = self.serve(lambda request: answers.pop(0))
        self.configure(IMAGE_EDIT_URL=server.url)
        cores = self.desk.folder / "cores"
        cores.mkdir()
        editor = self.open_drawing(cwd=cores, **traces.dumps_cores())
        self.save_key(editor)
        self.assertEqual(keyring.secret("Quillabrae.OpenAI", "OpenAIAPIKey"), CANARY)

        # A refusal, and a fill that lands: what the key is for.
        self.desk.keys("ctrl+a")
        editor.wait_for_status("Selected canvas pixels")
        self.fill(editor)
        editor.wait_for_control("Bad key.", "label")
        editor.click("Generate")
        until(lambda: editor.recorded_edits("Generative Fill") == 1, "the fill in the recovery file")
        self.assertEqual([request.headers["authorization"] for request in server.requests],
                         [f"Bearer {CANARY}"] * 2)
        self.desk.keys("ctrl+s")
        editor.wait_for_status("Saved drawing.png")
        self.desk.keys("ctrl+a", "ctrl+c")
        until(lambda: "Connected with BYOK" in self.preferences(), "the status to be stored")
        self.expect_no_trace(editor)
        block = traces.environment_in_core(editor.process, cores)
        self.assertIn(f"HOME={self.desk.home}".encode(), block)
        self.assertNotIn(CANARY.encode(), block)

        self.expect_no_trace(editor, "home/.local/state/Quillabrae/Crashes/*.txt")
        again = self.start()
        again.wait_for_window("drawing - Quillabrae v")
        self.open_settings(again, "Intelligence")
        again.wait_for_control("API key saved in Keychain", "label")
        again.click("Remove Key")
        until(lambda: again.labels().count("No key saved") == 2, "the key to be gone")
        again.wait_for_control("Not connected", "label")
        self.assertEqual(keyring.secret("Quillabrae.OpenAI", "OpenAIAPIKey"), "")

    def test_plugins_are_installed_run_and_removed_with_the_keyboard_alone(self):
        editor = self.open_drawing()
        self.desk.keys("ctrl+shift+p")
        editor.wait_for_window("Plugin Library")
        editor.wait_for_control("Made for Quillabrae", "label")
        editor.screenshot("15-library")
        self.desk.keys("ctrl+f")
        self.desk.type("dimensional")
        until(lambda: "Search results" in editor.labels(), "the search")
        install = editor.wait_for_control("Install Monoform")
        self.tab_to(install)
        self.desk.keys("space")
        run = editor.wait_for_control("Run Monoform")
        until(lambda: run.has("focused"), "the keyboard to stay with the card")
        self.desk.keys("space")
        editor.wait_for_control("Applied Monoform", "label")
        until(lambda: editor.recorded_edits("Monoform") == 1, "the effect in the recovery file")
        editor.screenshot("15-library-installed")
        self.desk.keys("ctrl+z")
        editor.wait_for_status("Restored")
        self.desk.keys("ctrl+w")
        editor.wait_until_closed("Plugin Library")
        self.assertEqual(len(editor.windows()), 1)

        editor.kill()
        again = self.start()
        again.wait_for_window("drawing - Quillabrae v")
        self.desk.keys("alt+p")
        again.wait_for_control("Monoform")
        self.desk.keys("Escape", "ctrl+shift+p")
        again.wait_for_window("Plugin Library")
        self.desk.keys("Down")
        self.tab_to(again.wait_for_control("Remove Monoform"))
        self.desk.keys("space")
        again.wait_for_control("No plugins installed", "label")

    def tab_to(self, control):
        for _ in range(20):
            if control.has("focused"):
                return
            self.desk.keys("Tab")
        self.fail(f"the Tab key does not lead to {control.name!r}")


if __name__ == "__main__":
    unittest.main()
