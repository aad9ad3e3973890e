# SPDX-License-Identifier: GPL-3.0-or-later
"""Every window and dialog, in light and dark, at one and two pixels a point, as pictures to look at;
and once more in languages that nobody speaks, whose words are longer or run from right to left.

They are in build/screens. The test itself holds each to its size and to the theme; how it looks is
for people.
"""

import os
import re
import signal
import sys
import time
import unittest
from contextlib import contextmanager
from dataclasses import dataclass
from functools import partial
from pathlib import Path

from PIL import Image, ImageStat

import editor as plain
import landscape
import photos
import services
from desk import ROOT, Desk, until
from editor import Editor, store_records
from keyring import Keyring
from pictures import DRAWING
from portal import Portal
from services import UPDATE_FEED, Answer, ServicesCase
from web import AccountService, install_browser

sys.path.append(str(ROOT / "tools"))
import translations  # noqa: E402 (it is found by the line above)

SCREENS = Path(os.environ.get("QUILLABRAE_SCREENS", ROOT / "build/screens"))
THEMES = ("light", "dark")
SCALES = (1, 2)
# Beside the usual one, and what the desktop says for it.
LOOKS = {"large": ("large letters",), "stark": ("more contrast",)}
LARGE_ROOM = (1800, 1300)
TOOLS = {"shapes": "Shapes", "text": "Text", "magic-wand": "Magic Wand", "bucket": "Paint Bucket",
         "eraser": "Eraser", "zoom": "Zoom"}


@dataclass(frozen=True)
class Dialog:
    """How a dialog is reached from the editor window: by keys or by a button's name."""

    name: str
    title: str
    size: tuple
    keys: str = ""
    button: str = ""


DIALOGS = (
    Dialog("new-project", "New Project", (420, 310), keys="ctrl+n"),
    Dialog("resize", "Resize", (520, 710), keys="ctrl+r"),
    Dialog("canvas-size", "Canvas Size", (520, 710), keys="ctrl+shift+r"),
    Dialog("align-object", "Align Object", (390, 440), keys="ctrl+shift+f"),
    Dialog("color-removal", "Color Removal", (520, 310), button="Color Removal"),
    Dialog("rotate-zoom", "Rotate / Zoom", (420, 260), keys="ctrl+alt+z"),
    Dialog("layer-properties", "Layer Properties", (380, 295), button="Layer Properties"),
    Dialog("feedback", "Give Feedback", (480, 520), button="Give Feedback"),
    Dialog("import-svg", "Import SVG", (420, 250), keys="ctrl+v"),
    Dialog("open", "Open Quillabrae Project or Image", None, keys="ctrl+o"),
    Dialog("save-as", "Save Quillabrae", None, keys="ctrl+shift+s"),
)


@dataclass(frozen=True)
class Alert:
    """A question, the keys that lead to it and the last of which it is asked after."""

    name: str
    words: str
    keys: tuple

    def ask(self, desk, editor):
        desk.keys(*self.keys[:-1])
        if self.keys[1:]:
            editor.wait_for_window("Save Quillabrae")
        desk.keys(self.keys[-1])
        editor.wait_for_control(self.words)


ALERTS = (
    Alert("paste", "Paste Image", ("ctrl+v",)),
    Alert("replace", 'A file named "evening.quillabrae" already exists.',
          ("ctrl+shift+s", "Return")),
    Alert("save", 'Save changes to "evening" before closing?', ("ctrl+w",)),
)


class Web:
    """Everything that the program with services talks to, under one address. What is asked for a
    target in `held` waits for its answer until the target is in there no more."""

    def __init__(self):
        self.account = AccountService()
        self.answers = {}
        self.held = set()

    def release(self):
        self.held = set()

    def __call__(self, request):
        until(lambda: request.target not in self.held, f"{request.target} to be answered", 60)
        return self.answers.get(request.target) or self.account(request)


