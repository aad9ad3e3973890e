# SPDX-License-Identifier: GPL-3.0-or-later
"""The real pictures the tests work on, from Debian's wallpaper packages."""

from pathlib import Path

BACKGROUNDS = Path("/usr/share/backgrounds")
# A photograph of 5312 by 2988 pixels, given to the public domain by Clemens Engelhardt.
JPEG = BACKGROUNDS / "seeding_by_Clements_Engelhardt.jpg"
# 3840 by 2160 pixels with an alpha channel.
PNG = BACKGROUNDS / "xfce/xfce-verticals.png"
