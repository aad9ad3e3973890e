# SPDX-License-Identifier: GPL-3.0-or-later
"""Recent projects: the program's own list and the desktop's."""

import os
import unittest

from gi.repository import GLib
from PIL import Image

from case import DeskCase
from desk import until
from editor import store_records

LONG_AGO = 1_000_000_000


def documents_in(file):
    """The desktop's list as GLib reads it, for all of GTK's programs."""
    documents = GLib.BookmarkFile()
    documents.load_from_file(str(file))
    return documents


class DesktopList(DeskCase):
    def test_it_is_told_of_a_saved_project_and_keeps_what_others_noted(self):
        store_records(self.desk)
        file = self.desk.home / ".local/share/recently-used.xbel"
        others = GLib.BookmarkFile()
        others.set_title("file:///far/letter.odt", "A <letter> & more")
        others.set_mime_type("file:///far/letter.odt", "application/vnd.oasis.opendocument.text")
        others.add_application("file:///far/letter.odt", "Writer", "writer %u")
        others.add_group("file:///far/letter.odt", "Office")
        others.to_file(str(file))

        picture = self.desk.home / "boat.png"
        Image.new("RGB", (64, 48), "navy").save(picture)
        editor = self.start(picture)
        editor.wait_for_status("Opened boat.png")
        saved = self.desk.home / "a boat & co.quillabrae"
        self.desk.keys("ctrl+shift+s")
        editor.wait_for_window("Save Quillabrae")
        self.desk.keys("ctrl+a")
        self.desk.type(str(saved.with_suffix("")))
        self.desk.keys("Return")
        editor.wait_for_status(f"Saved {saved.name}", 60)

        uri = saved.as_uri()
        until(lambda: documents_in(file).has_item(uri), "the project in the desktop's list")
        documents = documents_in(file)
        self.assertEqual(documents.get_mime_type(uri), "application/x-quillabrae-project")
        self.assertEqual(documents.get_applications(uri)[0], ["Quillabrae"])
        command = documents.get_application_info(uri, "Quillabrae")[1]
        self.assertEqual(command, f"quillabrae {uri}")
        self.assertEqual(documents.get_size(), 2)
        for uri in others.get_uris()[0]:
            self.assertEqual(documents.get_title(uri), others.get_title(uri))
            self.assertEqual(documents.get_mime_type(uri), others.get_mime_type(uri))
            self.assertEqual(documents.get_applications(uri)[0], ["Writer"])
            self.assertEqual(documents.get_groups(uri)[0], ["Office"])


class FarAway(DeskCase):
    """A link notes when it is followed, as every look at a file behind it does."""

    def setUp(self):
        super().setUp()
        (self.desk.home / "far").mkdir()
        (self.desk.home / "far/boat.quillabrae").mkdir()
        self.link = self.desk.home / "network"
        self.link.symlink_to("far")
        self.forget_visits()

    def forget_visits(self):
        os.utime(self.link, (LONG_AGO, LONG_AGO), follow_symlinks=False)

    def is_visited(self):
        return os.lstat(self.link).st_atime != LONG_AGO

    def test_the_start_visits_no_recent_project(self):
        (self.link / "boat.quillabrae").exists()
        self.assertTrue(self.is_visited(), "the file system does not note when links are followed")
        self.forget_visits()
        recents = [{"title": name, "url": (self.link / f"{name}.quillabrae").as_uri(),
                    "openedAt": "2024-02-29T12:34:56Z"} for name in ("boat", "gone")]
        store_records(self.desk, recents=recents)
        editor = self.start()
        editor.wait_for_window("Quillabrae")
        editor.wait_for_control("boat")
        editor.screenshot("12-recents-far-away")
        self.assertFalse(self.is_visited())
        editor.click("boat")
        until(self.is_visited, "the chosen project to be looked for")


if __name__ == "__main__":
    unittest.main()
