# SPDX-License-Identifier: GPL-3.0-or-later
"""The editor as a build with services is, and HTTPS servers on loopback for it to talk to."""

import os
import shutil
import ssl
import subprocess
import threading
from dataclasses import dataclass, field
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from pathlib import Path

import photos
from case import DeskCase
from desk import ROOT

PROGRAM = Path(os.environ.get("QUILLABRAE_WITH_SERVICES", ROOT / "build/bin/quillabrae-with-services"))
CREDENTIALS = Path(os.environ.get("QUILLABRAE_CREDENTIALS", ROOT / "build/bin/quillabrae-credentials"))

# What a feed of updates holds; the older item is to be passed over.
UPDATE_FEED = """<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:u="https://example.org/update"><channel><title>Quillabrae</title>
<item><title>Old</title><enclosure url="{url}/old.deb" length="1" u:edSignature="{signature}"
    u:version="1.0"/></item>
<item><title>New</title><enclosure url="{url}/new.deb" length="{length}"
    u:edSignature="{signature}" u:version="1.10" u:shortVersionString="1.10 Gull"/></item>
</channel></rss>
"""


@dataclass
class Request:
    method: str
    target: str
    headers: dict
    body: bytes


@dataclass
class Answer:
    status: int = 200
    body: bytes = b""
    headers: dict = field(default_factory=dict)


class Server:
    """An HTTPS server on a port of 127.0.0.1. `answer` makes an Answer of each Request, in a thread
    of the request's own. Use as a context."""

    def __init__(self, identity, answer):
        self.requests = []
        self.connections = 0
        self._answer = answer
        self._http = ThreadingHTTPServer(("127.0.0.1", 0), self._handler())
        self._http.daemon_threads = True
        self._http.block_on_close = False
        self._tls = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self._tls.load_cert_chain(identity)

    @property
    def url(self):
        return f"https://127.0.0.1:{self._http.server_port}"

    def __enter__(self):
        threading.Thread(target=self._http.serve_forever, daemon=True).start()
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        self._http.shutdown()
        self._http.server_close()

    def _handler(self):
        server = self

        class Handler(BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"

            def setup(self):
                # The handshake is here, so that it holds up no other connection.
                server.connections += 1
                self.request.settimeout(30)
                self.request = server._tls.wrap_socket(self.request, server_side=True)
                super().setup()

            def handle(self):
                try:
                    super().handle()
                except (OSError, ssl.SSLError):
                    pass  # The program has gone, or hung up.

            def exchange(self):
                length = int(self.headers.get("Content-Length", 0))
                headers = {name.lower(): value for name, value in self.headers.items()}
                request = Request(self.command, self.path, headers, self.rfile.read(length))
                server.requests.append(request)
                answer = server._answer(request)
                self.send_response(answer.status)
                for name, value in answer.headers.items():
                    self.send_header(name, value)
                self.send_header("Content-Length", str(len(answer.body)))
                self.end_headers()
                self.wfile.write(answer.body)

            do_GET = do_POST = do_PUT = do_DELETE = exchange

            def log_message(self, *_):
                pass

        return Handler


class ServicesCase(DeskCase):
    """Tests of a program that trusts the test's own authority. `settings` are a build's, without
    QUILLABRAE_ in front."""

    program = PROGRAM

    def setUp(self):
        super().setUp()
        self.set_up_services()

    def set_up_services(self):
        self.credentials = self.desk.folder / "credentials"
        self.credentials.mkdir()
        self.make_credentials()
        self.configure(VERSION="1.2.3", BUILD="45", CHANNEL="release",
                       AUTHORITY=self.credentials / "authority.pem")

    def make_credentials(self, *package):
        """Before any server is started. A package is signed as well."""
        subprocess.run([CREDENTIALS, self.credentials, *package], check=True, timeout=30)

    def configure(self, **settings):
        """What programs are started with from here on."""
        self.desk.environment |= {f"QUILLABRAE_TEST_{name}": str(value)
                                  for name, value in settings.items()}

    def start_with_picture(self):
        """A running program with a picture in its editor window."""
        drawing = self.desk.home / "stripes.png"
        shutil.copy(photos.PNG, drawing)
        editor = self.start(drawing)
        editor.wait_for_window("stripes - Quillabrae v")
        editor.wait_for_status("Opened stripes.png")
        return editor

    def serve(self, answer=lambda request: Answer()):
        return self.enterContext(Server(self.credentials / "server.pem", answer))
