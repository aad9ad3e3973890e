# SPDX-License-Identifier: GPL-3.0-or-later
"""Reads a project package with nothing of ours: Python's json and base64, and Pillow."""

import base64
import io
import json

from PIL import Image

Image.MAX_IMAGE_PIXELS = None


def read(folder):
    return json.loads((folder / "project.json").read_text(encoding="utf-8"))


def pixels(layer):
    """A layer's pixels as straight RGBA."""
    return Image.open(io.BytesIO(base64.b64decode(layer["bitmapPNGData"]))).convert("RGBA")
