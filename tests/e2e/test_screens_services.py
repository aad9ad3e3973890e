# SPDX-License-Identifier: GPL-3.0-or-later
"""What updates, feedback, signing in and generative fill show, as pictures to look at."""

import unittest

from PIL import Image

import photos
import services
from desk import until
from keyring import Keyring
from screens import SCALES, THEMES, ScreensCase, add_test
from services import UPDATE_FEED, Answer
from web import AccountService, install_browser


class Web:
    """Everything that the program with services talks to, under one address. What is asked for a
    target in `held` waits for its answer until the target is in there no more."""

    def __init__(self):
        self.account = AccountService()
        self.answers = {}
        self.held = set()

    def release(self):
        self.held = set()

    def __call__(self, request):
        until(lambda: request.target not in self.held, f"{request.target} to be answered", 60)
        return self.answers.get(request.target) or self.account(request)


class ServicesScreens(ScreensCase):
    def all_with_services(self):
        self.program = services.PROGRAM
        self.set_up_services()
        self.keyring = Keyring(self.desk)
        install_browser(self.desk, self.program)
        self.serve_the_web()
        editor = self.open_the_lake()
        self.updates(editor)
        self.feedback(editor)
        self.account(editor)
        self.fill(editor)

    def serve_the_web(self):
        """A version 1.10 is offered, but its package is not the signed one."""
        package = self.desk.folder / "new.deb"
        package.write_bytes(b"a package")
        self.make_credentials(package)
        key, signature = ((self.credentials / f"update-{name}.txt").read_text()
                          for name in ("key", "signature"))
        self.web = Web()
        self.addCleanup(self.web.release)
        url = self.serve(self.web).url
        self.configure(SERVICE_URL=url, IMAGE_EDIT_URL=url,
                       UPDATE_FEED_URL=f"{url}/feed.xml", UPDATE_PUBLIC_KEY=key)
        feed = UPDATE_FEED.format(url=url, length=9, signature=signature)
        self.web.answers = {
            "/feed.xml": Answer(body=feed.encode()), "/new.deb": Answer(body=b"b package"),
            "/api/feedback": Answer(429, b'{"error": "Too much for one day."}'),
            "/v1/images/edits": Answer(401, b'{"error": {"message": "The key is wrong."}}')}

    def updates(self, editor):
        """The start looks by itself, since nobody has today."""
        window = ("evening - Quillabrae v", (1180, 820))
        editor.wait_for_control("Update Now")
        self.capture("update-now", *window)
        self.web.held = {"/feed.xml"}
        self.press(editor, "Update Now")
        editor.wait_for_control("Checking…")
        self.capture("update-checking", *window)
        self.web.held = {"/new.deb"}
        editor.wait_for_control("Installing…")
        self.capture("update-installing", *window)
        self.web.release()
        editor.wait_for_control("Quillabrae could not be updated.")
        self.capture("alert-update", "Quillabrae$")
        self.leave(editor)
        editor.wait_for_control("Check for Updates")
        self.capture("update-check", *window)
        feed = self.web.answers["/feed.xml"].body
        self.web.answers["/feed.xml"] = Answer(body=feed.replace(b"1.10", b"1.1"))
        self.press(editor, "Check for Updates")
        editor.wait_for_control("You have the newest version.")
        self.capture("alert-newest", "Quillabrae$")
        self.leave(editor)

    def feedback(self, editor):
        dialog = ("Give Feedback", (480, 520))
        self.press(editor, "Give Feedback")
        self.press(editor, "What would make Quillabrae better for you?", "text")
        self.desk.type("More brushes, please")
        large = self.desk.home / "Pictures/panorama.png"
        Image.linear_gradient("L").resize((12000, 8000)).convert("RGB").save(large, compress_level=1)
        self.attach(editor, large)
        # The accessibility bus may be slower than the work.
        until(lambda: editor.node().find("Compressing image…"), "the work to be shown", pause=0.01)
        with self.standing_still(editor):
            self.capture("dialog-feedback-compressing", *dialog)
        self.press(editor, "Remove", "push button")
        self.attach(editor, photos.JPEG)
        editor.wait_for_status("Compressed JPEG · ")
        self.capture("dialog-feedback-attached", *dialog)
        self.web.held = {"/api/feedback"}
        self.press(editor, "Send Feedback")
        editor.wait_for_control("Sending feedback…", "push button")
        with self.standing_still(editor):
            self.capture("dialog-feedback-sending", *dialog)
        self.web.release()
        editor.wait_for_status("Too much for one day.")
        self.capture("dialog-feedback-refused", *dialog)
        self.web.answers["/api/feedback"] = Answer(204)
        self.press(editor, "Send Feedback")
        editor.wait_for_status("Feedback sent")
        self.capture("dialog-feedback-sent", *dialog)
        self.leave(editor)

    def attach(self, editor, picture):
        self.press(editor, "Choose an image to attach")
        editor.wait_for_window("Attach Image")
        self.desk.type(str(picture))
        self.desk.keys("Return")

    def account(self, editor):
        self.desk.keys("ctrl+comma")
        editor.wait_for_window("Settings")
        self.press(editor, "Account", "list item")
        editor.wait_for_control("Not signed in", "label")
        self.capture("settings-account-signed-out", "Settings")
        links, self.web.account.callback = self.web.account.callback, lambda code, state: None
        self.press(editor, "Sign in")
        editor.wait_for_status("Complete sign-in in your browser…")
        until(lambda: self.web.account.challenges, "the browser to be there")
        with self.standing_still(editor):
            self.capture("settings-account-waiting", "Settings")
        self.press(editor, "Cancel")
        editor.wait_for_status("Sign-in cancelled.")
        self.web.account.callback = links
        self.press(editor, "Sign in")
        editor.wait_for_status("zoe@example.org")
        self.capture("settings-account-signed-in", "Settings")
        self.leave(editor)

    def fill(self, editor):
        self.desk.keys("ctrl+comma")
        editor.wait_for_window("Settings")
        self.keyring.fall_silent()
        self.press(editor, "Intelligence", "list item")
        editor.wait_for_control("Waiting for the keychain...", "label")
        with self.standing_still(editor):
            self.capture("settings-intelligence-waiting", "Settings")
        self.keyring.go_on()
        until(lambda: editor.labels().count("No key saved") == 2, "the keychain's answer")
        self.press(editor, "Bring your own OpenAI API key", "text")
        self.desk.type("sk-a-key-of-the-test")
        self.press(editor, "Save API Key")
        editor.wait_for_control("Connected with BYOK", "label")
        self.capture("settings-intelligence-key", "Settings")
        self.leave(editor)

        dialog = ("Generative Fill", (520, 384))
        self.press(editor, "Generative Fill")
        editor.wait_for_window("Generative Fill")
        self.capture("dialog-generative-fill", *dialog)
        self.press(editor, "Prompt", "text")
        self.desk.type("a red hat")
        self.web.held = {"/v1/images/edits"}
        self.press(editor, "Generate")
        editor.wait_for_control("Generating and applying pixels...", "label")
        with self.standing_still(editor):
            self.capture("dialog-generative-fill-working", *dialog)
        self.web.release()
        editor.wait_for_control("The key is wrong.", "label")
        self.capture("dialog-generative-fill-refused", *dialog)
        self.leave(editor)


for _theme in THEMES:
    for _scale in SCALES:
        add_test(ServicesScreens, "services", ServicesScreens.all_with_services, _theme, _scale)


if __name__ == "__main__":
    unittest.main()
