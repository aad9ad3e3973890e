#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Finds words in the source that a user would read and no translator would see.

Words are a string literal that begins with a capital letter or has a blank between letters, and that
does not stand in tr(), translate() or QT_TRANSLATE_NOOP(). What only looks like words is told below.
"""

import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
# The codecs' process and the engine speak to the program alone.
FOLDERS = ("model", "platform", "persistence", "effects", "services", "store", "canvas", "shell")

LITERAL = r'"(?:[^"\\\n]|\\.)*"'
TEXT = re.compile(rf"(?:{LITERAL})(?:\s*{LITERAL})*")
COMMENT = re.compile(rf"//[^\n]*|/\*.*?\*/|({LITERAL})", re.S)
TRANSLATED = re.compile(
    r"(?:\btr|translate|QT_TRANSLATE_N?_?NOOP|Q_CLASSINFO)\(\s*(?:" + LITERAL + r",\s*)?$")
CONTEXT = re.compile(r"(?:translate|QT_TRANSLATE_N?_?NOOP)\(\s*$")

# Calls whose words are for the program itself, its makers or another program.
UNREAD = re.compile(
    r"(?:#include\s*|setObjectName\(|findChild<[^>]*>\(|qCritical\(|qWarning\(|static_assert\([^;]*"
    r"|\bfail\(|failAtMember\([^;]*|qEnvironmentVariable\w*\(|throw\s|length_error\("
    r"|createErrorReply\([^;]*)"
    r"(?:QStringLiteral\(|QLatin1StringView\()?\s*$")
# Names, keys, forms and headers, by how they are written.
NAMES = re.compile("|".join((
    r"Quillabrae(?:$|[. ](?:v|for macOS|crash|Studio).*|[.-]\w.*|/%1 .*)",  # the program and its keys
    r"[a-z]+[A-Z]\w*",                                         # a field of a record
    r"[A-Z][A-Z_0-9]+",                                        # an environment variable, a verb
    r"(?:Ctrl\+|Esc|F\d).*",                                   # keys
    r"[/.*:%\\(^<\[#{&|-].*",                                  # a path, a pattern, a mark-up
    r"(?:\w+-)+\w+:?.*",                                       # a header
    r"[a-z]+: ?",                                              # a field of a crash report
    r"[ymdhHsSZT':\-]+",                                       # the form of a date
)))
# What else is not for translators, file by file.
EXEMPT = {
    "effects/GenerativeFillRequest.cpp": "GPT Image",              # the names of products
    "effects/OpenAIImageEditService.cpp": "Quillabrae-|Authorization|Bearer ",
    "effects/OpenAIKeychainService.cpp": "OpenAIAPIKey",
    "model/Base64.cpp": "ABCDEF",
    "model/JsonReader.cpp": "(The document|The text|A text) ",     # faults of files, for makers
    "model/PaintAppSettings.h": "Helvetica",
    "persistence/RecoveryFolder.cpp": "Recovery|Closed",           # names of files
    "persistence/SaveFormat.cpp": "jpg|tif|jp2",
    "platform/FileChooserPortal.cpp": "Close|Get|Response|OpenFile|SaveFile",
    "platform/Memory.cpp": "MemAvailable",
    "platform/XdgRecentDocuments.cpp": "exec|Settings|RecentDocuments",
    "services/FeedbackService.cpp": "Accept",
    "services/QuillabraeAccountService.cpp": "Accept|Authorization|Bearer ",
    "services/QuillabraeAuthTokenStore.cpp": "BetterAuthBearerToken",
    "shell/looks/DesktopSetting.cpp": "SettingChanged|Read",
    "shell/panels/ColorPanel.cpp": "Hue",                          # the English name of a component
    "store/ClipboardImageService.cpp": "Selection",                # the name of a file
    "store/Settings.cpp": "Helvetica",
}


def without_comments(text):
    """The same lines, so that line numbers hold."""
    def blank(match):
        return match.group(1) or re.sub(r"[^\n]", " ", match.group())
    return COMMENT.sub(blank, text)


def words_of(literals):
    return "".join(re.findall(r'"((?:[^"\\\n]|\\.)*)"', literals))


def is_wording(words):
    plain = re.sub(r"%L?\d|%n|\\.", "", words).strip()
    return bool(re.search(r"[^\W\d_]{2}", plain)) and not NAMES.fullmatch(words) and bool(
        re.match(r"[A-Z]", plain) or re.search(r"[^\W\d_] +[^\W\d_]", plain))


def findings_in(file):
    text = without_comments(file.read_text(encoding="utf-8"))
    for match in TEXT.finditer(text):
        before = text[max(0, match.start() - 300):match.start()]
        words = words_of(match.group())
        if (not is_wording(words) or TRANSLATED.search(before) or CONTEXT.search(before)
                or UNREAD.search(before)):
            continue
        exempt = EXEMPT.get(str(file.relative_to(ROOT / "src")))
        if exempt and re.match(exempt, words):
            continue
        line = text.count("\n", 0, match.start()) + 1
        name = file.relative_to(ROOT)
        yield f"{name}:{line}: a text that is not translated: {words[:60]}"


def unread_contexts(texts):
    """The contexts of tables that nothing is translated in: whoever reads such a table names another,
    and finds nothing there."""
    marked = set(re.findall(r'QT_TRANSLATE_N?_?NOOP\(\s*"(\w+)"', texts))
    read = set(re.findall(r'(?:translate\(\s*"|Q_DECLARE_TR_FUNCTIONS\()(\w+)', texts))
    return [f"a context of tables that nothing reads: {name}" for name in sorted(marked - read)]


def main():
    files = sorted(file for folder in FOLDERS for file in (ROOT / "src" / folder).rglob("*")
                   if file.suffix in (".cpp", ".h"))
    findings = [finding for file in files for finding in findings_in(file)]
    findings += unread_contexts("".join(file.read_text(encoding="utf-8") for file in files))
    print("\n".join(findings), end="\n" if findings else "")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
