# SPDX-License-Identifier: GPL-3.0-or-later
"""The sockets that processes hold, as the system lists them."""

import os
import re
from pathlib import Path

# As /proc/net tells them: TCP's state of listening, the state of a UDP socket that talks to nobody
# in particular, and the flag of a local socket that takes connections.
TCP_LISTENS = 0x0A
UDP_IS_OPEN = 0x07
LOCAL_LISTENS = 0x00010000


def inodes(pids):
    """Those of all sockets that the processes hold."""
    found = set()
    for pid in pids:
        folder = Path(f"/proc/{pid}/fd")
        for entry in folder.iterdir() if folder.exists() else ():
            try:
                match = re.fullmatch(r"socket:\[(\d+)\]", os.readlink(entry))
            except FileNotFoundError:
                continue
            if match:
                found.add(int(match[1]))
    return found


def _rows(table):
    file = Path("/proc/net") / table
    return [line.split() for line in file.read_text().splitlines()[1:]] if file.exists() else []


def on_the_network(pids):
    """What of the processes' takes packets or connections from the network: (table, address)."""
    held = inodes(pids)
    found = []
    for table, waiting in (("tcp", TCP_LISTENS), ("tcp6", TCP_LISTENS), ("udp", UDP_IS_OPEN),
                           ("udp6", UDP_IS_OPEN), ("raw", None), ("raw6", None)):
        for row in _rows(table):
            if int(row[9]) in held and waiting in (None, int(row[3], 16)):
                found.append((table, row[1]))
    return found


def local(pids):
    """The names of the processes' local sockets that take connections; one that begins with "@" has
    no file, so that nobody can be kept from it."""
    held = inodes(pids)
    return [row[7] if len(row) > 7 else "" for row in _rows("unix")
            if int(row[6]) in held and int(row[3], 16) & LOCAL_LISTENS]
