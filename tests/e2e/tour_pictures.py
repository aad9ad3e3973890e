#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Makes the tour's pictures of the program from what test_screens has taken at two pixels a point.

Run it after `./dev test` when the windows look different from before.
"""

from pathlib import Path

from PIL import Image

from screens import SCREENS

PICTURES = Path(__file__).resolve().parents[2] / "src/shell/quickstart/pictures"
# Each picture's parts of screens in points, one under the other, and the width it is shown at.
WHOLE = None
PAGES = {"light": (0xfb, 0xfb, 0xfc), "dark": (0x2d, 0x30, 0x35)}
PARTS = {
    "workspace": ([("editor", WHOLE)], 456),
    "layers": ([("editor-history", (918, 386, 1154, 767))], 236),
    "selection": ([("editor-selection", (214, 160, 914, 560))], 516),
    "saving": ([("editor-unsaved", (0, 0, 760, 110)), ("dialog-save-as", (0, -108, 760, 0))], 516),
}


def take(screen, theme, part):
    with Image.open(SCREENS / f"{screen}-{theme}-2x.png") as shot:
        picture = shot.convert("RGB")
    if part is WHOLE:
        return picture
    left, top, right, bottom = (2 * edge for edge in part)
    if bottom == 0:
        # Counted from the lower edge.
        top, bottom = picture.height + top, picture.height
    return picture.crop((left, top, right, bottom))


def make(name, theme):
    parts, width = PARTS[name]
    pictures = [take(screen, theme, part) for screen, part in parts]
    gap = 24 if len(pictures) > 1 else 0
    wide = max(picture.width for picture in pictures)
    high = sum(picture.height + gap for picture in pictures) - gap
    # What is between them has the colour of the page.
    whole = Image.new("RGB", (wide, high), PAGES[theme])
    top = 0
    for picture in pictures:
        whole.paste(picture, (0, top))
        top += picture.height + gap
    size = (2 * width, round(2 * width * high / wide))
    small = whole.resize(size, Image.LANCZOS) if size != whole.size else whole
    file = PICTURES / theme / f"{name}.png"
    file.parent.mkdir(parents=True, exist_ok=True)
    # 256 colours are plenty for a window, and a third of the bytes.
    small.quantize(256, Image.Quantize.MEDIANCUT, dither=Image.Dither.NONE).save(file, optimize=True)
    print(f"{file.relative_to(PICTURES)}: {file.stat().st_size} bytes")


if __name__ == "__main__":
    for a_theme in ("light", "dark"):
        for a_name in PARTS:
            make(a_name, a_theme)
