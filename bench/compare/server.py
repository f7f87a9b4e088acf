# SPDX-License-Identifier: Apache-2.0
"""The private server that all contestants of a comparison work on."""
import pathlib
import shutil
import subprocess

import programs


class Server:
    """A server in a folder of its own, made anew; stopped at the end of the `with`."""

    def __init__(self, serve, folder, *arguments):
        self._command = [str(serve), str(folder), *arguments]
        self.folder = pathlib.Path(folder)
        self._process = None

    def __enter__(self):
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.parent.mkdir(parents=True, exist_ok=True)
        self._process = subprocess.Popen(self._command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        told = dict(self._process.stdout.readline().rstrip("\n").partition("=")[::2] for _ in range(4))
        if "pid" not in told:
            self._process.wait()
            raise programs.Broken(f"no private server in {self.folder}: serve_local says why above")
        self.socket, self.user, self.schema, self.pid = told["socket"], told["user"], told["schema"], int(told["pid"])
        return self

    def __exit__(self, *_):
        self._process.stdin.close()
        self._process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    def cpu_seconds(self):
        return programs.cpu_seconds_of(self.pid)

    def sql(self, text):
        """Runs statements; rows as lists of texts."""
        command = ["mariadb", "--no-defaults", "--default-character-set=utf8mb4", "-NB", "-S", self.socket, "-u", self.user,
                   self.schema, "-e", text]
        return [line.split("\t") for line in programs.run(command).output.splitlines()]

    def settings(self):
        """Those that figures depend on."""
        names = ("version", "innodb_flush_log_at_trx_commit", "innodb_buffer_pool_size", "innodb_log_file_size",
                 "innodb_doublewrite", "log_bin")
        wanted = ", ".join(f"'{name}'" for name in names)
        return dict(self.sql(f"SHOW GLOBAL VARIABLES WHERE Variable_name IN ({wanted})"))
