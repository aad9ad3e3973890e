#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""How long until the first window is on the screen, and how much memory that took.

Starts the editor and KolourPaint in turn on one private display, empty and on a photograph of
4096 by 4096 pixels, and prints the medians. Time runs from exec to the moment the window manager
lists the program's first window. Memory is the peak resident size once the program has settled.
Then the editor alone restores a large recovery file, which ends when it has settled: nothing is left
to paint then.
"""

import argparse
import json
import shutil
import signal
import statistics
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests/e2e"))
from desk import Desk, until  # noqa: E402
from photos import JPEG  # noqa: E402

SIDE = 4096
EDITOR = ROOT / "build/bin/quillabrae"
REPLAY = ROOT / "build/bin/quillabrae-replay"
STROKES = 24


def photograph(folder):
    from PIL import Image
    file = folder / "photo.jpg"
    with Image.open(JPEG) as image:
        image.resize((SIDE, SIDE), Image.BICUBIC).save(file, quality=92)
    return file


class WindowWatch:
    """Tells when the window manager's list of windows first holds one."""

    def __init__(self, desk):
        self._process = subprocess.Popen(
            ["xprop", "-root", "-spy", "_NET_CLIENT_LIST"], env=desk.environment, text=True,
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self._process.stdout.readline()

    def wait(self):
        for line in self._process.stdout:
            if "0x" in line:
                return time.monotonic()
        raise RuntimeError("no window came")

    def close(self):
        self._process.kill()
        self._process.wait()
        self._process.stdout.close()


def processor_ticks(pid):
    fields = Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()
    return int(fields[11]) + int(fields[12])


def settle(pid):
    """Waits until the program has used no processor time for half a second; since when that is."""
    last, since = -1, time.monotonic()
    while time.monotonic() - since < 0.5:
        now = processor_ticks(pid)
        if now != last:
            last, since = now, time.monotonic()
        time.sleep(0.02)
    return since


def peak_memory(pid):
    status = Path(f"/proc/{pid}/status").read_text()
    return int(status.split("VmHWM:")[1].split()[0]) / 1024


def one_start(desk, command):
    """Milliseconds to the first window and until nothing is left to do, megabytes at the peak."""
    watch = WindowWatch(desk)
    start = time.monotonic()
    process = desk.spawn(*command)
    try:
        shown = watch.wait()
        settled = settle(process.pid)
        memory = peak_memory(process.pid)
    finally:
        watch.close()
        process.send_signal(signal.SIGKILL)
        process.wait()
    until(lambda: "0x" not in desk.tool("xprop", "-root", "_NET_CLIENT_LIST"), "the window to go")
    return (shown - start) * 1000, (settled - start) * 1000, memory


def autosave(desk):
    return desk.home / ".local/share/Quillabrae/Autosave"


def forget_work(desk):
    shutil.rmtree(autosave(desk), ignore_errors=True)


def paint_until_killed(desk, photo):
    """Leaves the recovery file of a photograph that was painted on."""
    size = [SIDE, SIDE]
    lines = [{"do": "store.createProject", "fromImageAt": str(photo)},
             {"do": "canvas.viewport", "size": size}, {"do": "wait", "seconds": 1},
             {"do": "set", "selectedTool": "brush", "brushSize": 60, "zoomScale": 0.25}]
    lines += [{"do": "canvas.stroke", "points": [[200, 150 * i], [3800, 150 * i + 400]]}
              for i in range(STROKES)]
    script = desk.folder / "paint.jsonl"
    script.write_text("".join(json.dumps(line) + "\n" for line in lines))
    subprocess.run([REPLAY, "--home", desk.home, "--strict", script], check=True,
                   env=desk.environment | {"QT_QPA_PLATFORM": "offscreen"},
                   stdout=subprocess.DEVNULL)


def restore(desk, photo, runs):
    paint_until_killed(desk, photo)
    file = autosave(desk) / "Recovery.quillabraesession"
    megabytes = file.stat().st_size / 2**20
    one_start(desk, [EDITOR])
    rows = [one_start(desk, [EDITOR]) for _ in range(runs)]
    shown, settled, memory = [statistics.median(column) for column in zip(*rows)]
    spread = sorted(row[1] for row in rows)
    print(f"\nRestoring {megabytes:.0f} MB of recovery file, medians of {runs} starts")
    print(f"  quillabrae   {shown:7.1f} ms to the first window   {settled:7.1f} ms until all is "
          f"painted ({spread[0]:.1f} to {spread[-1]:.1f})   {memory:7.1f} MB at the peak")
    forget_work(desk)


def compare(desk, title, arguments, runs):
    programs = {"quillabrae": [EDITOR, *arguments], "kolourpaint": ["kolourpaint", *arguments]}
    for command in programs.values():
        one_start(desk, command)
        forget_work(desk)
    results = {name: [] for name in programs}
    for _ in range(runs):
        for name, command in programs.items():
            results[name].append(one_start(desk, command))
            forget_work(desk)
    median = {name: [statistics.median(column) for column in zip(*rows)]
              for name, rows in results.items()}
    print(f"\n{title}, medians of {runs} starts")
    for name, (milliseconds, _, memory) in median.items():
        spread = sorted(row[0] for row in results[name])
        print(f"  {name:12} {milliseconds:7.1f} ms to the first window "
              f"({spread[0]:.1f} to {spread[-1]:.1f})   {memory:7.1f} MB at the peak")
    ours, theirs = median["quillabrae"], median["kolourpaint"]
    print(f"  {'ratio':12} {ours[0] / theirs[0]:7.2f}   {ours[2] / theirs[2]:.2f}")


def main():
    parser = argparse.ArgumentParser(prog="./dev bench startup", description=__doc__)
    parser.add_argument("--runs", type=int, default=11)
    options = parser.parse_args()
    if not EDITOR.exists() or not shutil.which("kolourpaint"):
        sys.exit("the editor or KolourPaint is missing: run ./dev bench startup")
    with Desk() as desk:
        desk.environment.pop("QT_LINUX_ACCESSIBILITY_ALWAYS_ON")
        compare(desk, "Empty start", [], options.runs)
        photo = photograph(desk.folder)
        compare(desk, f"A photograph of {SIDE} by {SIDE}", [photo], options.runs)
        restore(desk, photo, options.runs)


if __name__ == "__main__":
    main()
