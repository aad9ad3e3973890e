# SPDX-License-Identifier: GPL-3.0-or-later
"""What a process leaves behind or shows of itself to others: files, arguments, environment, core."""

import base64
import resource
import signal
import struct
from pathlib import Path

CORE_PATTERN = Path("/proc/sys/kernel/core_pattern")
PT_LOAD = 1
PROGRAM_HEADER = struct.Struct("<IIQQQQQQ")


def forms(secret):
    """The ways in which a text may stand in a file."""
    plain = secret.encode()
    # In base64 what comes before shifts it: the part that is the same for each shift.
    shifted = [base64.b64encode(b"x" * shift + plain)[4:-4] for shift in range(3)]
    return [plain, secret.encode("utf-16-le"), secret.encode("utf-16-be"), plain.hex().encode(),
            plain.hex().upper().encode(), *shifted]


def files_with(secret, folder):
    """How many files there are below a folder, and those among them that hold the secret."""
    sought, count, found = forms(secret), 0, []
    for file in folder.rglob("*"):
        if file.is_symlink() or not file.is_file():
            continue
        try:
            content = file.read_bytes()
        except FileNotFoundError:
            continue
        count += 1
        if any(form in content for form in sought):
            found.append(file)
    return count, found


def arguments(pid):
    return Path(f"/proc/{pid}/cmdline").read_bytes()


def environment(pid):
    return Path(f"/proc/{pid}/environ").read_bytes()


def dumps_cores():
    """What a program has to be started with to leave a core where it is started."""
    def allow():
        resource.setrlimit(resource.RLIMIT_CORE, (resource.RLIM_INFINITY, resource.RLIM_INFINITY))
    return {"preexec_fn": allow}


def environment_in_core(process, folder):
    """Ends a program that was started in `folder` to dump cores, and returns the environment block
    as the core holds it. Where cores go elsewhere, as the memory held it that would be dumped."""
    fields = Path(f"/proc/{process.pid}/stat").read_text().rpartition(")")[2].split()
    start, end = int(fields[47]), int(fields[48])
    with Path(f"/proc/{process.pid}/mem").open("rb", buffering=0) as memory:
        memory.seek(start)
        in_memory = memory.read(end - start)
    process.send_signal(signal.SIGABRT)
    process.wait(120)
    if CORE_PATTERN.read_text().startswith("|"):
        return in_memory
    (file,) = folder.glob("core*")
    with file.open("rb") as core:
        in_core = read_memory(core, start, end - start)
    file.unlink()
    return in_core


def read_memory(core, address, size):
    """Bytes at an address of the process whose core this is: a 64-bit ELF file."""
    header = core.read(64)
    (table,) = struct.unpack_from("<Q", header, 32)
    (count,) = struct.unpack_from("<H", header, 56)
    core.seek(table)
    segments = [PROGRAM_HEADER.unpack(core.read(PROGRAM_HEADER.size)) for _ in range(count)]
    for kind, _, offset, place, _, length, _, _ in segments:
        if kind == PT_LOAD and place <= address and address + size <= place + length:
            core.seek(offset + address - place)
            return core.read(size)
    raise LookupError(f"the core holds no memory at {address:#x}")
