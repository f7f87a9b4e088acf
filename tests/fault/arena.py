# SPDX-License-Identifier: Apache-2.0
"""What every case works with: a folder, a seed, fresh data, and the verbs that must work after a fault."""

import random
import shutil
import time

import checks
from lkbench import DONE, USAGE, Lkbench
from processes import expect
from server import PASSWORD, Joined, LocalFolder, OwnServer, end_all

TABLES = 4


class NotAllowed(Exception):
    """The machine does not let us cause this fault: the text says what is missing."""


class Arena:
    """One case's. Everything it makes is below `folder`."""

    def __init__(self, name, binary, work, fresh_data, seed):
        self.folder = work / name
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir(parents=True)
        self.binary, self.fresh_data = binary, fresh_data
        self.random = random.Random(f"{seed} {name}")
        self._at_end, self._made = [], 0

    def at_end(self, action):
        self._at_end.append(action)

    def close(self):
        for action in reversed(self._at_end):
            action()
        end_all(self.folder)
        shutil.rmtree(self.folder, ignore_errors=True)

    def new_name(self, what):
        self._made += 1
        return self.folder / f"{what}{self._made}"

    def own_server(self, **more):
        server = OwnServer(self.new_name("server"), self.fresh_data, **more)
        self.at_end(server.stop)
        return server

    def bench(self, target, password="", prefix=()):
        return Lkbench(self.binary, self.folder / "runs", target, password, prefix)

    def served(self, **more):
        """A server of our own and lkbench on it, by TCP on loopback."""
        server = self.own_server(**more)
        return server, self.bench(server.target, PASSWORD)

    def local(self, path=None, with_data=True):
        """A local folder and lkbench on it. Data that are there spare the time of making them."""
        folder = LocalFolder(path or self.new_name("db"))
        if with_data:
            folder.path.mkdir(mode=0o700, parents=True, exist_ok=True)
            shutil.copytree(self.fresh_data, folder.path / "data")
            (folder.path / "localdb.lock").touch()
        return folder, self.bench(folder.target)

    def moment(self, least, most):
        return self.random.uniform(least, most)


def pause(seconds, running):
    """Sleeps unless what is watched ends before."""
    end = time.monotonic() + seconds
    while time.monotonic() < end and not running.has_ended():
        time.sleep(0.005)


VERBS = ("load", "refresh", "drop", "load --use-backup")


def tried_next(bench, session, verb, scale, count=TABLES, worked_on=0):
    """After a fault: `verb` comes first and works without hand-work, then the others do.

    `worked_on`: up to this scale a workload may have deleted rows.
    """
    if verb.startswith("load"):
        bench.do(*verb.split(), "--scale", scale)
        checks.require_whole(session, count, scale, worked_on)
        bench.do("refresh", "--scale", 1, "--use-backup")
        checks.require_whole(session, count, 1, worked_on)
    elif verb == "refresh":
        _refresh_first(bench, session, scale, count)
    bench.do("drop")
    checks.require_empty(session)
    if verb == "drop":
        bench.do("create", "--tables", count)
        bench.do("load", "--scale", 1)
        checks.require_whole(session, count, 1)
        bench.do("drop")
        checks.require_empty(session)


# A load through the backup that was broken off has to be loaded first: refresh says so.
def _refresh_first(bench, session, scale, count):
    ended = bench.run("refresh")
    if ended.code == USAGE:
        ended.lines(1, "run `lkbench load` first")
        bench.do("load", "--scale", scale)
    else:
        ended.require(DONE)
    bench.do("refresh")
    found = checks.state(session)
    for number in range(1, count + 1):
        loaded = round(checks.ROWS * float(found.get(f"table.{number}.scale", 0)))
        rows = checks.rows_of(session, f"LK_REP_TABLE{number}")
        expect(rows[0] <= loaded and rows[2] <= loaded, f"table {number} is refreshed to {loaded}, it holds {rows}")


def finish_local(folder, bench, verb, scale, worked_on=0):
    """tried_next on a local folder, and nothing of it left afterwards. Returns the seconds of the recovery."""
    with Joined(folder, bench) as joined:
        with folder.session() as session:
            tried_next(bench, session, verb, scale, worked_on=worked_on)
    folder.require_quiet()
    return joined.recovery
