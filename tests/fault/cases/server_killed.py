# SPDX-License-Identifier: Apache-2.0
"""The server is killed while lkbench loads or works, and started again."""

import signal

import checks
from arena import TABLES, VERBS, finish_local, pause, tried_next
from lkbench import CANNOT, DONE, FAILURES
from processes import eventually, expect, signal_if_running

END = 15  # seconds within which lkbench must have noticed
BATCH = 500
SCALE = 200  # a load of several seconds


def during_load(arena):
    server, bench = arena.served()
    worst = loaded = 0
    for number, verb in enumerate(VERBS):
        users = TABLES * (1 + number % 2)
        bench.do("create", "--tables", TABLES)
        running = bench.start("load", "--scale", SCALE, "--users", users)
        eventually(lambda: "Started loading" in running.printed(), END, "the load does not begin")
        pause(arena.moment(0.1, 1.2), running)
        server.kill()
        running.wait(END).require(CANNOT).lines(2, bench.target, "run `lkbench load` again")
        worst = max(worst, server.start())
        with server.session() as session:
            loaded += checks.require_batches(session, TABLES, users, 0, SCALE, BATCH)
            tried_next(bench, session, verb, SCALE)
    return f"{len(VERBS)} kills, {loaded:,} rows committed, in whole batches; server back in {worst:.1f} s; lost 0"


def during_workload(arena):
    server, bench = arena.served(arguments=["--max-connections=500"])
    worst = acknowledged = 0
    for users, verb in ((64, "load"), (8, "refresh")):
        bench.do("create", "--tables", TABLES)
        bench.do("load", "--scale", 1)
        running = bench.start("workload", "--users", users, "--duration", "60s", "--on-disconnect", "stop",
                              "--mix", "insert=1,update=0,delete=0")
        eventually(lambda: " tx/s" in running.printed(), END, "the workload does not begin")
        pause(arena.moment(0.1, 1.5), running)
        server.kill()
        ended = running.wait(END).require(FAILURES).lines(2, bench.target)
        worst = max(worst, server.start())
        with server.session() as session:
            acknowledged += _require_inserts(session, ended, users)
            tried_next(bench, session, verb, 2)
    return f"64 and 8 users, {acknowledged:,} acknowledged inserts, all there; server back in {worst:.1f} s; lost 0"


def _require_inserts(session, ended, users):
    acknowledged = ended.row_count("Insert")
    there = checks.inserted_rows(session, TABLES, 1)
    expect(acknowledged > 0, "no insert was acknowledged before the fault")
    kept = acknowledged <= there <= acknowledged + users
    expect(kept, f"{acknowledged} inserts were acknowledged, {there} are there")
    return acknowledged


def private_server(arena):
    """The server of a local folder, killed in a load and in a workload: the next lkbench starts it anew."""
    folder, bench = arena.local()
    worst = 0.0
    for verb, work in (("load", "load"), ("refresh", "workload"), ("drop", "load")):
        bench.do("create", "--tables", TABLES)
        if work == "workload":
            bench.do("load", "--scale", 1)
        flags = ("--scale", SCALE) if work == "load" else ("--duration", "60s", "--on-disconnect", "stop", "--users", 8)
        running = bench.start(work, *flags)
        sign = "Started loading" if work == "load" else " tx/s"
        eventually(lambda: sign in running.printed(), END, "no work begins")
        pause(arena.moment(0.1, 1.0), running)
        signal_if_running(folder.server(), signal.SIGKILL)
        running.wait(END).require(CANNOT if work == "load" else FAILURES).lines(2, bench.target)
        scale, worked_on = (SCALE, 0) if work == "load" else (2, 1)
        worst = max(worst, finish_local(folder, bench, verb, scale, worked_on))
    return f"3 kills in load, workload, load; the next lkbench works after {worst:.1f} s; lost 0"


def keeper(arena):
    """The keeper dies: the kernel ends the server, and the next lkbench starts both anew."""
    folder, bench = arena.local()
    bench.do("create", "--tables", TABLES)
    running = bench.start("load", "--scale", SCALE)
    eventually(lambda: "Started loading" in running.printed(), END, "the load does not begin")
    pause(arena.moment(0.1, 1.0), running)
    signal_if_running(folder.keeper(), signal.SIGKILL)
    running.wait(END).require(CANNOT).lines(2, bench.target)
    recovery = finish_local(folder, bench, "load", SCALE)
    return f"the server ended with it; the next lkbench works after {recovery:.1f} s; lost 0"


def between_verbs(arena):
    """A server that is restarted between two verbs: nobody notices."""
    server, bench = arena.served()
    steps = [("create", "--tables", TABLES), ("load", "--scale", 2), ("workload", "--duration", "1s"),
             ("refresh",), ("drop",)]
    for number, step in enumerate(steps):
        bench.do(*step)
        if number % 2 == 0:
            server.stop()
        else:
            server.kill()
        server.start()
    with server.session() as session:
        checks.require_empty(session)
    return f"{len(steps)} restarts, in order and by kill in turn; every verb ended with {DONE}; lost 0"


CASES = {
    "server-killed-load": during_load,
    "server-killed-workload": during_workload,
    "server-killed-private": private_server,
    "keeper-killed": keeper,
    "server-restarted": between_verbs,
}
