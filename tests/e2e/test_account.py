# SPDX-License-Identifier: GPL-3.0-or-later
"""Signing in with a browser, and out again."""

import os
import time
import unittest

from desk import descendants, until
from services import PROGRAM, Answer, ServicesCase
from web import AccountService, install_browser, secret, start_keyring

TOKEN = "the-token-of-the-test"


class Account(ServicesCase):
    def setUp(self):
        super().setUp()
        start_keyring(self.desk)
        install_browser(self.desk, PROGRAM)
        self.service = AccountService()
        self.server = self.serve(self.service)
        self.configure(SERVICE_URL=self.server.url)

    def open_account(self):
        editor = self.start_with_picture()
        self.desk.keys("ctrl+comma")
        return editor

    def signed_in(self):
        editor = self.open_account()
        editor.click("Sign in")
        editor.wait_for_status("Signed in.")
        return editor

    def give_up_one(self, editor):
        """Begins a sign-in that never comes back, and cancels it."""
        links, self.service.callback = self.service.callback, lambda code, state: None
        pages = len(self.service.challenges)
        editor.click("Sign in")
        editor.wait_for_status("Complete sign-in in your browser…")
        until(lambda: len(self.service.challenges) > pages, "the browser to be there")
        time.sleep(0.2)
        editor.click("Cancel")
        editor.wait_for_status("Sign-in cancelled.")
        self.service.callback = links

    def kept_token(self):
        return secret(self.desk, "Quillabrae.Account", "BetterAuthBearerToken")

    def callbacks(self):
        return (self.desk.home / "callbacks").read_text().split()

    def requests_for_tokens(self):
        return [r for r in self.server.requests if r.target == "/api/app-auth/token"]

    def test_the_browser_comes_back_through_a_second_start(self):
        editor = self.open_account()
        editor.wait_for_control("Not signed in", "label")
        titles = sorted(editor.titles())
        editor.screenshot("20-account-signed-out")
        editor.click("Sign in")
        editor.wait_for_status("Signed in.")
        editor.wait_for_status("Zoë")
        editor.wait_for_status("zoe@example.org")
        editor.screenshot("21-account-signed-in")
        self.assertEqual(self.kept_token(), TOKEN)
        self.assertEqual(sorted(editor.titles()), titles, "a link opens nothing")
        until(lambda: self.programs() == [editor.process.pid], "the second start to end")
        self.assertEqual(len(self.requests_for_tokens()), 1)
        self.assert_nothing_leaked(editor)

    def programs(self):
        """The process numbers of all that run the program on this desk."""
        found = []
        for pid in descendants(os.getpid()):
            try:
                if os.readlink(f"/proc/{pid}/exe") == str(PROGRAM.resolve()):
                    found.append(pid)
            except OSError:
                continue
        return found

    def assert_nothing_leaked(self, editor):
        """The token is in the keyring, and neither it nor a secret of the sign-in anywhere else."""
        callback = self.callbacks()[-1]
        hidden = [TOKEN, callback.partition("state=")[2]]
        log = self.desk.log_of(PROGRAM.name)
        for word in hidden:
            self.assertNotIn(word, log)
        for file in self.desk.home.rglob("*"):
            if not file.is_file() or "keyrings" in file.parts or file.name == "callbacks":
                continue
            content = file.read_bytes()
            for word in hidden:
                self.assertNotIn(word.encode(), content, file)

    def test_the_next_start_knows_the_user_and_signs_out_offline(self):
        editor = self.signed_in()
        self.desk.keys("ctrl+q")
        self.assertEqual(editor.process.wait(30), 0)
        editor = self.open_account()
        editor.wait_for_control("Sign Out")
        editor.wait_for_status("zoe@example.org")
        self.server.close()
        editor.click("Sign Out")
        editor.wait_for_status("Signed out.")
        editor.wait_for_control("Not signed in", "label")
        self.assertEqual(self.kept_token(), "")
        preferences = (self.desk.home / ".config/Quillabrae/preferences.ini")
        self.desk.keys("ctrl+q")
        self.assertEqual(editor.process.wait(30), 0)
        self.assertNotIn("zoe@example.org", preferences.read_text())

    def test_signing_out_tells_the_service(self):
        editor = self.signed_in()
        editor.click("Sign Out")
        editor.wait_for_status("Signed out.")
        until(lambda: self.service.signed_out == [f"Bearer {TOKEN}"], "the service to hear of it")

    def test_another_state_is_refused_and_so_is_a_missing_code(self):
        editor = self.open_account()
        for link in ("quillabrae://auth/callback?code=abc&state=another",
                     "quillabrae://auth/callback?state={state}", "quillabrae://other"):
            self.service.callback = lambda code, state, link=link: link.format(state=state)
            editor.click("Sign in")
            editor.wait_for_status("Quillabrae could not verify the sign-in response.")
            self.give_up_one(editor)
        self.assertEqual(self.requests_for_tokens(), [])
        self.assertEqual(self.kept_token(), "")

    def test_an_old_link_is_ignored(self):
        editor = self.signed_in()
        titles = sorted(editor.titles())
        old = self.callbacks()[-1]
        self.assertEqual(self.second_start(editor, old), 0)
        time.sleep(0.5)
        editor.wait_for_status("Signed in.")
        self.assertEqual(sorted(editor.titles()), titles)
        self.assertEqual(len(self.requests_for_tokens()), 1)

    def test_a_link_starts_no_sign_in_by_itself(self):
        editor = self.start("quillabrae://auth/callback?code=abc&state=def")
        editor.wait_for_window("Welcome to Quillabrae")
        time.sleep(0.5)
        self.assertEqual(self.server.requests, [])
        self.assertEqual(self.server.connections, 0)

    def test_a_service_that_fails_is_told_of(self):
        editor = self.open_account()
        for answer in (Answer(500, b"<html></html>"), Answer(200, b"{"), Answer(200, b"{}")):
            self.service.token = lambda answer=answer: answer
            editor.click("Sign in")
            editor.wait_for_status("Quillabrae could not finish signing in. Please try again.")
            self.give_up_one(editor)
        self.assertEqual(self.kept_token(), "")

    def test_a_build_without_a_service_says_so(self):
        self.configure(SERVICE_URL="")
        editor = self.open_account()
        editor.wait_for_status("This build of Quillabrae has no account service configured")
        self.assertIsNone(editor.node().find("Sign in", "push button"))
        editor.screenshot("22-account-without-service")


if __name__ == "__main__":
    unittest.main()
