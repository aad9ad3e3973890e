# SPDX-License-Identifier: GPL-3.0-or-later
"""Feedback, from the button in the tab bar to the server."""

import base64
import io
import json
import shutil
import threading
import unittest

from PIL import Image

import photos
from desk import until
from services import Answer, ServicesCase


class Feedback(ServicesCase):
    def setUp(self):
        super().setUp()
        self.answer = Answer(204)
        self.server = self.serve(lambda request: self.answer)
        self.configure(SERVICE_URL=self.server.url)

    def open_dialog(self):
        editor = self.start_with_picture()
        editor.click("Give Feedback", "push button")
        editor.wait_for_window("Give Feedback")
        return editor

    def write(self, editor, text):
        self.desk.click(editor.wait_for_control(
            "What would make Quillabrae better for you?", "text").middle)
        self.desk.type(text)

    def payload(self):
        return json.loads(self.server.requests[-1].body)

    def test_words_and_a_photograph_arrive(self):
        photograph = self.desk.home / "My photo!.jpg"
        shutil.copy(photos.JPEG, photograph)
        editor = self.open_dialog()
        editor.screenshot("23-feedback")
        self.write(editor, "More brushes, please")
        editor.wait_for_status("20 / 5,000")
        editor.click("Choose an image to attach")
        editor.wait_for_window("Attach Image")
        self.desk.type(str(photograph))
        self.desk.keys("Return")
        editor.wait_for_status("Compressed JPEG · ")
        editor.wait_for_status("My photo!.jpg")
        editor.screenshot("24-feedback-attached")
        editor.click("Send Feedback")
        editor.wait_for_status("Feedback sent")
        editor.wait_for_status("Thank you. Your feedback will help make Quillabrae better.")
        editor.screenshot("25-feedback-sent")
        self.assertEqual(len(self.server.requests), 1)
        request = self.server.requests[0]
        self.assertEqual((request.method, request.target), ("POST", "/api/feedback"))
        self.assertEqual(request.headers["user-agent"], "Quillabrae-macOS/1.2.3")
        payload = self.payload()
        self.assertEqual(payload["feedback"], "More brushes, please")
        self.assertEqual(payload["appVersion"], "1.2.3")
        self.assertTrue(payload["systemVersion"])
        self.assertEqual(payload["image"]["filename"], "My-photo.jpg")
        self.assertEqual(payload["image"]["contentType"], "image/jpeg")
        content = base64.b64decode(payload["image"]["content"], validate=True)
        self.assertLessEqual(len(content), 1_500_000)
        with Image.open(io.BytesIO(content)) as sent:
            self.assertEqual((sent.format, sent.size), ("JPEG", (1800, 1013)))
            self.assertFalse(sent.getexif(), "nothing of the camera's notes goes along")
        editor.click("Done")
        editor.wait_until_closed("Give Feedback")

    def test_a_refusal_is_told_and_the_words_stay(self):
        self.answer = Answer(429, b'{"error": "Too much for one day."}')
        editor = self.open_dialog()
        self.write(editor, "Hello")
        editor.click("Send Feedback")
        editor.wait_for_status("Too much for one day.")
        editor.wait_for_status("5 / 5,000")
        editor.screenshot("26-feedback-refused")
        self.answer = Answer()
        editor.click("Send Feedback")
        editor.wait_for_status("Feedback sent")
        self.assertEqual(self.payload()["feedback"], "Hello")

    def test_a_sending_can_be_cancelled(self):
        released = threading.Event()
        self.addCleanup(released.set)
        self.server = self.serve(lambda request: released.wait(60) and Answer())
        self.configure(SERVICE_URL=self.server.url)
        editor = self.open_dialog()
        self.write(editor, "Hello")
        editor.click("Send Feedback")
        editor.wait_for_control("Sending feedback…", "push button")
        until(lambda: self.server.requests, "the request to arrive")
        editor.screenshot("27-feedback-sending")
        editor.click("Cancel")
        editor.wait_for_control("Send Feedback", "push button")
        editor.wait_for_status("5 / 5,000")
        editor.click("Cancel")
        editor.wait_until_closed("Give Feedback")

    def test_a_build_without_a_service_says_so(self):
        self.configure(SERVICE_URL="")
        editor = self.open_dialog()
        editor.wait_for_status("This build of Quillabrae has no feedback service configured")
        self.assertEqual(self.server.connections, 0)


if __name__ == "__main__":
    unittest.main()
