# SPDX-License-Identifier: Apache-2.0
"""Looking at processes and waiting for what they do. A process is only ever signalled by its number."""

import os
import pathlib
import time


class Broken(Exception):
    """What was promised does not hold: the text says what."""


def expect(condition, text):
    if not condition:
        raise Broken(text)


def eventually(condition, seconds, text):
    """Waits until the condition holds; returns the seconds that it took."""
    begin = time.monotonic()
    while not condition():
        if time.monotonic() - begin > seconds:
            raise Broken(f"{text} (waited {seconds} s)")
        time.sleep(0.01)
    return time.monotonic() - begin


def is_running(pid):
    try:
        stat = pathlib.Path(f"/proc/{pid}/stat").read_text()
    except OSError:
        return False
    return stat.rpartition(")")[2].split()[0] not in "ZX"


def parent_of(pid):
    return int(pathlib.Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()[1])


def signal_if_running(pid, number):
    try:
        os.kill(pid, number)
    except ProcessLookupError:
        pass


def of_folder(folder):
    """The processes that name the folder in their command line or have a file of it open, our own left out."""
    found = []
    for entry in pathlib.Path("/proc").iterdir():
        if entry.name.isdigit() and int(entry.name) != os.getpid() and _belongs_to(entry, str(folder)):
            found.append(int(entry.name))
    return found


def _belongs_to(entry, folder):
    try:
        if folder.encode() in (entry / "cmdline").read_bytes():
            return is_running(int(entry.name))
        files = [os.readlink(link) for link in (entry / "fd").iterdir()]
    except OSError:
        return False
    return any(file.startswith(folder + "/") for file in files)
