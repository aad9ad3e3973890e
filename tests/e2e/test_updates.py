# SPDX-License-Identifier: GPL-3.0-or-later
"""The update button, from the feed to the hands of a stand-in for the system's installer."""

import os
import shutil
import unittest
from datetime import datetime, timezone

import photos
from desk import until
from editor import store_settings
from services import UPDATE_FEED, Answer, ServicesCase

INSTALLER = """#!/bin/sh
stat -c '%a %n' "$1" "$(dirname "$1")" > "{folder}/seen"
cp "$1" "{folder}/installed.part" && mv "{folder}/installed.part" "{folder}/installed"
"""


class Updates(ServicesCase):
    def setUp(self):
        super().setUp()
        store_settings(self.desk)
        self.drawing = self.desk.home / "stripes.png"
        shutil.copy(photos.PNG, self.drawing)
        self.package = b"a package of the new version " * 10000
        file = self.desk.folder / "new.deb"
        file.write_bytes(self.package)
        self.make_credentials(file)
        self.signature = (self.credentials / "update-signature.txt").read_text()
        self.stand_in_for_the_installer()

    def stand_in_for_the_installer(self):
        programs = self.desk.folder / "programs"
        programs.mkdir()
        opener = programs / "xdg-open"
        opener.write_text(INSTALLER.format(folder=self.desk.folder))
        opener.chmod(0o755)
        self.desk.environment["PATH"] = f"{programs}:{os.environ['PATH']}"

    def look_today_already(self):
        """The look of the start is not due."""
        preferences = self.desk.home / ".config/Quillabrae/preferences.ini"
        now = datetime.now(timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ")
        preferences.write_text(preferences.read_text() + f"Quillabrae.updates.lastCheck={now}\n")

    def offer(self, package):
        def answer(request):
            if request.target == "/feed.xml":
                return Answer(body=UPDATE_FEED.format(url=server.url, length=len(self.package),
                                                      signature=self.signature).encode())
            return Answer(body=package) if request.target == "/new.deb" else Answer(status=404)

        server = self.serve(answer)
        self.configure(UPDATE_FEED_URL=f"{server.url}/feed.xml",
                       UPDATE_PUBLIC_KEY=(self.credentials / "update-key.txt").read_text())
        return server

    def open_drawing(self):
        editor = self.start(self.drawing)
        editor.wait_for_window("stripes - Quillabrae v1.2.3")
        editor.wait_for_status("Opened stripes.png")
        return editor

    def test_an_update_is_found_and_handed_to_the_installer(self):
        server = self.offer(self.package)
        self.look_today_already()
        editor = self.open_drawing()
        editor.wait_for_control("Check for Updates")
        self.assertEqual(server.connections, 0)
        editor.screenshot("21-check-for-updates")
        editor.click("Check for Updates")
        button = editor.wait_for_control("Update Now")
        self.assertEqual(button.description, "Install Quillabrae 1.10 Gull")
        editor.screenshot("22-update-now")
        self.assertFalse((self.desk.folder / "installed").exists())
        editor.click("Update Now")
        installed = self.desk.folder / "installed"
        until(installed.exists, "the package to be handed over")
        self.assertEqual(installed.read_bytes(), self.package)
        file, folder = (self.desk.folder / "seen").read_text().splitlines()
        self.assertTrue(file.startswith("600 ") and folder.startswith("700 "), (file, folder))
        editor.wait_for_control("Check for Updates")
        self.assertNotIn("/old.deb", [request.target for request in server.requests])

    def test_the_start_looks_by_itself_once_a_day(self):
        server = self.offer(self.package)
        editor = self.open_drawing()
        editor.wait_for_control("Update Now")
        self.desk.keys("ctrl+q")
        self.assertEqual(editor.process.wait(30), 0)
        looked = len(server.requests)
        editor = self.open_drawing()
        editor.wait_for_control("Check for Updates")
        self.assertEqual(len(server.requests), looked)

    def test_a_package_that_is_not_the_signed_one_is_handed_to_nobody(self):
        self.offer(self.package[:-1] + b"!")
        editor = self.open_drawing()
        editor.click("Update Now")
        editor.wait_for_control("Quillabrae could not be updated.")
        editor.screenshot("23-update-refused")
        editor.click("OK")
        editor.wait_for_control("Check for Updates")
        self.assertFalse((self.desk.folder / "installed").exists())

    def test_without_a_feed_there_is_no_button(self):
        editor = self.open_drawing()
        editor.wait_for_control("New Project")
        self.assertIsNone(editor.node().find("Check for Updates", None))


if __name__ == "__main__":
    unittest.main()
