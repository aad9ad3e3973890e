# SPDX-License-Identifier: GPL-3.0-or-later
"""The program crashes: what it leaves to tell of that, and that the work is there again."""

import shutil
import signal
import stat
import unittest

import photos
from case import DeskCase
from desk import until
from editor import store_settings
from services import Answer, ServicesCase

WELCOME = "Welcome to Quillabrae"


class Crash(DeskCase):
    def setUp(self):
        super().setUp()
        store_settings(self.desk, selectedTool="brush", brushSize=80)
        self.photo = self.desk.home / "private name.jpg"
        shutil.copy(photos.JPEG, self.photo)
        self.reports = self.desk.home / ".local/state/Quillabrae/Crashes"

    def crash(self, number):
        editor = self.start(self.photo)
        editor.wait_for_window("private name - Quillabrae v")
        editor.wait_for_status("Opened private name.jpg")
        editor.process.send_signal(number)
        self.assertEqual(editor.process.wait(30), -number)

    def test_a_crash_leaves_a_report_that_tells_nothing_of_the_user(self):
        self.crash(signal.SIGSEGV)
        report, = self.reports.iterdir()
        self.assertEqual(stat.S_IMODE(report.stat().st_mode), 0o600)
        text = report.read_text(encoding="ascii")
        self.assertTrue(text.startswith("Quillabrae crash report 1\nversion: "), text)
        self.assertIn("\nsignal: SIGSEGV\n", text)
        self.assertRegex(text, r"\n\d+ quillabrae \+0x[0-9a-f]+\n")
        self.assertRegex(text, r"\n\d+ libQt6Core\.so\.6 \+0x[0-9a-f]+\n")
        for private in ("/", "private", str(self.desk.home), "jpg"):
            self.assertNotIn(private, text)

    def test_the_work_is_there_again_after_a_crash(self):
        self.crash(signal.SIGABRT)
        again = self.start()
        again.wait_for_window("private name - Quillabrae v")
        again.wait_for_control("Canvas")

    def test_a_clean_end_and_a_forced_one_leave_no_report(self):
        editor = self.start(self.photo)
        editor.wait_for_window("private name - Quillabrae v")
        editor.wait_for_status("Opened private name.jpg")
        self.desk.keys("ctrl+q")
        self.assertEqual(editor.process.wait(30), 0)
        editor = self.start()
        editor.wait_for_window("Welcome to Quillabrae")
        editor.kill()
        self.assertFalse(self.reports.exists())


class Report(ServicesCase):
    """A build with a service to send feedback to."""

    def setUp(self):
        super().setUp()
        store_settings(self.desk, selectedTool="brush")
        self.reports = self.desk.home / ".local/state/Quillabrae/Crashes"
        self.server = self.serve(lambda request: Answer(body=b'{"ok":true}'))
        self.configure(SERVICE_URL=self.server.url)
        editor = self.start()
        editor.wait_for_window(WELCOME)
        editor.process.send_signal(signal.SIGSEGV)
        self.assertEqual(editor.process.wait(30), -signal.SIGSEGV)

    def test_the_next_start_offers_the_report_and_sends_nothing_by_itself(self):
        again = self.start()
        again.wait_for_control("Show Report").press()
        again.wait_for_window("Give Feedback")
        again.screenshot("16-crash-report")
        self.assertEqual(self.server.connections, 0)
        self.assertEqual(len(list(self.reports.iterdir())), 1)
        again.wait_for_control("Send Feedback", "push button").press()
        until(lambda: self.server.requests, "the feedback to be sent")
        self.assertIn(b"signal: SIGSEGV", self.server.requests[0].body)
        until(lambda: not list(self.reports.iterdir()), "the report to be gone")

    def test_what_is_not_wanted_is_forgotten(self):
        again = self.start()
        again.wait_for_control("Don't Report").press()
        until(lambda: not list(self.reports.iterdir()), "the report to be gone")
        again.wait_for_window(WELCOME)
        self.assertEqual(self.server.connections, 0)


if __name__ == "__main__":
    unittest.main()
