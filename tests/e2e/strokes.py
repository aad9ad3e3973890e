# SPDX-License-Identifier: GPL-3.0-or-later
"""What a stroke has to look like, worked out slowly from the definition of its edge."""

import math

from PIL import Image, ImageDraw


def distance(point, start, end):
    """From a point to a line segment."""
    dx, dy = end[0] - start[0], end[1] - start[1]
    length = dx * dx + dy * dy
    t = 0 if length == 0 else ((point[0] - start[0]) * dx + (point[1] - start[1]) * dy) / length
    t = min(max(t, 0), 1)
    return math.hypot(point[0] - start[0] - t * dx, point[1] - start[1] - t * dy)


def soft_passes(width, hardness):
    """The (width, alpha) of each pass of a soft stroke, widest first."""
    count = min(max(math.ceil(2 * width), 14), 56)
    core = min(hardness / 100, 0.98)
    falloff = max(1 - core, 0.001)
    reached, passes = 0.0, []
    for i in range(count):
        t = 1 - (i + 0.5) / count
        u = min(max((1 - t) / falloff, 0), 1)
        target = u * u * (3 - 2 * u) if t > core else 1.0
        if reached + 0.001 < target:
            passes.append((max(width * t, 0.75), (target - reached) / max(1 - reached, 0.001)))
            reached = target
    return passes


def soft_coverage(away, passes):
    """How much a single soft segment covers at a distance from its centre line."""
    left = 1.0
    for width, alpha in passes:
        # A pass's own edge is anti-aliased over one pixel.
        left *= 1 - alpha * min(max(width / 2 - away + 0.5, 0), 1)
    return 1 - left


def alpha_after_erasing(point, path, width, hardness):
    """What is left, 0 to 255, of an opaque pixel when an eraser has gone along a path.

    The first point is a dot, and each further one a segment of its own over what is there.
    """
    passes = soft_passes(width, hardness)
    left = 1.0
    for start, end in zip([path[0], *path], path):
        left *= 1 - soft_coverage(distance(point, start, end), passes)
    return 255 * left


def band(size, path, width):
    """A mask that is white within half of `width` of a path and black elsewhere."""
    mask = Image.new("L", size, 0)
    draw = ImageDraw.Draw(mask)
    radius = width / 2
    draw.line(path, fill=255, width=round(width))
    for x, y in path:
        draw.ellipse((x - radius, y - radius, x + radius, y + radius), fill=255)
    return mask
