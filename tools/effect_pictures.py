#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Draws the pictures of docs/effects/: each of the originals there with every effect beside it.

    tools/effect_pictures.py [--replay build/bin/quillabrae-replay] [--full FOLDER]

Needs Pillow. `--full` also writes every result whole, as a PNG, for a close look.
"""

import argparse
import json
import subprocess
import tempfile
from pathlib import Path

from PIL import Image, ImageDraw, ImageFont

ROOT = Path(__file__).resolve().parent.parent
FOLDER = ROOT / "docs/effects"
ORIGINALS = ["portrait.jpg", "landscape.jpg", "screenshot.png", "logo.png"]
EFFECTS = [("comicInk", "Ink Press"), ("colorLift", "Color Lift"), ("monochrome", "Monoform"),
           ("posterize", "Pixel Poster"), ("sharpen", "Crisp Edge"), ("bloom", "Soft Light")]
TILE = (320, 320)
GAP = 8
CAPTION = 20
COLUMNS = 4


def results(replay, original, folder):
    """The original and what each effect makes of it, each with its caption."""
    picture = Image.open(original).convert("RGBA")
    layer = folder / f"{original.stem}.png"
    picture.save(layer)
    lines = [{"do": "effects.apply", "effect": effect, "layer": str(layer),
              "to": str(folder / f"{original.stem}-{effect}.png")} for effect, _ in EFFECTS]
    script = "\n".join(json.dumps(line) for line in lines)
    subprocess.run([replay, "--strict", "-"], input=script, text=True, check=True,
                   stdout=subprocess.DEVNULL)
    yield "Original", picture
    for line, (_, title) in zip(lines, EFFECTS):
        yield title, Image.open(line["to"]).convert("RGBA")


def on_paper(picture):
    """The picture over light and dark, so that its edges show on both."""
    paper = Image.new("RGBA", picture.size, (250, 250, 250, 255))
    dark = Image.new("RGBA", (picture.width // 2, picture.height), (38, 40, 46, 255))
    paper.paste(dark, (picture.width - dark.width, 0))
    return Image.alpha_composite(paper, picture).convert("RGB")


def sheet(pictures):
    rows = -(-len(pictures) // COLUMNS)
    width = COLUMNS * (TILE[0] + GAP) + GAP
    height = rows * (TILE[1] + CAPTION + GAP) + GAP
    page = Image.new("RGB", (width, height), (255, 255, 255))
    draw = ImageDraw.Draw(page)
    font = ImageFont.truetype("DejaVuSans.ttf", 13)
    for index, (title, picture) in enumerate(pictures):
        x = GAP + index % COLUMNS * (TILE[0] + GAP)
        y = GAP + index // COLUMNS * (TILE[1] + CAPTION + GAP)
        page.paste(on_paper(picture), (x, y))
        draw.text((x, y + TILE[1] + 3), title, (60, 60, 66), font)
    return page


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--replay", default=ROOT / "build/bin/quillabrae-replay", type=Path)
    parser.add_argument("--full", type=Path)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as temporary:
        folder = options.full or Path(temporary)
        folder.mkdir(exist_ok=True)
        for name in ORIGINALS:
            original = FOLDER / "originals" / name
            page = sheet(list(results(options.replay.resolve(), original, folder)))
            page.save(FOLDER / f"{original.stem}.jpg", quality=70, optimize=True)


if __name__ == "__main__":
    main()
