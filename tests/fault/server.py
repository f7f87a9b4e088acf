# SPDX-License-Identifier: Apache-2.0
"""Servers under lkbench: one that the faults start by hand, and the private one of a local folder."""

import fcntl
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import time

from processes import Broken, eventually, expect, is_running, of_folder, parent_of
from wire import Session, SqlError

START = 60  # seconds: recovery included
ACCOUNT, PASSWORD = "bench", "fault-bench"


def find_server():
    for folder in [*os.environ.get("PATH", "").split(":"), "/usr/sbin", "/usr/bin"]:
        if os.access(f"{folder}/mariadbd", os.X_OK):
            return f"{folder}/mariadbd"
    raise Broken("the program mariadbd was not found: install the package mariadb-server-core")


class OwnServer:
    """A mariadbd on a copy of fresh data: reached by TCP on `address`, by us by its unix socket."""

    def __init__(self, folder, fresh_data, address="127.0.0.1", prefix=(), arguments=()):
        self.folder = pathlib.Path(folder)
        self.folder.mkdir(parents=True)
        shutil.copytree(fresh_data, self.folder / "data")
        self.address, self.port = address, _free_port()
        self._prefix, self._arguments = list(prefix), list(arguments)
        self._process = None
        self.start()
        with self.session(schema="mysql") as session:
            session.rows(f"CREATE USER {ACCOUNT}@'%' IDENTIFIED BY '{PASSWORD}'")
            session.rows(f"GRANT ALL ON lkbench.* TO {ACCOUNT}@'%'")

    @property
    def target(self):
        return f"mariadb://{ACCOUNT}@{self.address}:{self.port}/lkbench"

    @property
    def pid(self):
        return self._process.pid

    def start(self):
        """Starts it; returns the seconds until it answers, its recovery included."""
        begin = time.monotonic()
        with open(self.folder / "log", "ab") as log:
            self._process = subprocess.Popen(
                [*self._prefix, find_server(), "--no-defaults", f"--datadir={self.folder}/data",
                 f"--socket={self.folder}/socket", f"--pid-file={self.folder}/pid", f"--bind-address={self.address}",
                 f"--port={self.port}", "--user=root", "--lower-case-table-names=1", "--innodb-log-file-size=64M",
                 "--character-set-server=utf8mb4", "--collation-server=utf8mb4_nopad_bin", "--skip-name-resolve",
                 "--max-prepared-stmt-count=1048576", "--use-stat-tables=NEVER", *self._arguments],
                stdin=subprocess.DEVNULL, stdout=log, stderr=log, start_new_session=True,
            )
        eventually(self._answers, START, f"the server in {self.folder} does not answer")
        return time.monotonic() - begin

    def kill(self):
        self._process.kill()
        self._process.wait()

    def stop(self):
        if self._process.poll() is None:
            self._process.terminate()
        try:
            self._process.wait(30)
        except subprocess.TimeoutExpired:
            self.kill()

    def session(self, **more):
        return Session(self.folder / "socket", **more)

    def _answers(self):
        expect(self._process.poll() is None, f"the server in {self.folder} ended while it started")
        try:
            self.session(schema="mysql").close()
            return True
        except (OSError, SqlError):
            return False


def _free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class LocalFolder:
    """The folder of a `local:` target, looked at from outside."""

    def __init__(self, path):
        self.path = pathlib.Path(path)

    @property
    def target(self):
        return f"local:{self.path}"

    def server(self):
        """The server's process number; None while none answers."""
        try:
            pid = int((self.path / "server.pid").read_text())
        except (OSError, ValueError):
            return None
        return pid if is_running(pid) else None

    def keeper(self):
        server = self.server()
        return parent_of(server) if server else None

    def session(self, **more):
        return Session(self.path / "mariadb.sock", **more)

    def require_quiet(self):
        """Nothing runs, nothing is held, nothing is left of a run. Returns the seconds that this took."""
        seconds = eventually(lambda: not of_folder(self.path), START, f"processes are left on {self.path}")
        left = [name for name in ("mariadb.sock", "server.pid", "create.sql") if (self.path / name).exists()]
        expect(not left, f"{self.path} still holds {left}")
        for name in ("localdb.lock", "users.lock", "server.lock"):
            with open(self.path / name, "rb") as file:
                fcntl.flock(file, fcntl.LOCK_EX | fcntl.LOCK_NB)
        return seconds


class Joined:
    """Keeps the private server of a folder running while it lives, as a further lkbench would."""

    def __init__(self, folder, bench):
        self._folder, self._bench = folder, bench
        self.recovery = 0.0

    def __enter__(self):
        self._users = open(self._folder.path / "users.lock", "rb")
        try:
            begin = time.monotonic()
            eventually(self._share, START, "the folder's users' lock cannot be shared")
            self._bench.do("check")
            self.recovery = time.monotonic() - begin
        except BaseException:
            self._users.close()
            raise
        return self

    def __exit__(self, *_):
        self._users.close()

    def _share(self):
        try:
            fcntl.flock(self._users, fcntl.LOCK_SH | fcntl.LOCK_NB)
            return True
        except BlockingIOError:
            return False


def end_all(folder):
    """Ends what still runs on a folder after a case that broke."""
    for pid in of_folder(folder):
        try:
            os.kill(pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
