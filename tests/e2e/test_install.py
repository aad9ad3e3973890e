# SPDX-License-Identifier: GPL-3.0-or-later
"""The program as installed from its build, wherever that is."""

import os
import subprocess
import unittest

from PIL import Image

from bus import NAME, launch, tell_screen
from case import DeskCase
from desk import until
from editor import PROGRAM, Editor

BUILD = PROGRAM.parent.parent
SIZES = (16, 22, 24, 32, 48, 64, 128, 256)
FILES = {
    "bin/quillabrae", "libexec/quillabrae/quillabrae-codec",
    f"share/applications/{NAME}.desktop", f"share/dbus-1/services/{NAME}.service",
    f"share/metainfo/{NAME}.metainfo.xml", f"share/mime/packages/{NAME}.xml",
    "share/man/man1/quillabrae.1",
    f"share/icons/hicolor/scalable/apps/{NAME}.svg",
    f"share/icons/hicolor/symbolic/apps/{NAME}-symbolic.svg",
    "share/icons/hicolor/scalable/mimetypes/application-x-quillabrae-project.svg",
    *(f"share/icons/hicolor/{size}x{size}/apps/{NAME}.png" for size in SIZES)}


class Installing(DeskCase):
    def install_to(self, *options, **environment):
        done = subprocess.run(
            ["cmake", "--install", str(BUILD), *map(str, options)], check=False, text=True,
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, env=os.environ | environment)
        self.assertEqual(done.returncode, 0, done.stdout)

    def assert_holds_all(self, prefix):
        self.assertEqual({str(file.relative_to(prefix)) for file in prefix.rglob("*")
                          if not file.is_dir()}, FILES)
        for program in ("bin/quillabrae", "libexec/quillabrae/quillabrae-codec"):
            self.assertEqual((prefix / program).stat().st_mode & 0o777, 0o755)

    def commands(self, prefix):
        """What the bus and menus start, as it is written."""
        texts = [(prefix / file).read_text() for file in
                 (f"share/dbus-1/services/{NAME}.service", f"share/applications/{NAME}.desktop")]
        return [[line.removeprefix("Exec=") for line in text.splitlines()
                 if line.startswith("Exec=")] for text in texts]

    def test_it_all_goes_below_any_prefix_and_starts_from_there(self):
        # A user's own, where sessions look for entries beside the system's.
        prefix = self.desk.home / ".local"
        before = {file for file in prefix.rglob("*") if not file.is_dir()}
        self.assertEqual(before, set())
        self.install_to("--prefix", prefix)
        self.assert_holds_all(prefix)
        program = prefix / "bin/quillabrae"
        self.assertEqual(self.commands(prefix), [
            [str(program)],
            [f"{program} %U", f"{program} quillabrae://action/new-project",
             f"{program} quillabrae://action/open-file"]])
        self.assertEqual(self.desk.tool("desktop-file-validate",
                                        prefix / f"share/applications/{NAME}.desktop"), "")
        bus = tell_screen(self.desk)
        # One whose codec runs in the helper.
        picture = self.desk.home / "dots.jp2"
        Image.effect_noise((64, 48), 90).save(self.desk.home / "dots.pgm")
        self.desk.tool("opj_compress", "-i", self.desk.home / "dots.pgm", "-o", picture)
        bus.open(picture)
        editor = self.running_from(bus, program)
        editor.wait_for_window("dots - Quillabrae v")
        editor.wait_for_status("Opened dots.jp2")
        self.desk.keys("ctrl+q")
        until(lambda: not bus.is_owned(), "the program to end")
        launch(self.desk)
        self.running_from(bus, program).wait_for_window("Welcome to Quillabrae")

    def running_from(self, bus, program):
        editor = Editor.running(self.desk, bus.owner_pid())
        self.running.append(editor)
        self.assertEqual(os.readlink(editor.process.folder / "exe"), str(program))
        return editor

    def test_a_staging_folder_is_in_no_file(self):
        stage = self.desk.folder / "stage"
        self.install_to("--prefix", "/usr", DESTDIR=str(stage))
        self.assertEqual([path.name for path in stage.iterdir()], ["usr"])
        self.assert_holds_all(stage / "usr")
        self.assertEqual(self.commands(stage / "usr"), [
            ["/usr/bin/quillabrae"],
            ["quillabrae %U", "quillabrae quillabrae://action/new-project",
             "quillabrae quillabrae://action/open-file"]])

    def test_a_prefix_of_odd_letters_is_quoted(self):
        prefix = self.desk.folder / 'an "odd" 50% $folder'
        self.install_to("--prefix", prefix)
        self.assert_holds_all(prefix)
        quoted = f'"{self.desk.folder}/an \\"odd\\" 50% \\$folder/bin/quillabrae"'
        service, (entry, *_) = self.commands(prefix)
        self.assertEqual(service, [quoted])
        self.assertEqual(entry, quoted.replace("\\", "\\\\").replace("%", "%%") + " %U")


if __name__ == "__main__":
    unittest.main()
