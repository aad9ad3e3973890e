# SPDX-License-Identifier: GPL-3.0-or-later
"""Recent projects: the program's own list and the desktop's."""

import ctypes
import os
import unittest

from gi.repository import GLib
from PIL import Image

from case import DeskCase
from desk import until
from editor import store_records

LONG_AGO = 1_000_000_000


LETTER = "file:///far/letter.odt"
OTHERS = f"""<?xml version="1.0" encoding="UTF-8"?>
<xbel version="1.0"
      xmlns:bookmark="http://www.freedesktop.org/standards/desktop-bookmarks"
      xmlns:mime="http://www.freedesktop.org/standards/shared-mime-info">
  <bookmark href="{LETTER}" added="2024-01-01T00:00:00Z" modified="2024-01-02T00:00:00Z" visited="2024-01-02T00:00:00Z">
    <title>A &lt;letter&gt; &amp; more</title>
    <info>
      <metadata owner="http://freedesktop.org">
        <mime:mime-type type="application/vnd.oasis.opendocument.text"/>
        <bookmark:groups><bookmark:group>Office</bookmark:group></bookmark:groups>
        <bookmark:applications>
          <bookmark:application name="Writer" exec="&apos;writer %u&apos;" modified="2024-01-02T00:00:00Z" count="3"/>
        </bookmark:applications>
      </metadata>
    </info>
  </bookmark>
</xbel>
"""


class Documents:
    """The desktop's list as GLib reads it, which all of GTK's programs stand on."""

    glib = ctypes.CDLL("libglib-2.0.so.0")

    def __init__(self, file):
        self._list = ctypes.c_void_p(self._call("new", ctypes.c_void_p))
        if not self._call("load_from_file", ctypes.c_int, os.fsencode(file), None):
            raise ValueError(f"GLib cannot read {file}")

    def _call(self, name, result, *arguments):
        function = getattr(self.glib, f"g_bookmark_file_{name}")
        function.restype = result
        return function(*([self._list] if name != "new" else []), *arguments)

    def _text(self, name, uri):
        return self._call(name, ctypes.c_char_p, uri.encode(), None).decode()

    def __len__(self):
        return self._call("get_size", ctypes.c_int)

    def __contains__(self, uri):
        return bool(self._call("has_item", ctypes.c_int, uri.encode()))

    def title(self, uri):
        return self._text("get_title", uri)

    def mime_type(self, uri):
        return self._text("get_mime_type", uri)

    def has_group(self, uri, group):
        return bool(self._call("has_group", ctypes.c_int, uri.encode(), group.encode(), None))

    def use(self, uri, program):
        """The command and the count that a program has noted."""
        command, count = ctypes.c_char_p(), ctypes.c_uint()
        known = self._call("get_application_info", ctypes.c_int, uri.encode(), program.encode(),
                           ctypes.byref(command), ctypes.byref(count), None, None)
        return (command.value.decode(), count.value) if known else None


class DesktopList(DeskCase):
    def test_it_is_told_of_a_saved_project_and_keeps_what_others_noted(self):
        store_records(self.desk)
        file = self.desk.home / ".local/share/recently-used.xbel"
        file.write_text(OTHERS)

        picture = self.desk.home / "boat.png"
        Image.new("RGB", (64, 48), "navy").save(picture)
        editor = self.start(picture)
        editor.wait_for_window("boat - Quillabrae v")
        editor.wait_for_status("Opened boat.png")
        saved = self.desk.home / "a boat & co; [1].quillabrae"
        editor.save_as(saved)

        uri = GLib.filename_to_uri(str(saved), None)
        until(lambda: uri in Documents(file), "the project in the desktop's list")
        documents = Documents(file)
        self.assertEqual(documents.mime_type(uri), "application/x-quillabrae-project")
        self.assertEqual(documents.use(uri, "Quillabrae"), (f"quillabrae {uri}", 1))
        self.assertEqual(len(documents), 2)
        self.assertEqual(documents.title(LETTER), "A <letter> & more")
        self.assertEqual(documents.mime_type(LETTER), "application/vnd.oasis.opendocument.text")
        self.assertEqual(documents.use(LETTER, "Writer"), (f"writer {LETTER}", 3))
        self.assertTrue(documents.has_group(LETTER, "Office"))


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
        editor.wait_for_window("Welcome to Quillabrae")
        editor.wait_for_control("boat")
        editor.screenshot("12-recents-far-away")
        self.assertFalse(self.is_visited())
        editor.click("boat")
        until(self.is_visited, "the chosen project to be looked for")


if __name__ == "__main__":
    unittest.main()