class Screens(ServicesCase):
    """One desk for each theme and scale."""

    program = plain.PROGRAM

    def setUp(self):
        self.running = []

    def use_desk(self, theme, scale, look=""):
        """A look is one of LOOKS, or as most desktops are."""
        self.theme, self.scale, self.look = theme, scale, look
        width, height = LARGE_ROOM if look else (1320, 960)
        self.screen = (width * scale, height * scale)
        self.desk = self.enterContext(Desk(size=self.screen))
        self.desk.environment["QT_SCALE_FACTOR"] = str(scale)
        Portal(self.desk.environment["DBUS_SESSION_BUS_ADDRESS"], theme, "still",
               *LOOKS.get(look, ()))
        # The theme of the last run, so that the first frame has it already.
        store_records(self.desk)
        self.preferences = self.desk.home / ".config/Quillabrae/preferences.ini"
        self.preferences.write_text(
            f"[General]\nQuillabrae.systemWasDark={'true' if theme == 'dark' else 'false'}\n")

    def remember(self, **records):
        """What an earlier run has left behind."""
        store_records(self.desk, **records)
        with self.preferences.open("a", encoding="utf-8") as file:
            file.write(f"Quillabrae.systemWasDark={'true' if self.theme == 'dark' else 'false'}\n")

    # Capturing

    def capture(self, name, title, size=None, hovers=False):
        """Takes the window of that title and what is open above it, once two looks at it are the
        same. `hovers` leaves the pointer where it is."""
        look = f"-{self.look}" if self.look else ""
        file = SCREENS / f"{name}-{self.theme}-{self.scale}x{look}.png"
        file.parent.mkdir(parents=True, exist_ok=True)
        number = until(lambda: self.window_number(title), f"the window {title!r}")
        place = self.place_of_window(number)
        if not hovers:
            self.desk.move((1, self.screen[1] - 2))
        before = b""

        def is_still():
            nonlocal before
            self.desk.tool("import", "-window", "root", "-crop", place, "+repage", file)
            with Image.open(file) as shot:
                now = shot.convert("RGB").tobytes()
            was, before = before, now
            return was == now
        until(is_still, f"{title!r} to stand still")
        self.check(file, size)

    @contextmanager
    def standing_still(self, editor):
        """The process is stopped, and so is what moves in its windows."""
        time.sleep(0.2)  # What is there already may yet have to be painted.
        editor.process.send_signal(signal.SIGSTOP)
        try:
            yield
        finally:
            editor.process.send_signal(signal.SIGCONT)

    def window_number(self, title):
        numbers = self.desk.tool("xdotool", "search", "--onlyvisible", "--name",
                                 "^" + title).split()
        return numbers[-1] if numbers else None

    def place_of_window(self, number):
        """As ImageMagick writes it, without the window manager's frame."""
        told = self.desk.tool("xwininfo", "-id", number)
        left, top, width, height = (
            int(re.search(rf"{name}: +(-?[0-9]+)", told).group(1))
            for name in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))
        return f"{width}x{height}{left:+}{top:+}"

    def check(self, file, size):
        with Image.open(file) as shot:
            picture = shot.convert("L")
        if size:
            least = tuple(self.scale * n for n in size)
            # Larger letters need more room.
            compare = self.assertGreaterEqual if self.look == "large" else self.assertEqual
            for now, wanted in zip(picture.size, least):
                compare(now, wanted, file.name)
        # At the lower left every window has its plain ground.
        ground = picture.getpixel((6, picture.height - 7))
        self.assertEqual(ground < 100, self.theme == "dark", f"{file.name}: {ground}")
        self.assertGreater(ImageStat.Stat(picture).stddev[0], 4, f"{file.name} is empty")

    def press(self, editor, name, role=None):
        self.desk.click(self.place_of(editor.wait_for_control(name, role)))

    def place_of(self, control):
        """The accessibility bus counts in points."""
        return [self.scale * value for value in control.middle]

    def leave(self, editor):
        """Closes what is open beside the one window that stays."""
        self.desk.keys("Escape")
        editor.wait_until_alone()

    # The windows

    def all_screens(self):
        self.first_start()
        self.later_start()
        self.editor_window()

    def first_start(self):
        editor = self.start()
        editor.wait_for_window("Welcome to Quillabrae")
        editor.wait_for_window("Paint.NET Quick Start")
        steps = editor.wait_for_control("Steps")
        for index, step in enumerate([step.name for step in steps.children()], 1):
            editor.wait_for_control(f"Step {index} of 6")
            self.capture(f"quick-start-{index}-{step.lower()}", "Paint.NET Quick Start", (760, 610))
            self.desk.keys("Page_Down")
        self.desk.keys("Escape")
        editor.wait_until_alone()
        self.capture("welcome-first", "Welcome to Quillabrae", (480, 632))
        self.end(editor)

    def end(self, editor):
        editor.kill()
        self.running.remove(editor)

    def later_start(self):
        names = ("evening by the lake", "poster", "a name that is far too long for one line of the "
                 "welcome panel, and goes on", "sketch", "icon", "portrait", "logo", "map")
        self.remember(recents=[
            {"title": name, "url": (self.desk.home / f"Pictures/{name}.quillabrae").as_uri(),
             "openedAt": "2026-01-01T12:00:00Z"} for name in names])
        editor = self.start()
        editor.wait_for_window("Welcome to Quillabrae")
        self.capture("welcome-recents", "Welcome to Quillabrae", (480, 632))
        self.press(editor, "poster")
        editor.wait_for_status("Open failed: ")
        self.capture("welcome-recent-gone", "Welcome to Quillabrae", (480, 632))
        self.library(editor)
        self.settings(editor)
        self.end(editor)

    def library(self, editor):
        self.desk.keys("ctrl+shift+p")
        editor.wait_for_window("Plugin Library")
        self.capture("plugin-library", "Plugin Library", (980, 680))
        self.desk.tool("xdotool", "windowsize", "--sync", self.window_number("Plugin Library"),
                       300 * self.scale, 300 * self.scale)
        self.capture("plugin-library-smallest", "Plugin Library", (820, 560))
        self.desk.keys("alt+F4")
        editor.wait_until_closed("Plugin Library")

    def settings(self, editor):
        self.desk.keys("ctrl+comma")
        editor.wait_for_window("Settings")
        sections = editor.wait_for_control("Sections")
        for section in [row.name for row in sections.children()]:
            self.capture(f"settings-{section.lower().replace(' & ', '-')}", "Settings")
            self.desk.keys("Down")

    def editor_window(self):
        editor = self.open_the_lake()
        self.capture("editor", "evening - Quillabrae v", (1180, 820))
        self.press(editor, "Move Selection", "check box")
        self.capture("editor-selection", "evening - Quillabrae v", (1180, 820))
        self.tools(editor)
        self.menus(editor)
        self.history(editor)
        self.dialogs(editor)
        self.alerts(editor)
        self.long_work(editor)
        self.keyboard_and_pointer(editor)
        self.smallest(editor)
        self.many_tabs(editor)

    def lake(self):
        """A project with its sun selected."""
        left, top, radius = landscape.SUN
        return landscape.save(
            self.desk.home / "Pictures/evening.quillabrae", isCanvasSelected=True,
            pixelSelection={"x": left - radius, "y": top - radius, "width": 2 * radius,
                            "height": 2 * radius})

    def open_the_lake(self):
        self.remember(settings={"selectedTool": "brush", "brushSize": 24})
        editor = self.start(self.lake())
        editor.wait_for_window("evening - Quillabrae v")
        editor.wait_for_status("Opened evening")
        self.desk.keys("ctrl+b")
        editor.wait_for_status("Zoomed to fit")
        return editor

    def tools(self, editor):
        for name, tool in TOOLS.items():
            self.press(editor, tool, "check box")
            self.capture(f"editor-{name}", "evening - Quillabrae v", (1180, 820))
        self.press(editor, "More")
        self.capture("editor-colors", "evening - Quillabrae v", (1180, 820))
        self.press(editor, "More")

    def menus(self, editor):
        for menu in editor.wait_for_control(None, "menu bar").children():
            self.desk.click(self.place_of(menu))
            self.capture(f"menu-{menu.name.lower()}", "evening - Quillabrae v", (1180, 820))
            self.desk.keys("Escape")

    def keyboard_and_pointer(self, editor):
        tools = editor.wait_for_control("Tools")
        self.desk.move(self.place_of(tools.find("Gradient", "check box")))
        editor.wait_for_control("Gradient", "label", 30)
        self.capture("editor-tooltip", "evening - Quillabrae v", (1180, 820), hovers=True)
        for _ in range(60):
            if tools.find(state="focused"):
                break
            self.desk.keys("Tab")
        self.desk.keys("Down")
        self.capture("editor-focus", "evening - Quillabrae v", (1180, 820))
        # From the selection, and from the tools.
        self.desk.keys("Escape", "Escape")

    def history(self, editor):
        """Some steps, the last of which is undone."""
        self.desk.keys("ctrl+shift+n", "ctrl+shift+Delete", "ctrl+shift+d", "ctrl+shift+i", "ctrl+z")
        until(lambda: editor.wait_for_control("Redo").has("enabled"), "a step that can be redone")
        self.capture("editor-history", "evening - Quillabrae v", (1180, 820))

    def copy_drawing(self):
        drawing = self.desk.home / "drawing.svg"
        drawing.write_bytes(DRAWING)
        self.desk.copy("image/svg+xml", drawing)

    def dialogs(self, editor):
        self.copy_drawing()
        for dialog in DIALOGS:
            if dialog.keys:
                self.desk.keys(dialog.keys)
            else:
                self.press(editor, dialog.button)
            editor.wait_for_window(dialog.title)
            self.capture(f"dialog-{dialog.name}", dialog.title, dialog.size)
            self.leave(editor)

    def alerts(self, editor):
        self.desk.keys("ctrl+shift+n")
        self.capture("editor-unsaved", "evening - Quillabrae v", (1180, 820))
        self.desk.copy("image/png", photos.PNG)
        for alert in ALERTS:
            alert.ask(self.desk, editor)
            self.capture(f"alert-{alert.name}", "Quillabrae$")
            self.leave(editor)

    def long_work(self, editor):
        self.desk.keys("ctrl+r")
        editor.wait_for_window("Resize")
        self.desk.type("1000")
        self.desk.keys("Return")
        # The accessibility bus may be slower than the work.
        until(lambda: self.window_number("Quillabrae$"), "the work to be shown", pause=0.01)
        with self.standing_still(editor):
            self.capture("dialog-progress", "Quillabrae$")
        self.leave(editor)

    def smallest(self, editor):
        window = self.window_number("evening - Quillabrae v")
        self.desk.tool("xdotool", "windowsize", "--sync", window, 400 * self.scale, 300 * self.scale)
        self.press(editor, "Text", "check box")
        self.capture("editor-smallest", "evening - Quillabrae v", (1100, 760))

    def many_tabs(self, editor):
        pictures = []
        for number in range(30):
            pictures.append(self.desk.home / f"Pictures/{number * 7919} sketches.png")
            Image.new("RGB", (90, 60), (number * 8, 120, 255 - number * 8)).save(pictures[-1])
        Editor(self.desk, *pictures).process.wait(60)
        until(lambda: editor.windows()[0][1].startswith(pictures[-1].stem), "the last picture", 60)
        title = pictures[-1].stem
        self.capture("editor-tabs-last", title, (1100, 760))
        self.desk.click([self.scale * value for value in
                         editor.wait_for_control("Open projects").middle])
        until(lambda: not editor.windows()[0][1].startswith(title), "another tab")
        self.capture("editor-tabs-middle", editor.windows()[0][1], (1100, 760))
        # A picture cannot keep a second layer.
        self.desk.keys("ctrl+shift+n", "ctrl+s")
        editor.wait_for_control("Flatten layers before saving?")
        self.capture("alert-flatten", "Quillabrae$")

    # With services

    def all_with_services(self):
        self.program = services.PROGRAM
        self.set_up_services()
        self.keyring = Keyring(self.desk)
        install_browser(self.desk, self.program)
        self.serve_the_web()
        editor = self.open_the_lake()
        self.updates(editor)
        self.feedback(editor)
        self.account(editor)
        self.fill(editor)

    def serve_the_web(self):
        """A version 1.10 is offered, but its package is not the signed one."""
        package = self.desk.folder / "new.deb"
        package.write_bytes(b"a package")
        self.make_credentials(package)
        key, signature = ((self.credentials / f"update-{name}.txt").read_text()
                          for name in ("key", "signature"))
        self.web = Web()
        self.addCleanup(self.web.release)
        url = self.serve(self.web).url
        self.configure(SERVICE_URL=url, IMAGE_EDIT_URL=url,
                       UPDATE_FEED_URL=f"{url}/feed.xml", UPDATE_PUBLIC_KEY=key)
        feed = UPDATE_FEED.format(url=url, length=9, signature=signature)
        self.web.answers = {
            "/feed.xml": Answer(body=feed.encode()), "/new.deb": Answer(body=b"b package"),
            "/api/feedback": Answer(429, b'{"error": "Too much for one day."}'),
            "/v1/images/edits": Answer(401, b'{"error": {"message": "The key is wrong."}}')}

    def updates(self, editor):
        """The start looks by itself, since nobody has today."""
        window = ("evening - Quillabrae v", (1180, 820))
        editor.wait_for_control("Update Now")
        self.capture("update-now", *window)
        self.web.held = {"/feed.xml"}
        self.press(editor, "Update Now")
        editor.wait_for_control("Checking…")
        self.capture("update-checking", *window)
        self.web.held = {"/new.deb"}
        editor.wait_for_control("Installing…")
        self.capture("update-installing", *window)
        self.web.release()
        editor.wait_for_control("Quillabrae could not be updated.")
        self.capture("alert-update", "Quillabrae$")
        self.leave(editor)
        editor.wait_for_control("Check for Updates")
        self.capture("update-check", *window)
        feed = self.web.answers["/feed.xml"].body
        self.web.answers["/feed.xml"] = Answer(body=feed.replace(b"1.10", b"1.1"))
        self.press(editor, "Check for Updates")
        editor.wait_for_control("You have the newest version.")
        self.capture("alert-newest", "Quillabrae$")
        self.leave(editor)

    def feedback(self, editor):
        dialog = ("Give Feedback", (480, 520))
        self.press(editor, "Give Feedback")
        self.press(editor, "What would make Quillabrae better for you?", "text")
        self.desk.type("More brushes, please")
        large = self.desk.home / "Pictures/panorama.png"
        Image.linear_gradient("L").resize((12000, 8000)).convert("RGB").save(large, compress_level=1)
        self.attach(editor, large)
        # The accessibility bus may be slower than the work.
        until(lambda: editor.node().find("Compressing image…"), "the work to be shown", pause=0.01)
        with self.standing_still(editor):
            self.capture("dialog-feedback-compressing", *dialog)
        self.press(editor, "Remove", "push button")
        self.attach(editor, photos.JPEG)
        editor.wait_for_status("Compressed JPEG · ")
        self.capture("dialog-feedback-attached", *dialog)
        self.web.held = {"/api/feedback"}
        self.press(editor, "Send Feedback")
        editor.wait_for_control("Sending feedback…", "push button")
        with self.standing_still(editor):
            self.capture("dialog-feedback-sending", *dialog)
        self.web.release()
        editor.wait_for_status("Too much for one day.")
        self.capture("dialog-feedback-refused", *dialog)
        self.web.answers["/api/feedback"] = Answer(204)
        self.press(editor, "Send Feedback")
        editor.wait_for_status("Feedback sent")
        self.capture("dialog-feedback-sent", *dialog)
        self.leave(editor)

    def attach(self, editor, picture):
        self.press(editor, "Choose an image to attach")
        editor.wait_for_window("Attach Image")
        self.desk.type(str(picture))
        self.desk.keys("Return")

    def account(self, editor):
        self.desk.keys("ctrl+comma")
        editor.wait_for_window("Settings")
        self.press(editor, "Account", "list item")
        editor.wait_for_control("Not signed in", "label")
        self.capture("settings-account-signed-out", "Settings")
        links, self.web.account.callback = self.web.account.callback, lambda code, state: None
        self.press(editor, "Sign in")
        editor.wait_for_status("Complete sign-in in your browser…")
        until(lambda: self.web.account.challenges, "the browser to be there")
        with self.standing_still(editor):
            self.capture("settings-account-waiting", "Settings")
        self.press(editor, "Cancel")
        editor.wait_for_status("Sign-in cancelled.")
        self.web.account.callback = links
        self.press(editor, "Sign in")
        editor.wait_for_status("zoe@example.org")
        self.capture("settings-account-signed-in", "Settings")
        self.leave(editor)

    def fill(self, editor):
        self.desk.keys("ctrl+comma")
        editor.wait_for_window("Settings")
        self.keyring.fall_silent()
        self.press(editor, "Intelligence", "list item")
        editor.wait_for_control("Waiting for the keychain...", "label")
        with self.standing_still(editor):
            self.capture("settings-intelligence-waiting", "Settings")
        self.keyring.go_on()
        until(lambda: editor.labels().count("No key saved") == 2, "the keychain's answer")
        self.press(editor, "Bring your own OpenAI API key", "text")
        self.desk.type("sk-a-key-of-the-test")
        self.press(editor, "Save API Key")
        editor.wait_for_control("Connected with BYOK", "label")
        self.capture("settings-intelligence-key", "Settings")
        self.leave(editor)

        dialog = ("Generative Fill", (520, 384))
        self.press(editor, "Generative Fill")
        editor.wait_for_window("Generative Fill")
        self.capture("dialog-generative-fill", *dialog)
        self.press(editor, "Prompt", "text")
        self.desk.type("a red hat")
        self.web.held = {"/v1/images/edits"}
        self.press(editor, "Generate")
        editor.wait_for_control("Generating and applying pixels...", "label")
        with self.standing_still(editor):
            self.capture("dialog-generative-fill-working", *dialog)
        self.web.release()
        editor.wait_for_control("The key is wrong.", "label")
        self.capture("dialog-generative-fill-refused", *dialog)
        self.leave(editor)

    # In other words

    def all_in(self, language):
        """What keys lead to, and some more. Windows may be larger than in English."""
        self.program = services.PROGRAM
        self.set_up_services()
        self.desk.environment["LANGUAGE"] = language
        self.language = language
        self.tour_and_welcome()
        editor = self.start(self.lake())
        editor.wait_for_window("evening - Quillabrae v")
        for name, tool in TOOLS.items():
            self.press(editor, self.said(tool), "check box")
            self.capture(f"{language}-editor-{name}", "evening - Quillabrae v")
        self.press(editor, self.said("More"))
        self.capture(f"{language}-editor-colors", "evening - Quillabrae v")
        for number, menu in enumerate(editor.wait_for_control(None, "menu bar").children(), 1):
            self.desk.click(self.place_of(menu))
            self.capture(f"{language}-menu-{number}", "evening - Quillabrae v")
            self.desk.keys("Escape")
        self.dialogs_in_other_words(editor)
        self.sections_in_other_words(editor)

    def said(self, text):
        return translations.pseudo(text, self.language)

    def capture_said(self, name, title):
        words = self.said(title).replace("[", r"\[").replace("]", r"\]")
        self.capture(f"{self.language}-{name}", words)

    def tour_and_welcome(self):
        editor = self.start()
        editor.wait_for_window(self.said("Paint.NET Quick Start"))
        for step in range(1, 7):
            self.capture_said(f"quick-start-{step}", "Paint.NET Quick Start")
            self.desk.keys("Page_Down")
        self.desk.keys("Escape")
        editor.wait_until_alone()
        self.capture_said("welcome", "Welcome to Quillabrae")
        self.end(editor)

    def dialogs_in_other_words(self, editor):
        self.copy_drawing()
        for dialog in DIALOGS:
            if dialog.keys:
                self.desk.keys(dialog.keys)
            else:
                self.press(editor, self.said(dialog.button))
            editor.wait_for_window(self.said(dialog.title))
            self.capture_said(f"dialog-{dialog.name}", dialog.title)
            self.leave(editor)

    def sections_in_other_words(self, editor):
        self.desk.keys("ctrl+shift+p")
        editor.wait_for_window(self.said("Plugin Library"))
        self.capture_said("plugin-library", "Plugin Library")
        self.desk.keys("alt+F4")
        editor.wait_until_alone()
        self.desk.keys("ctrl+comma")
        editor.wait_for_window(self.said("Settings"))
        sections = editor.wait_for_control(self.said("Sections"))
        for number, _ in enumerate(sections.children(), 1):
            self.capture_said(f"settings-{number}", "Settings")
            self.desk.keys("Down")


def add_test(name, capture_all, theme, scale, look=""):
    def test(self):
        self.use_desk(theme, scale, look)
        capture_all(self)
    setattr(Screens, f"test_{name}_{theme}_at_{scale}x{'_' * bool(look)}{look}", test)


for _theme in THEMES:
    for _scale in SCALES:
        add_test("windows", Screens.all_screens, _theme, _scale)
        add_test("services", Screens.all_with_services, _theme, _scale)
    for _look in LOOKS:
        add_test("windows", Screens.all_screens, _theme, 1, _look)
for _language in translations.PSEUDO:
    add_test(_language, partial(Screens.all_in, language=_language), "light", 1)


if __name__ == "__main__":
    unittest.main()
