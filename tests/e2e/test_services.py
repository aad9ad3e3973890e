# SPDX-License-Identifier: GPL-3.0-or-later
"""What the whole program says to servers, and when."""

import shutil
import unittest

import photos
from services import ServicesCase


class Services(ServicesCase):
    def test_the_program_is_what_its_build_says(self):
        self.configure(VERSION="9.8.7")
        drawing = self.desk.home / "stripes.png"
        shutil.copy(photos.PNG, drawing)
        self.start(drawing).wait_for_window("stripes - Quillabrae v9.8.7")


if __name__ == "__main__":
    unittest.main()
