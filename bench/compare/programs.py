# SPDX-License-Identifier: Apache-2.0
"""Programs that are measured: started, waited for, their processor time taken from the kernel."""
import dataclasses
import os
import pathlib
import shlex
import subprocess
import tempfile
import time


class Broken(Exception):
    """One line: what went wrong and where."""


@dataclasses.dataclass(frozen=True)
class Run:
    output: str
    seconds: float  # from start to end
    cpu_seconds: float  # of the process and the children it waited for


def _environment(extra):
    """That of this process, without settings of the programs that somebody may have exported."""
    own = {name: value for name, value in os.environ.items() if not name.startswith(("LKBENCH_", "OCIMARIADB_"))}
    return own | (extra or {})


def text_of(command):
    """A command as it is shown: programs by their names, folders of this run left out."""
    return " ".join(shlex.quote(word) for word in [pathlib.Path(command[0]).name, *map(str, command[1:])])


def run(command, patience=180, variables=None):
    """Runs a program to its end. Output and errors come together. Raises Broken when it fails or takes too long."""
    command = [str(word) for word in command]
    with tempfile.TemporaryFile() as output:
        began = time.monotonic()
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT,
                                   env=_environment(variables))
        status, usage = _wait(process, began + patience)
        seconds = time.monotonic() - began
        output.seek(0)
        text = output.read().decode(errors="replace")
    if status is None:
        raise Broken(f"`{text_of(command)}` did not end within {patience} s")
    if status != 0:
        last = text.strip().splitlines()[-1:] or ["no output"]
        raise Broken(f"`{text_of(command)}` ended with {status}: {last[0]}")
    return Run(text, seconds, usage.ru_utime + usage.ru_stime)


def _wait(process, deadline):
    """(exit code, resource usage); (None, usage) after the deadline, and then the process is killed."""
    late = False
    while True:
        pid, status, usage = os.wait4(process.pid, os.WNOHANG if not late else 0)
        if pid:
            process.returncode = os.waitstatus_to_exitcode(status)
            return (None if late else process.returncode), usage
        if time.monotonic() > deadline:
            process.kill()
            late = True
        time.sleep(0.002)


def cpu_seconds_of(pid):
    """The processor time that a living process has used so far."""
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def resident_bytes_of(pid):
    """The memory of a process that is its own (anonymous pages), not that of files it has mapped; 0 once it has ended."""
    try:
        lines = pathlib.Path(f"/proc/{pid}/status").read_text().splitlines()
    except FileNotFoundError:
        return 0
    return next((int(line.split()[1]) * 1024 for line in lines if line.startswith("RssAnon:")), 0)


class Background:
    """A program that runs while others are measured; ended, if it has not by itself, at the end of the `with`."""

    def __init__(self, command):
        self._command = [str(word) for word in command]

    def __enter__(self):
        self._process = subprocess.Popen(self._command, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                         stderr=subprocess.STDOUT, text=True, env=_environment(None))
        return self

    def __exit__(self, *_):
        self._process.stdin.close()
        try:
            self._process.wait(60)
        except subprocess.TimeoutExpired:
            self._process.kill()
            self._process.wait()
        self._process.stdout.close()

    def line(self):
        """The next line of output."""
        line = self._process.stdout.readline()
        if not line:
            raise Broken(f"`{text_of(self._command)}` ended with {self._process.wait()}")
        return line.rstrip("\n")

    def resident_bytes(self):
        return resident_bytes_of(self._process.pid)
