# SPDX-License-Identifier: GPL-3.0-or-later
"""A project to be looked at: an evening by a lake, drawn here, in five layers."""

import base64
import io
import json
import math
import uuid

from PIL import Image, ImageDraw, ImageFilter

SIZE = (1200, 800)
HORIZON = 500
SUN = (820, 360, 110)


def layers():
    """Names and pictures from the bottom up."""
    return [("Sky", sky()), ("Sun", sun()), ("Hills", hills()), ("Lake", lake()), ("Reeds", reeds())]


def empty():
    return Image.new("RGBA", SIZE, (0, 0, 0, 0))


def between(first, last, part):
    return tuple(round(a + (b - a) * part) for a, b in zip(first, last))


def sky():
    picture = Image.new("RGBA", SIZE, "white")
    draw = ImageDraw.Draw(picture)
    for y in range(SIZE[1]):
        draw.line([(0, y), (SIZE[0], y)],
                  fill=between((38, 48, 92), (255, 176, 120), min(y / HORIZON, 1) ** 1.2) + (255,))
    return picture


def sun():
    x, y, radius = SUN
    glow = Image.new("RGBA", SIZE, (255, 214, 150, 0))
    ImageDraw.Draw(glow).ellipse([x - 200, y - 200, x + 200, y + 200], fill=(255, 214, 150, 110))
    picture = glow.filter(ImageFilter.GaussianBlur(50))
    large = Image.new("L", (4 * radius, 4 * radius), 0)
    ImageDraw.Draw(large).ellipse([0, 0, 4 * radius - 1, 4 * radius - 1], fill=255)
    disc = large.resize((2 * radius, 2 * radius), Image.LANCZOS)
    picture.paste((255, 226, 150, 255), (x - radius, y - radius), disc)
    return picture


def ridge(base, height, wave, phase):
    points = [(x, base - height * (0.6 + 0.4 * math.sin(x / wave + phase)
                                   + 0.18 * math.sin(x / 37.0 + 2 * phase)))
              for x in range(0, SIZE[0] + 1, 4)]
    return [(0, SIZE[1]), *points, (SIZE[0], SIZE[1])]


def smooth(paint):
    """What `paint` draws, with smooth edges; it is given a canvas of twice the size."""
    large = Image.new("RGBA", (2 * SIZE[0], 2 * SIZE[1]), (0, 0, 0, 0))
    paint(ImageDraw.Draw(large))
    return large.resize(SIZE, Image.LANCZOS)


def doubled(points):
    return [(2 * x, 2 * y) for x, y in points]


def hills():
    def paint(draw):
        for base, height, wave, phase, color in ((500, 150, 190, 0.4, (94, 72, 122, 255)),
                                                 (505, 95, 120, 2.1, (58, 50, 96, 255))):
            draw.polygon(doubled(ridge(base, height, wave, phase)), fill=color)
    return smooth(paint)


def lake():
    picture = empty()
    draw = ImageDraw.Draw(picture)
    for y in range(HORIZON, SIZE[1]):
        part = (y - HORIZON) / (SIZE[1] - HORIZON)
        draw.line([(0, y), (SIZE[0], y)], fill=between((214, 138, 122), (40, 46, 88), part) + (255,))
        if (y // 7) % 2 == 0 and part < 0.8:
            half = SUN[2] * (1 - part) * (0.75 + 0.25 * math.sin(y / 9))
            draw.line([(SUN[0] - half, y), (SUN[0] + half, y)], fill=(255, 214, 158, 255))
    return picture


def reeds():
    def paint(draw):
        for index in range(46):
            x = 30 + 9 * index + 14 * math.sin(index * 1.7)
            height = 170 + 110 * math.sin(index * 2.3) - 3 * index
            lean = 26 * math.sin(index * 0.9)
            stalk = [(x + lean * t * t, SIZE[1] - height * t) for t in (0, 0.25, 0.5, 0.75, 1)]
            draw.line(doubled(stalk), fill=(22, 26, 46, 255), width=7, joint="curve")
            top = stalk[-1]
            if index % 3 == 0:
                draw.ellipse([2 * top[0] - 8, 2 * top[1] - 34, 2 * top[0] + 8, 2 * top[1] + 22],
                             fill=(66, 40, 44, 255))
    return smooth(paint)


def png(picture):
    buffer = io.BytesIO()
    picture.save(buffer, "png")
    return base64.b64encode(buffer.getvalue()).decode()


def save(folder, **fields):
    """Writes the project as a package; `fields` are more of its record's."""
    stack = [{"id": str(uuid.uuid4()).upper(), "name": name, "isVisible": True, "isLocked": False,
              "opacity": 1, "bitmapPNGData": png(picture)} for name, picture in layers()]
    project = {"id": str(uuid.uuid4()).upper(), "title": folder.stem, "canvasWidth": SIZE[0],
               "canvasHeight": SIZE[1], "resolutionDPI": 96, "selectedLayerID": stack[-1]["id"],
               "isCanvasSelected": False, "layers": stack, "lastModified": "2026-01-01T12:00:00Z"}
    folder.mkdir(parents=True)
    (folder / "project.json").write_text(json.dumps(project | fields), encoding="utf-8")
    return folder
