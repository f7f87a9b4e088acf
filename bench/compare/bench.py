# SPDX-License-Identifier: Apache-2.0
"""What a comparison is given: the programs, a folder to work in, and where to tell its progress."""
import pathlib
import shutil
import sys

import programs
import server

SYSTEM_PROGRAMS = {"mariadb": "mariadb-client-core", "sysbench": "sysbench"}


class Bench:
    def __init__(self, binaries, work, rounds=None):
        self._binaries = pathlib.Path(binaries)
        self.work = pathlib.Path(work).resolve()
        self.work.mkdir(parents=True, exist_ok=True)
        self._rounds = rounds

    def rounds(self, default):
        """How often contestants alternate: what the command line asks for, or what the comparison wants."""
        return self._rounds or default

    def program(self, name):
        """One of ours, built before."""
        file = self._binaries / name
        if not file.exists():
            raise programs.Broken(f"{file} is not built: `make bench` builds it")
        return file.resolve()

    def require(self, name):
        """One of Debian's."""
        if not shutil.which(name):
            raise programs.Broken(f"{name} is not installed: apt-get install {SYSTEM_PROGRAMS.get(name, name)}")
        return name

    def server(self, *arguments, folder="db"):
        """A private server, to be used in a `with`. Arguments are options of mariadbd beyond those of every local
        database."""
        self.require("mariadb")
        return server.Server(self.program("serve_local"), self.work / folder, *arguments)

    @staticmethod
    def say(text):
        print(f"    {text}", flush=True)

    @staticmethod
    def heading(text):
        print(text, flush=True)

    @staticmethod
    def fail(text):
        print(f"bench: {text}", file=sys.stderr, flush=True)
