#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Holds src/ to the floors of docs/architecture.md.

The table there is the only list of floors: a row gives the number and the folder. A file may
include its own folder and folders with a lower number, by full path from src/. Below the canvas no
Qt Widgets header may appear, and in the canvas only in the files of its widget.
"""

import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
ROW = re.compile(r"^\|\s*(\d+)\s*\|\s*`([\w.]+)/?`")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^">]+)[">]')


def floors():
    text = (ROOT / "docs/architecture.md").read_text(encoding="utf-8")
    rows = filter(None, (ROW.match(line) for line in text.splitlines()))
    return {row.group(2): int(row.group(1)) for row in rows}


def widget_headers():
    """The names of Qt's widget headers on this system, such as "QWidget"."""
    folders = [*Path("/usr/include").glob("*/qt6/QtWidgets"), Path("/usr/include/qt6/QtWidgets")]
    names = {entry.name for folder in folders if folder.is_dir() for entry in folder.iterdir()}
    return names | {"QtWidgets"}


def faults(file, floor_of, widgets):
    parts = file.relative_to(ROOT / "src").parts
    folder = parts[0]
    if folder not in floor_of:
        yield 1, f"src/{folder} is on no floor of docs/architecture.md"
        return
    floor = floor_of[folder]
    may_use_widgets = floor > floor_of["canvas"] or (
        folder == "canvas" and "Widget" in file.stem)
    for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
        include = INCLUDE.match(line)
        if not include:
            continue
        name = include.group(2)
        if include.group(1) == "<":
            if not may_use_widgets and (name in widgets or name.startswith("QtWidgets/")):
                yield number, f"<{name}> belongs to Qt Widgets, which has no place in {folder}/"
            continue
        target = name.split("/")[0]
        if name.startswith(("moc_", "ui_")) or name.endswith(".moc"):
            continue
        if "/" not in name:
            yield number, f'"{name}" does not name its floor: write "{folder}/{name}"'
        elif target not in floor_of:
            yield number, f'"{name}" is on no floor'
        elif target != folder and floor_of[target] >= floor:
            yield number, f'"{name}" is on floor {floor_of[target]}, {folder}/ on floor {floor}'


def main():
    floor_of = floors()
    if "canvas" not in floor_of:
        sys.exit("docs/architecture.md has no table of floors")
    widgets = widget_headers()
    if "QWidget" not in widgets:
        sys.exit("the Qt Widgets headers are not installed: run ./dev setup")
    failed = False
    for file in sorted((ROOT / "src").rglob("*")):
        if file.suffix not in (".h", ".cpp"):
            continue
        for number, fault in faults(file, floor_of, widgets):
            failed = True
            print(f"{file.relative_to(ROOT)}:{number}: {fault}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
