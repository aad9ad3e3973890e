#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Follows the walked examples of docs/examples on a copy of the source: writes the files that they
show, applies their patches, builds the test programs that they name and runs them as they say.

Only what the example touches is compiled: what it adds or changes, and of the floors whose headers it
changes also what includes those. The rest is linked from the build that is there, which has to be up
to date; a case at the end of a list means nothing to floors that do not name it.
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
        self.programs = [(target, re.search(rf"bin/{target} (.*)", steps).group(1))
                         for target in re.findall(r"--target (\w+)", steps)]

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
        """The sources that are new or changed, or include a changed header of their own floor, or
        that several test programs share."""
        texts = self._texts()
        changed = {name for name, text in texts.items() if self._before.get(name) != text}
        users = {}
        for name, text in texts.items():
            for included in INCLUDE.findall(text):
                for place in FOLDERS:
                    users.setdefault(Path(place) / included, set()).add(name)
        touched = set(changed)
        for header in (name for name in changed if name.suffix == ".h"):
            floor = header.parts[1]
            touched |= {name for name in self._reached(header, users)
                        if name.parts[1] in (floor, "support")}
        return sorted(name for name in touched if name.suffix == ".cpp")

    @staticmethod
    def _reached(header, users):
        reached, waiting = {header}, [header]
        while waiting:
            new = users.get(waiting.pop(), set()) - reached
            reached |= new
            waiting += new
        return reached

    def test(self, jobs):
        """How many sources were compiled, and what each program said in the end."""
        links = {target: self._link_command(target) for target, _ in self.programs}
        sources = [name for name in self._touched()
                   if name.parts[0] == "src" or any(self._is_in(name, *links[target], target)
                                                    for target in links)]
        with ThreadPoolExecutor(jobs) as pool:
            made = dict(zip(sources, pool.map(self._compile, sources)))
        return len(sources), [self._run(target, arguments, *links[target], made)
                              for target, arguments in self.programs]

    @staticmethod
    def _is_in(name, link, objects, target):
        """Whether a test program is made of this source."""
        floor = target.removesuffix("_tests")
        if name.parts[0] == "src":
            return any(part.endswith(f"libquillabrae_{name.parts[1]}.a") for part in link)
        if name.parts[1] == "support":
            return any(Path(part).name == f"{name.name}.o" for part in objects)
        return name.parts[1] == floor

    def _run(self, target, arguments, link, objects, made):
        ours = {name: file for name, file in made.items()
                if self._is_in(name, link, objects, target)}
        replaced = {f"{name.name}.o" for name in ours}
        kept = [name for name in objects if Path(name).name not in replaced]
        program = self._copy / target
        command = [part for part in link if part not in objects]
        output = command.index("-o") + 1
        command[output] = str(program)
        # Ours first: the libraries' own copies of them are then not asked for.
        run(command[:output - 1] + list(ours.values()) + kept + command[output - 1:],
            cwd=self._build)
        said = run([program, *shlex.split(arguments)],
                   env=os.environ | {"QT_QPA_PLATFORM": "offscreen"}, cwd=self._copy)
        return re.search(r"\[  PASSED  \] .*", said).group(0)

    def _compile(self, name):
        entry = self._like(name)
        arguments = shlex.split(entry["command"])
        result = str(self._copy / f"{'-'.join(name.parts)}.o")
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

    def _link_command(self, target):
        last = run(["ninja", "-C", self._build, "-t", "commands", target])
        line = next(line for line in reversed(last.splitlines()) if f"-o bin/{target} " in line)
        # CMake puts the linker between two commands that do nothing.
        command = next(part for part in line.split("&&") if f"-o bin/{target} " in part)
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
            count, verdicts = example.test(options.jobs)
            print(f"{page.name}: {count} sources compiled, {', '.join(verdicts)}")


if __name__ == "__main__":
    main()
