# SPDX-License-Identifier: Apache-2.0
"""The MariaDB server that a page finds at db1:3306: nothing is set but folder and address, as after an installation.
Its administrator is admin, without a password; it listens on loopback and ends with the page."""
import contextlib
import os
import pathlib
import socket
import subprocess
import tempfile
import time

SHOWN = "db1:3306"
SECONDS = 60


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def answers(port):
    with socket.socket() as probe:
        return probe.connect_ex(("127.0.0.1", port)) == 0


def user_option():
    return ["--user=root"] if os.geteuid() == 0 else []


def make_data(folder):
    subprocess.run(["mariadb-install-db", "--no-defaults", f"--datadir={folder}", "--skip-test-db",
                    "--auth-root-authentication-method=normal", *user_option()], check=True, capture_output=True,
                   timeout=SECONDS)


def start(folder, port):
    start_file = folder / "accounts.sql"
    start_file.write_text("CREATE USER admin@'127.0.0.1';\nGRANT ALL ON *.* TO admin@'127.0.0.1' WITH GRANT OPTION;\n")
    log = open(folder / "log", "wb")
    with log:
        process = subprocess.Popen(
            ["/usr/sbin/mariadbd", "--no-defaults", f"--datadir={folder}/data", f"--socket={folder}/socket",
             f"--pid-file={folder}/pid", "--bind-address=127.0.0.1", f"--port={port}", "--skip-name-resolve",
             f"--init-file={start_file}", *user_option()],
            stdin=subprocess.DEVNULL, stdout=log, stderr=log, start_new_session=True)
    end = time.monotonic() + SECONDS
    while not answers(port):
        if process.poll() is not None or time.monotonic() > end:
            process.kill()
            process.wait()
            raise OSError("the server of the page did not start:\n" + (folder / "log").read_text(errors="replace"))
        time.sleep(0.1)
    return process


@contextlib.contextmanager
def servers(wanted):
    """The names that stand for it: pairs of what a page says and what it is."""
    if not wanted:
        yield []
        return
    with tempfile.TemporaryDirectory(prefix="lk-") as name:
        folder, port = pathlib.Path(name), free_port()
        make_data(folder / "data")
        process = start(folder, port)
        try:
            yield [(SHOWN, f"127.0.0.1:{port}"), ("-h db1 ", f"-h 127.0.0.1 -P {port} ")]
        finally:
            process.terminate()
            process.wait(SECONDS)
