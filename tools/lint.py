#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The checks behind `./dev lint`: licence lines, file length, floors, desktop files, texts to
translate, clang-format, clang-tidy.

clang-tidy is the slow one. A source that it found clean is remembered in the user's cache folder by
a hash of everything that could change the verdict: the file, all of our headers that it reaches, how
it is compiled, the rules, and the versions of the packages we build against. A second run, in this
checkout or another, only looks at what changed.
"""

import argparse
import hashlib
import json
import os
import re
import shlex
import shutil
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BUILD = ROOT / "build"
CLEAN = Path(os.environ.get("XDG_CACHE_HOME") or Path.home() / ".cache") / "quillabrae-lint"
FOLDERS = ("src", "tests", "bench", "fuzz")
OURS = rf"^{re.escape(str(ROOT))}/({'|'.join(FOLDERS)})/.*\.(h|cpp)$"
LONGEST_FILE = 500
TOGETHER = 8
SPDX = "// SPDX-License-Identifier: GPL-3.0-or-later"
INCLUDE = re.compile(rb'^\s*#\s*include\s*"([^"]+)"', re.M)


def run(*command):
    return subprocess.run(command, cwd=ROOT, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          text=True, check=False)


def our_files():
    """The C++ files that git knows or would add."""
    listed = run("git", "ls-files", "--cached", "--others", "--exclude-standard", "--", *FOLDERS)
    names = listed.stdout.split("\n") if listed.returncode == 0 else [
        str(path.relative_to(ROOT)) for folder in FOLDERS for path in (ROOT / folder).rglob("*")]
    files = [ROOT / name for name in sorted(set(names)) if name.endswith((".cpp", ".h"))]
    return [file for file in files if file.exists()]


def plain_checks(files):
    faults = []
    for file in files:
        lines = file.read_text(encoding="utf-8").splitlines()
        name = file.relative_to(ROOT)
        if not lines or lines[0] != SPDX:
            faults.append(f"{name}:1: the first line is not the licence line")
        if len(lines) > LONGEST_FILE:
            faults.append(f"{name}: {len(lines)} lines; is it one thing?")
    return faults


def floor_check():
    result = run(sys.executable, "tools/check_includes.py")
    return result.stdout.splitlines() if result.returncode else []


def desktop_check():
    result = run(sys.executable, "tools/check_desktop.py")
    return result.stdout.splitlines() if result.returncode else []


def texts_check():
    """What users read and translators do not see, or a file of translations that fell behind."""
    results = [run(sys.executable, "tools/check_texts.py"),
               run(sys.executable, "tools/translations.py", "check")]
    return [line for result in results if result.returncode for line in result.stdout.splitlines()]


def format_check(files, jobs):
    chunks = [files[i::jobs] for i in range(jobs)]
    with ThreadPoolExecutor(jobs) as pool:
        results = pool.map(
            lambda chunk: run("clang-format", "--dry-run", "--Werror", *map(str, chunk)),
            filter(None, chunks))
    return [line for result in results if result.returncode
            for line in result.stdout.splitlines() if "error:" in line]


def configure():
    """The compilation database and the generated sources that ours include."""
    result = run("cmake", "--preset", "release")
    if result.returncode:
        sys.exit(result.stdout)
    targets = run("ninja", "-C", "build", "-t", "targets", "all").stdout
    generated = re.findall(r"^(\S+_autogen): phony", targets, re.M)
    if generated:
        result = run("ninja", "-C", "build", *generated)
        if result.returncode:
            sys.exit(result.stdout)
    return json.loads((BUILD / "compile_commands.json").read_text())


class Fingerprints:
    """The hash that a verdict of clang-tidy hangs on."""

    def __init__(self):
        packages = [line for line in (ROOT / "packaging/debian-packages.txt").read_text().split("\n")
                    if line and not line.startswith("#")]
        versions = run("dpkg-query", "-W", *sorted(set(packages))).stdout
        rules = "".join(path.read_text() for path in sorted(ROOT.glob("**/.clang-tidy"))
                        if "build" not in path.parts)
        self._common = (versions + rules + Path(__file__).read_text()).encode()
        self._reached = {}

    def of(self, source, command):
        state = hashlib.sha256(self._common + command.replace(str(ROOT), "").encode())
        for file in sorted(self._closure(source)):
            state.update(str(file.relative_to(ROOT)).encode() + b"\0" + file.read_bytes())
        return state.hexdigest()

    def _closure(self, source):
        seen, waiting = set(), [source]
        while waiting:
            file = waiting.pop()
            if file not in seen:
                seen.add(file)
                waiting.extend(self._direct(file))
        return seen

    def _direct(self, file):
        if file not in self._reached:
            names = [name.decode() for name in INCLUDE.findall(file.read_bytes())]
            places = (ROOT / "src", ROOT / "tests", ROOT / "bench", file.parent)
            self._reached[file] = {
                (place / name).resolve() for name in names for place in places
                if (place / name).is_file()}
        return self._reached[file]


class Tidy:
    """Runs clang-tidy over sources that are not known to be clean.

    Most of its time goes into the headers of Qt and GoogleTest, so sources that are compiled alike
    are looked at a handful at a time, as one. Only when they cannot stand in one file together is
    each looked at alone.
    """

    def __init__(self, database):
        self._commands = {Path(entry["file"]): self._arguments(entry) for entry in database}
        self._folder = BUILD / "lint/together"
        shutil.rmtree(self._folder, ignore_errors=True)
        self._folder.mkdir(parents=True)

    @staticmethod
    def _arguments(entry):
        return shlex.split(entry["command"]) if "command" in entry else entry["arguments"]

    def _flags(self, source):
        """How a source is compiled, but for its own name and its object's."""
        arguments = self._commands[source]
        output = arguments.index("-o")
        return tuple(argument for i, argument in enumerate(arguments)
                     if i not in (output, output + 1) and argument not in ("-c", str(source)))

    def batches(self, sources):
        alike = {}
        for source in sources:
            alike.setdefault(self._flags(source), []).append(source)
        return [group[i:i + TOGETHER] for group in alike.values()
                for i in range(0, len(group), TOGETHER)]

    def findings(self, batch):
        """What was said about these sources, and which of them are clean for certain."""
        if len(batch) > 1:
            said = self._together(batch)
            if "clang-diagnostic-error" not in said:
                return [said] if said else [], [] if said else batch
        alone = {source: self._said(BUILD, source) for source in batch}
        return [said for said in alone.values() if said], [s for s in batch if not alone[s]]

    def _together(self, batch):
        folder = self._folder / hashlib.sha256(repr(batch).encode()).hexdigest()[:16]
        folder.mkdir()
        unit = folder / "unit.cpp"
        unit.write_text("".join(f'#include "{source}"\n' for source in batch))
        (folder / "compile_commands.json").write_text(json.dumps([{
            "directory": str(BUILD), "file": str(unit),
            "arguments": [*self._flags(batch[0]), "-c", str(unit)]}]))
        return self._said(folder, unit)

    @staticmethod
    def _said(database_folder, source):
        result = subprocess.run(
            ["clang-tidy", "--quiet", "-p", str(database_folder), f"--header-filter={OURS}",
             "--checks=-bugprone-suspicious-include", "--extra-arg=-Wno-everything",
             str(source)],
            cwd=ROOT, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=False)
        return result.stdout.strip() if result.returncode else ""


