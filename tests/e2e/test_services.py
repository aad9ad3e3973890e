# SPDX-License-Identifier: GPL-3.0-or-later
"""What the whole program says to servers, and when."""

import json
import shutil
import time
import unittest

import photos
from desk import until
from editor import store_settings
from services import Answer, ServicesCase


class Services(ServicesCase):
    def test_the_program_is_what_its_build_says(self):
        self.configure(VERSION="9.8.7")
        drawing = self.desk.home / "stripes.png"
        shutil.copy(photos.PNG, drawing)
        self.start(drawing).wait_for_window("stripes - Quillabrae v9.8.7")


def events(server):
    return [json.loads(request.body)["payload"] for request in server.requests]


def names(server):
    return [event["name"] for event in events(server)]


class Analytics(ServicesCase):
    def setUp(self):
        super().setUp()
        store_settings(self.desk)
        self.photo = self.desk.home / "canary-stripes.png"
        shutil.copy(photos.PNG, self.photo)

    def report_to(self, server):
        self.configure(ANALYTICS_URL=f"{server.url}/api/send", ANALYTICS_WEBSITE_ID="site",
                       ANALYTICS_HOST_NAME="app.example")

    def open_photo(self):
        editor = self.start(self.photo)
        editor.wait_for_window("canary-stripes - Quillabrae v")
        return editor

    def quit(self, editor):
        self.desk.keys("ctrl+q")
        self.assertEqual(editor.process.wait(30), 0)

    def test_starts_and_saves_are_counted_and_no_name_is_told(self):
        server = self.serve()
        self.report_to(server)
        editor = self.open_photo()
        until(lambda: len(server.requests) >= 3, "the events of the start")
        self.desk.keys("ctrl+s")
        editor.wait_for_status("Saved canary-stripes.png")
        until(lambda: len(server.requests) >= 4, "the event of the save")
        self.quit(editor)
        self.assertEqual(sorted(names(server)),
                         ["app_first_launch", "app_launch", "image_exported", "project_opened"])
        for request in server.requests:
            self.assertEqual((request.method, request.target), ("POST", "/api/send"))
            self.assertNotIn(b"canary", request.body)
            self.assertNotIn(b"stripes", request.body)
            self.assertNotIn(str(self.desk.home).encode(), request.body)
            self.assertNotIn("cookie", request.headers)
            self.assertTrue(request.headers["user-agent"].startswith("Quillabrae/1.2.3 (macOS; "))
        opened = next(event for event in events(server) if event["name"] == "project_opened")
        self.assertEqual(opened["data"], {"app_version": "1.2.3", "build": "45", "channel": "release",
                                          "kind": "image", "format": "png"})

        server.requests.clear()
        self.configure(VERSION="1.3")
        self.quit(self.open_photo())
        until(lambda: "app_launch" in names(server), "the next version's launch")
        updated = next(event for event in events(server) if event["name"] == "app_updated")
        self.assertEqual((updated["data"]["previous_version"], updated["data"]["current_version"]),
                         ("1.2.3", "1.3"))

    def test_a_server_that_hangs_holds_up_neither_window_nor_end(self):
        server = self.serve(lambda request: time.sleep(30) or Answer())
        self.report_to(server)
        editor = self.open_photo()
        until(lambda: server.requests, "the first event")
        began = time.monotonic()
        self.desk.keys("ctrl+q")
        self.assertEqual(editor.process.wait(8), 0)
        self.assertLess(time.monotonic() - began, 8)

    def test_switched_off_or_without_a_website_id_nobody_is_spoken_to(self):
        server = self.serve()
        self.report_to(server)
        preferences = self.desk.home / ".config/Quillabrae/preferences.ini"
        leave = preferences.read_text()
        preferences.write_text(leave + "Quillabrae.shareAnonymousUsageData=false\n")
        self.quit(self.open_photo())
        preferences.write_text(leave)
        self.configure(ANALYTICS_WEBSITE_ID="")
        self.quit(self.open_photo())
        self.assertEqual(server.connections, 0)


if __name__ == "__main__":
    unittest.main()
