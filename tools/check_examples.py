#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Follows the walked examples of docs/examples on a copy of the source: writes the files that they
show, applies their patches, builds the test program that they name and runs it as they say.

Only what the example touches is compiled, sources that include a changed header among them; the rest
is linked from the build that is there, which has to be up to date.
"""

import argparse
import json
import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BLOCK = re.compile(r"^```(\w+)(?: (\S+))?\n(.*?)^```$", re.M | re.S)
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.M)
FOLDERS = ("src", "tests")


def run(command, **options):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          check=False, **options)
    if done.returncode:
        sys.exit(f"{shlex.join(map(str, command))}\n{done.stdout}")
    return done.stdout


class Example:
    def __init__(self, page, build, folder):
        self._page, self._build, self._copy = page, build, folder
        for name in FOLDERS:
            shutil.copytree(ROOT / name, folder / name)
        self._before = self._texts()
        blocks = BLOCK.findall(page.read_text())
        for kind, name, text in blocks:
            if kind == "cpp" and name:
                self._write(name, text)
            elif kind == "diff":
                self._change(text)
        steps = "".join(text for kind, _, text in blocks if kind == "sh")
        self.target = re.search(r"--target (\w+)", steps).group(1)
        self.arguments = re.search(rf"bin/{self.target} (.*)", steps).group(1)

    def _write(self, name, text):
        file = self._copy / name
        if file.exists():
            sys.exit(f"{self._page}: {name} is there already")
        file.write_text(text)

    def _change(self, text):
        """Applies hunks, each under "@@" and the file's name where that changes. What a hunk shows
        and takes away has to be in the file once."""
        name = None
        for head, hunk in re.findall(r"^@@ ?(\S*)\n((?:[ +-].*\n)+)", text, re.M):
            name = head or name
            lines = hunk.splitlines(keepends=True)
            old = "".join(line[1:] for line in lines if line[0] in " -")
            new = "".join(line[1:] for line in lines if line[0] in " +")
            file = self._copy / name
            content = file.read_text()
            if content.count(old) != 1:
                sys.exit(f"{self._page}: what is to change in {name} is not there once:\n{old}")
            file.write_text(content.replace(old, new))

    def _texts(self):
        return {file.relative_to(self._copy): file.read_text() for folder in FOLDERS
                for file in (self._copy / folder).rglob("*") if file.suffix in (".h", ".cpp")}

    def _touched(self):
        """The sources that are new or changed, or include something that is."""
        texts = self._texts()
        changed = {name for name, text in texts.items() if self._before.get(name) != text}
        users = {}
        for name, text in texts.items():
            for included in INCLUDE.findall(text):
                for place in ("src", "tests"):
                    users.setdefault(Path(place) / included, set()).add(name)
        waiting = list(changed)
        while waiting:
            new = users.get(waiting.pop(), set()) - changed
            changed |= new
            waiting += new
        return sorted(name for name in changed if name.suffix == ".cpp")

    def test(self, jobs):
        link, objects = self._link_command()
        floor = self.target.removesuffix("_tests")
        # Other floors are not in this program.
        sources = [name for name in self._touched() if name.parts[1] == floor]
        with ThreadPoolExecutor(jobs) as pool:
            made = list(pool.map(self._compile, sources))
        replaced = {f"{name.name}.o" for name in sources}
        kept = [name for name in objects if Path(name).name not in replaced]
        program = self._copy / self.target
        arguments = [part for part in link if part not in objects]
        output = arguments.index("-o") + 1
        arguments[output] = str(program)
        # Ours first: the libraries' own copies of them are then not asked for.
        run(arguments[:output - 1] + made + kept + arguments[output - 1:], cwd=self._build)
        said = run([program, *shlex.split(self.arguments)],
                   env=os.environ | {"QT_QPA_PLATFORM": "offscreen"}, cwd=self._copy)
        return len(sources), re.search(r"\[  PASSED  \] .*", said).group(0)

    def _compile(self, name):
        entry = self._like(name)
        arguments = shlex.split(entry["command"])
        result = str(self._copy / f"{name.name}.o")
        arguments[arguments.index("-o") + 1] = result
        arguments[arguments.index("-c") + 1] = str(self._copy / name)
        for place in FOLDERS:
            arguments = [f"-I{self._copy / place}" if part == f"-I{ROOT / place}" else part
                         for part in arguments]
        arguments = [part for part in arguments if part not in ("-MD",)]
        for option in ("-MT", "-MF"):
            if option in arguments:
                del arguments[arguments.index(option):arguments.index(option) + 2]
        run(arguments, cwd=entry["directory"])
        return result

    def _like(self, name):
        """How a source is compiled, or, if it is new, how its neighbours are."""
        database = json.loads((self._build / "compile_commands.json").read_text())
        neighbours = [entry for entry in database
                      if Path(entry["file"]).parent == (ROOT / name).parent]
        return next((entry for entry in neighbours if Path(entry["file"]) == ROOT / name),
                    neighbours[0])

    def _link_command(self):
        last = run(["ninja", "-C", self._build, "-t", "commands", self.target])
        line = next(line for line in reversed(last.splitlines()) if f"-o bin/{self.target}" in line)
        # CMake puts the linker between two commands that do nothing.
        command = next(part for part in line.split("&&") if f"-o bin/{self.target}" in part)
        arguments = shlex.split(command)
        return arguments, [part for part in arguments if part.endswith(".cpp.o")]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", type=Path, default=ROOT / "build")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("page", nargs="*", type=Path)
    options = parser.parse_args()
    for page in options.page or sorted((ROOT / "docs/examples").glob("*.md")):
        with tempfile.TemporaryDirectory(prefix="quillabrae-example.") as folder:
            example = Example(page, options.build.resolve(), Path(folder))
            count, verdict = example.test(options.jobs)
            print(f"{page.name}: {count} sources compiled, {verdict}")


if __name__ == "__main__":
    main()