def tidy_check(jobs, asked):
    """Looks at the sources that were asked for, or at all of them."""
    fingerprints = Fingerprints()
    CLEAN.mkdir(parents=True, exist_ok=True)
    database = configure()
    stamps = {}
    for entry in database:
        source = Path(entry["file"])
        if BUILD in source.parents or not source.is_relative_to(ROOT):
            continue
        if asked and source not in asked:
            continue
        command = entry.get("command") or shlex.join(entry["arguments"])
        stamp = CLEAN / fingerprints.of(source, command)
        if stamp.exists():
            os.utime(stamp)
        else:
            stamps[source] = stamp

    tidy = Tidy(database)
    found = []
    with ThreadPoolExecutor(jobs) as pool:
        for findings, clean in pool.map(tidy.findings, tidy.batches(stamps)):
            found += [said.replace(f"{ROOT}/", "") for said in findings]
            for source in clean:
                stamps[source].touch()
    forget_old_verdicts()
    return found


def forget_old_verdicts():
    month_ago = time.time() - 30 * 24 * 3600
    for stamp in CLEAN.iterdir():
        if stamp.stat().st_mtime < month_ago:
            stamp.unlink()


def main():
    parser = argparse.ArgumentParser(prog="./dev lint")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--quick", action="store_true", help="leave clang-tidy out")
    parser.add_argument("file", nargs="*", type=Path, help="look at these alone")
    options = parser.parse_args()

    asked = {file.resolve() for file in options.file}
    files = [file for file in our_files() if not asked or file in asked]
    checks = [("licence and length", lambda: plain_checks(files)),
              ("floors", floor_check),
              ("desktop files", desktop_check),
              ("texts", texts_check),
              ("clang-format", lambda: format_check(files, options.jobs))]
    if not options.quick:
        checks.append(("clang-tidy", lambda: tidy_check(options.jobs, asked)))

    failed = False
    for name, check in checks:
        start = time.monotonic()
        findings = check()
        print("\n".join(findings), end="\n" if findings else "")
        verdict = f"{len(findings)} findings" if findings else "clean"
        print(f"lint: {name}: {verdict} ({time.monotonic() - start:.1f} s)", flush=True)
        failed = failed or bool(findings)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
