#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Keeps the files of translations/ in step with the source.

  update         brings every file there up to date
  check          tells what `update` would change, and what is amiss; says nothing otherwise
  pseudo FOLDER  writes two languages that nobody speaks, made from the source alone: one with
                 accents and longer words (en_XA), and one that runs from right to left too (ar_XB)

docs/translating.md tells how they are used.
"""

import argparse
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
TRANSLATIONS = ROOT / "translations"
PREFIX = "quillabrae_"
# The texts of the source are English, so its own file holds nothing but what counts.
ENGLISH = "en"
QT_TOOLS = "/usr/lib/qt6/bin"

LONGER = 1.4
ACCENTED = str.maketrans(
    "AaBbCcDdEeFfGgHhIiJjKkLlMmNnOoPpQqRrSsTtUuVvWwXxYyZz",
    "ÅåƁƀÇçÐðÉéƑƒĜĝĤĥÎîĴĵĶķĻļṀṁÑñÖöÞþǪǫŔŕŠšŢţÛûṼṽŴŵẊẋÝýŽž")
# What a text says to the program: numbers to come, HTML, a mnemonic, the title of a command in
# braces, the patterns of files.
KEPT = re.compile(r"%L?\d+|%L?n|</?[a-z][^>]*>|&[a-z]+;|&(?=\w)|\{[^}]*\}|\(\*[^)]*\)")
FILLER = "ẋ ŵöŕðš ţö ƒîļļ ţĥé ļîñé"
PSEUDO = ("en_XA", "ar_XB")
# A letter that runs from right to left at the start and the end takes the whole text with it.
FIRST_LETTER, LAST_LETTER = "א", "ת"


def tool(name):
    return shutil.which(name, path=QT_TOOLS) or shutil.which(name) or sys.exit(
        f"{name} is missing: it is in qt6-l10n-tools")


def lupdate(file, language):
    """Brings one file up to date. Returns what there was to complain of."""
    forms = ["-pluralonly"] if language == ENGLISH else []
    done = subprocess.run(
        [tool("lupdate"), "-silent", *forms, "-no-obsolete", "-locations", "none",
         "-source-language", "en", "-target-language", language,
         "-I", str(ROOT / "src"), str(ROOT / "src"), "-ts", str(file)],
        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    # Where it loses track of namespaces, a class of texts still goes by its own name.
    return [line.replace(f"{ROOT}/", "") for line in done.stdout.splitlines()
            if line.strip() and "Qualifying with unknown" not in line]


def language_of(file):
    return file.stem.removeprefix(PREFIX)


def files():
    return sorted(TRANSLATIONS.glob(f"{PREFIX}*.ts"))


def unfinished(file):
    messages = ElementTree.parse(file).getroot().iter("message")
    return [message.findtext("source") for message in messages
            if message.find("translation").get("type") == "unfinished"]


def check():
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        for file in files():
            fresh = Path(folder) / file.name
            shutil.copy(file, fresh)
            complaints = lupdate(fresh, language_of(file))
            faults += [line for line in complaints if line not in faults]
            if fresh.read_bytes() != file.read_bytes():
                faults.append(f"{file.relative_to(ROOT)} is out of step with the source: run "
                              "tools/translations.py update")
    english = TRANSLATIONS / f"{PREFIX}{ENGLISH}.ts"
    faults += [f"{english.relative_to(ROOT)}: not in English yet: {text}"
               for text in unfinished(english)]
    return faults


def pseudo(text, language):
    """The text with accents, as much longer as translations get, in brackets that show its ends."""
    parts, end, letters = [], 0, 0
    for kept in [*KEPT.finditer(text), None]:
        plain = text[end:kept.start()] if kept else text[end:]
        letters += len(plain)
        parts.append(plain.translate(ACCENTED))
        if kept:
            parts.append(kept.group())
            end = kept.end()
    # The brackets are a part of what is added.
    missing = max(0, round(letters * (LONGER - 1)) - 2)
    filler = (FILLER * (missing // len(FILLER) + 1))[:missing]
    first, last = (FIRST_LETTER, LAST_LETTER) if language == "ar_XB" else ("[", "]")
    return f"{first}{''.join(parts)}{filler}{last}"


def write_pseudo(folder):
    folder.mkdir(parents=True, exist_ok=True)
    for language in PSEUDO:
        with tempfile.TemporaryDirectory() as place:
            fresh = Path(place) / "fresh.ts"
            lupdate(fresh, language)
            tree = ElementTree.parse(fresh)
        for message in tree.getroot().iter("message"):
            words = pseudo(message.findtext("source"), language)
            translation = message.find("translation")
            translation.attrib.pop("type", None)
            forms = list(translation)
            for form in forms:
                form.text = words
            if not forms:
                translation.text = words
        made = ElementTree.tostring(tree.getroot(), encoding="utf-8", xml_declaration=True)
        file = folder / f"{PREFIX}{language}.ts"
        # What did not change is not built again.
        if not file.exists() or file.read_bytes() != made:
            file.write_bytes(made)


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    commands = parser.add_subparsers(dest="command", required=True)
    commands.add_parser("update")
    commands.add_parser("check")
    commands.add_parser("pseudo").add_argument("folder", type=Path)
    options = parser.parse_args()
    if options.command == "pseudo":
        write_pseudo(options.folder)
        return 0
    if options.command == "update":
        for file in files():
            for complaint in lupdate(file, language_of(file)):
                print(complaint)
        return 0
    faults = check()
    print("\n".join(faults), end="\n" if faults else "")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
