#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Looks at everything a desktop reads of the program, with the desktop's own tools, and whether all
of it and the code go by one id. Prints what is wrong; says nothing otherwise.
"""

import re
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
PACKAGING = ROOT / "packaging"
ICONS = PACKAGING / "icons"
IDENTITY = ROOT / "src/platform/ApplicationIdentity.h"
LINKS = ROOT / "src/platform/ProgramLink.h"
# Stand-ins for what the build fills in. A day and a version that hold for any release.
FILLED_IN = {"QUILLABRAE_HOMEPAGE": "https://quillabrae.example",
             "QUILLABRAE_SCREENSHOTS_URL": "https://quillabrae.example/images",
             "PROJECT_VERSION": "0.1.0", "QUILLABRAE_RELEASE_DATE": "2026-01-01",
             "QUILLABRAE_PROGRAM": "/usr/bin/quillabrae"}
# The id keeps its capital letters: the clipboard's own type is named by it as well.
ACCEPTED = {"cid-contains-uppercase-letter"}


def run(*command):
    done = subprocess.run(list(map(str, command)), stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, check=False)
    return done.returncode, done.stdout


def filled(template):
    return re.sub(r"@(\w+)@", lambda match: FILLED_IN[match.group(1)], template.read_text())


def constant(name, header=IDENTITY):
    return re.search(rf'{name}(?: = QStringLiteral)?\("([^"]+)"\)', header.read_text()).group(1)


def complaints(what, *command):
    status, said = run(*command)
    lines = [line for line in said.splitlines() if line.strip()]
    return [f"{what}: {line}" for line in lines or ["refused"]] if status or lines else []


def check_desktop_file(id_):
    return complaints("desktop file", "desktop-file-validate", PACKAGING / f"{id_}.desktop")


def check_metainfo(id_, folder):
    file = folder / f"{id_}.metainfo.xml"
    file.write_text(filled(PACKAGING / f"{id_}.metainfo.xml.in"))
    _, said = run("appstreamcli", "validate", "--no-net", "--pedantic", "--no-color", file)
    findings = re.findall(r"^([EWIP]): \S+?:(?:[\d~]+:)? (\S+)", said, re.M)
    wrong = [f"metainfo: {level}: {tag}" for level, tag in findings if tag not in ACCEPTED]
    return wrong or ([] if "successful" in said else [f"metainfo: {said.strip()}"])


def check_xml(folder):
    files = [*PACKAGING.glob("*.xml"), *ICONS.glob("*.svg"), *folder.glob("*.xml")]
    return complaints("XML", "xmllint", "--noout", *files)


def check_mime_type(id_, folder):
    database = folder / "data/mime"
    (database / "packages").mkdir(parents=True)
    (database / "packages" / f"{id_}.xml").write_text((PACKAGING / f"{id_}.xml").read_text())
    status, said = run("update-mime-database", "-V", database)
    named = constant("projectType")
    wrong = [f"MIME type: {said.strip()}"] if status or "rror" in said else []
    if not (database / f"{named}.xml").exists():
        wrong.append(f"MIME type: {named} is not what the code calls it")
    return wrong


def check_icons(id_):
    wrong = []
    for size in (16, 22, 24, 32, 48, 64, 128, 256):
        head = (ICONS / f"{id_}-{size}.png").read_bytes()[:24]
        if head[16:24] != size.to_bytes(4, "big") * 2:
            wrong.append(f"icons: {id_}-{size}.png is of another size; run tools/icons")
    return wrong


def check_names(id_):
    """The places where one file names another, or the code a file."""
    entry = (PACKAGING / f"{id_}.desktop").read_text()
    service = filled(PACKAGING / f"{id_}.service.in")
    metainfo = filled(PACKAGING / f"{id_}.metainfo.xml.in")
    delegate = (ROOT / "src/shell/app/AppDelegate.cpp").read_text()
    actions = re.search(r"^Actions=(.*)$", entry, re.M).group(1).strip(";").split(";")
    wanted = [
        (f"Icon={id_}\n" in entry, "the desktop file's icon"),
        (f"StartupWMClass={id_}\n" in entry, "the desktop file's StartupWMClass"),
        (constant("projectType") + ";" in entry, "the desktop file's project type"),
        (f"x-scheme-handler/{constant('programLinkScheme', LINKS)};" in entry, "the desktop file's scheme"),
        (f"Name={id_}\n" in service, "the bus service's name"),
        (f"<id>{id_}</id>" in metainfo, "the metainfo's id"),
        (f">{id_}.desktop</launchable>" in metainfo, "the metainfo's desktop file"),
        (f'<dbus type="session">{id_}</dbus>' in metainfo, "the metainfo's bus name"),
    ] + [(f'"{action}"' in delegate, f"the action {action} in the code") for action in actions]
    return [f"one id: {what} differs" for is_right, what in wanted if not is_right]


def main():
    id_ = constant("applicationId")
    with tempfile.TemporaryDirectory(prefix="quillabrae-desktop.") as name:
        folder = Path(name)
        findings = (check_desktop_file(id_) + check_metainfo(id_, folder) + check_xml(folder) +
                    check_mime_type(id_, folder) + check_icons(id_) + check_names(id_))
    print("\n".join(findings), end="\n" if findings else "")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
