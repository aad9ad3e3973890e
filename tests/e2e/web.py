# SPDX-License-Identifier: GPL-3.0-or-later
"""The web as sign-in meets it on a desk: a browser that the desktop knows, the service's pages, and
a keyring to keep secrets in."""

import base64
import hashlib
import json
import secrets
import subprocess
from urllib.parse import parse_qs, urlencode, urlsplit

from desk import ROOT, until
from services import Answer

BROWSER = """#!/usr/bin/python3 -B
# Goes where a page sends it, and hands what is no page to the desktop.
import os, ssl, subprocess, sys, urllib.error, urllib.request

class Stay(urllib.request.HTTPRedirectHandler):
    def redirect_request(self, *_):
        return None

trusted = ssl.create_default_context(cafile=os.environ["QUILLABRAE_TEST_AUTHORITY"])
opener = urllib.request.build_opener(Stay, urllib.request.HTTPSHandler(context=trusted))
address = sys.argv[1]
while address and address.startswith("https://"):
    try:
        opener.open(address, timeout=20)
        break
    except urllib.error.HTTPError as answer:
        address = urllib.request.urljoin(address, answer.headers["Location"] or "")
else:
    with open(os.environ["HOME"] + "/callbacks", "a") as record:
        record.write(address + "\\n")
    subprocess.run(["xdg-open", address])
"""


def install_browser(desk, program):
    """Makes the stand-in the desk's browser, and the program what its own links are opened with."""
    browser = desk.home / "stand-in-browser"
    browser.write_text(BROWSER)
    browser.chmod(0o755)
    applications = desk.home / ".local/share/applications"
    applications.mkdir(parents=True, exist_ok=True)
    (applications / "stand-in-browser.desktop").write_text(
        f"[Desktop Entry]\nType=Application\nName=Browser\nExec={browser} %u\n"
        "MimeType=x-scheme-handler/http;x-scheme-handler/https;\n")
    entry = (ROOT / "packaging/com.orvik.Quillabrae.desktop").read_text()
    if "x-scheme-handler/quillabrae" not in entry:
        raise AssertionError("the desktop file does not offer to open the program's links")
    (applications / "com.orvik.Quillabrae.desktop").write_text(
        entry.replace("Exec=quillabrae ", f"Exec={program} "))
    (desk.home / ".config/mimeapps.list").write_text(
        "[Default Applications]\n"
        "x-scheme-handler/http=stand-in-browser.desktop\n"
        "x-scheme-handler/https=stand-in-browser.desktop\n"
        "x-scheme-handler/quillabrae=com.orvik.Quillabrae.desktop\n")


def start_keyring(desk):
    """An unlocked keyring on the desk's bus."""
    with (desk.folder / "keyring.log").open("ab") as log:
        daemon = subprocess.Popen(
            ["gnome-keyring-daemon", "--foreground", "--components=secrets", "--unlock"],
            env=desk.environment, stdin=subprocess.PIPE, stdout=log, stderr=log)
    daemon.stdin.write(b"a password")
    daemon.stdin.close()
    until(lambda: "boolean true" in desk.tool(
        "dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus",
        "/org/freedesktop/DBus", "org.freedesktop.DBus.NameHasOwner",
        "string:org.freedesktop.secrets"), "the keyring")


def secret(desk, service, account):
    """What the keyring holds; empty for nothing."""
    return desk.tool("secret-tool", "lookup", "server", service, "user", account)


class AccountService:
    """The service's side of a sign-in. `callback` makes the link that the browser is sent to;
    `token` answers the request for a token once the code was right."""

    def __init__(self):
        self.challenges = {}
        self.signed_out = []
        self.callback = lambda code, state: "quillabrae://auth/callback?" + urlencode(
            {"code": code, "state": state})
        self.token = lambda: Answer(body=json.dumps(
            {"token": "the-token-of-the-test", "name": "Zoë", "email": "zoe@example.org"}).encode())

    def __call__(self, request):
        address = urlsplit(request.target)
        query = {name: values[0] for name, values in parse_qs(address.query).items()}
        if address.path == "/sign-in":
            return Answer(302, headers={"Location": query["next"]})
        if address.path == "/app-auth":
            code = secrets.token_urlsafe()
            self.challenges[code] = query["code_challenge"]
            link = self.callback(code, query["state"])
            return Answer(302, headers={"Location": link}) if link else Answer(body=b"Sign in here.")
        if address.path == "/api/app-auth/token" and request.method == "POST":
            return self._token_for(json.loads(request.body))
        if address.path == "/api/auth/sign-out" and request.method == "POST":
            self.signed_out.append(request.headers.get("authorization"))
            return Answer()
        return Answer(404)

    def _token_for(self, question):
        verifier = hashlib.sha256(question["code_verifier"].encode()).digest()
        challenge = base64.urlsafe_b64encode(verifier).decode().rstrip("=")
        # A code is good for one time.
        if self.challenges.pop(question["code"], None) != challenge:
            return Answer(400)
        return self.token()
