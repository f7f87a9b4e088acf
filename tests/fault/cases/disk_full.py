# SPDX-License-Identifier: Apache-2.0
"""The disk below a local folder is full: while a load writes, and while the folder is made."""

import checks
from arena import TABLES, finish_local, tried_next
from lkbench import CANNOT
from processes import expect
from server import Joined, LocalFolder
from space import SmallDisk

SCALE, BATCH = 60, 500
END = 180  # seconds: a server without space tries again for a while


def _disk(arena, megabytes):
    disk = SmallDisk(arena.new_name("disk"), megabytes)
    arena.at_end(disk.close)
    return disk


def during_load(arena):
    """Space is made by enlarging the disk; then the load goes on where it ended."""
    disk = _disk(arena, 400)
    folder, bench = arena.local(disk.path / "db")
    bench.do("create", "--tables", TABLES)
    used = 400 - disk.free()
    disk.resize(used + 12)
    ended = bench.run("load", "--scale", SCALE, bound=END).require(CANNOT)
    # A line of each table that cannot grow, of the server that gives up, of the load's end, of the reason.
    ended.lines(TABLES + 3, "run `lkbench load` again", "MB of space left: make some")
    expect(disk.free() < 8, f"the disk has {disk.free()} MB left: the fault did not come")
    disk.resize(600)
    with Joined(folder, bench) as joined, folder.session() as session:
        loaded = checks.require_batches(session, TABLES, TABLES, 0, SCALE, BATCH)
        tried_next(bench, session, "load", SCALE)
    folder.require_quiet()
    return (f"load ended after {ended.seconds:.1f} s with {len(ended.problems)} lines; {loaded:,} rows kept in whole "
            f"batches; with space again it works after {joined.recovery:.1f} s; lost 0")


def during_creation(arena):
    """Too little space for the data: told so, and nothing is in the way once there is space."""
    disk = _disk(arena, 40)
    folder = LocalFolder(disk.path / "db")
    bench = arena.bench(folder.target)
    ended = bench.run("create", "--tables", TABLES, bound=END).require(CANNOT).lines(1, str(folder.path), "space")
    disk.resize(400)
    bench.do("create", "--tables", TABLES)
    bench.do("load", "--scale", 1)
    finish_local(folder, bench, "refresh", 1)
    return f"create ended after {ended.seconds:.1f} s with one line; with space again it works; lost 0"


CASES = {"disk-full-load": during_load, "disk-full-create": during_creation}
