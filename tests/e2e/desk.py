# SPDX-License-Identifier: GPL-3.0-or-later
"""A private desktop to run the editor on: X server, window manager, session bus and home folder.

Everything a Desk starts is a descendant of this process, also what its children leave behind, and
is ended by its own process number when the desk closes.
"""

import ctypes
import os
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
PR_SET_CHILD_SUBREAPER = 36


class Timeout(Exception):
    pass


def until(question, what, seconds=20.0, pause=0.05):
    """The first true answer to `question`; raises Timeout naming `what` when none comes."""
    end = time.monotonic() + seconds
    while True:
        answer = question()
        if answer:
            return answer
        if time.monotonic() > end:
            raise Timeout(f"waited {seconds:g} s for {what}")
        time.sleep(pause)


def descendants(pid):
    """The process numbers of everything that runs below `pid`."""
    parents = {}
    for entry in Path("/proc").iterdir():
        if entry.name.isdigit():
            try:
                stat = (entry / "stat").read_text()
            except OSError:
                continue
            parents[int(entry.name)] = int(stat.rpartition(")")[2].split()[1])
    found, waiting = [], [pid]
    while waiting:
        parent = waiting.pop()
        children = [child for child, its_parent in parents.items() if its_parent == parent]
        found += children
        waiting += children
    return found


class Desk:
    """Use as a context. `environment` is what a program on this desk has to be started with."""

    def __init__(self, size=(1400, 1000)):
        self.size = size
        self._bystanders = set()
        self._spawned = []

    def __enter__(self):
        # Orphans come to us instead of to init, so that closing finds them.
        ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
        self._bystanders = set(descendants(os.getpid()))
        self.folder = Path(tempfile.mkdtemp(prefix="quillabrae-desk."))
        self.home = self.folder / "home"
        self.environment = self._environment()
        try:
            self._start_bus()
            self.start_screen()
        except BaseException:
            self.__exit__(None, None, None)
            raise
        return self

    def __exit__(self, *_):
        for deadline, number in ((5, signal.SIGTERM), (5, signal.SIGKILL)):
            ours = set(descendants(os.getpid())) - self._bystanders
            for pid in ours:
                try:
                    os.kill(pid, number)
                except ProcessLookupError:
                    pass
            end = time.monotonic() + deadline
            while set(descendants(os.getpid())) - self._bystanders and time.monotonic() < end:
                self._reap()
                time.sleep(0.02)
        for process in self._spawned:
            process.poll()
        shutil.rmtree(self.folder, ignore_errors=True)

    @staticmethod
    def _reap():
        try:
            while os.waitpid(-1, os.WNOHANG)[0]:
                pass
        except ChildProcessError:
            pass

    def _environment(self):
        inherited = {name: value for name, value in os.environ.items()
                     if name in ("PATH", "LANG", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS")}
        places = {"HOME": self.home, "XDG_CONFIG_HOME": self.home / ".config",
                  "XDG_DATA_HOME": self.home / ".local/share", "XDG_CACHE_HOME": self.home / ".cache",
                  "XDG_STATE_HOME": self.home / ".local/state",
                  "XDG_RUNTIME_DIR": self.folder / "run", "TMPDIR": self.folder / "tmp"}
        for place in places.values():
            place.mkdir(parents=True, exist_ok=True)
            place.chmod(0o700)
        return inherited | {name: str(place) for name, place in places.items()} | {
            "LC_ALL": "C.UTF-8", "QT_QPA_PLATFORM": "xcb",
            # The test finds its buttons by their accessible names.
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}

    def spawn(self, *command, **options):
        with (self.folder / f"{Path(command[0]).name}.log").open("ab") as log:
            streams = {"stdin": subprocess.DEVNULL, "stdout": log, "stderr": log}
            process = subprocess.Popen(list(map(str, command)), env=self.environment,
                                       **(streams | options))
        self._spawned.append(process)
        return process

    def log_of(self, name):
        file = self.folder / f"{name}.log"
        return file.read_text(errors="replace") if file.exists() else ""

    def start_screen(self):
        """One more display with a window manager, for all that is started and done from here on."""
        self._start_display()
        self.spawn("openbox", "--sm-disable")
        until(self._has_window_manager, "the window manager")

    def _start_display(self):
        reading, writing = os.pipe()
        width, height = self.size
        self.spawn("Xvfb", "-displayfd", writing, "-screen", "0", f"{width}x{height}x24",
                   "-nolisten", "tcp", "-noreset", pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise RuntimeError("Xvfb did not start: " + self.log_of("Xvfb"))
        self.environment["DISPLAY"] = f":{number}"

    def _start_bus(self):
        address = f"unix:path={self.folder}/run/bus"
        self.spawn("dbus-daemon", "--session", "--nofork", "--nopidfile", f"--address={address}")
        until((self.folder / "run/bus").exists, "the session bus")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address

    def _has_window_manager(self):
        return "window id" in self.tool("xprop", "-root", "_NET_SUPPORTING_WM_CHECK")

    def tool(self, *command):
        """What a small program prints that is run on this desk."""
        return subprocess.run(list(map(str, command)), env=self.environment, check=False,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              timeout=60).stdout

    # Pointer and keyboard

    def move(self, point):
        # Its option to wait until the pointer has moved waits for long where the pointer is there.
        self.tool("xdotool", "mousemove", round(point[0]), round(point[1]))

    def click(self, point, button=1):
        self.move(point)
        self.tool("xdotool", "click", button)

    def double_click(self, point):
        self.move(point)
        self.tool("xdotool", "click", "--repeat", 2, "--delay", 60, 1)

    def drag(self, points, button=1):
        """Presses at the first point, goes through all of them and lets go at the last."""
        self.move(points[0])
        self.tool("xdotool", "mousedown", button)
        for point in points[1:]:
            self.move(point)
            time.sleep(0.03)
        self.tool("xdotool", "mouseup", button)

    def wheel(self, point, notches, modifier=None):
        """Turns the wheel away from the user for positive notches."""
        self.move(point)
        button = 4 if notches > 0 else 5
        if modifier:
            self.tool("xdotool", "keydown", modifier)
        for _ in range(abs(notches)):
            self.tool("xdotool", "click", button)
            time.sleep(0.05)
        if modifier:
            self.tool("xdotool", "keyup", modifier)

    def keys(self, *chords):
        for chord in chords:
            self.tool("xdotool", "key", "--clearmodifiers", chord)
            time.sleep(0.05)

    def type(self, text):
        self.tool("xdotool", "type", "--clearmodifiers", "--delay", 8, text)

    def copy(self, kind, file):
        """Another program copies a file's bytes as one type."""
        clipboard = ("xclip", "-selection", "clipboard", "-t")
        self.spawn(*clipboard, kind, "-i", file)
        until(lambda: kind in self.tool(*clipboard, "TARGETS", "-o"), f"xclip to offer {kind}")

    def screenshot(self, file):
        file.parent.mkdir(parents=True, exist_ok=True)
        self.tool("import", "-window", "root", file)
