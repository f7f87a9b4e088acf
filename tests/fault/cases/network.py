# SPDX-License-Identifier: Apache-2.0
"""The network between lkbench and the server is cut, and healed again."""

import signal

import checks
from arena import TABLES, pause, tried_next
from lkbench import CANNOT, FAILURES, TERMINATED
from network import Network
from processes import eventually, expect
from server import PASSWORD

LINK = 4  # seconds, --link-timeout of the target
END = LINK + 8  # seconds from the cut to lkbench's end: the time itself, a question's period, reporting, a busy machine
SCALE, BATCH = 200, 500  # a load of several seconds


def _world(arena):
    network = Network()
    arena.at_end(network.close)
    server = arena.own_server(address=network.server_address, prefix=network.server_prefix)
    target = f"{server.target}?tls=off&link-timeout={LINK}&connect-timeout={LINK}"
    return network, server, arena.bench(target, PASSWORD, network.client_prefix)


def _cut(arena, cut, heal, server, bench, work):
    """One verb whose network is cut at a random moment. Returns what it was and the seconds to its end."""
    bench.do("create", "--tables", TABLES)
    bench.do("load", "--scale", 1)
    users = 32 if work == "workload" else TABLES
    drive = ("--duration", "60s", "--on-disconnect", "stop", "--mix", "insert=1,update=0,delete=0")
    flags = ("--scale", SCALE) if work == "load" else drive
    running = bench.start(work, "--users", users, *flags)
    eventually(lambda: "Started loading" in running.printed() or " tx/s" in running.printed(), 15, "no work begins")
    pause(arena.moment(0.1, 0.8), running)
    cut()
    try:
        ended = running.wait(END).require(CANNOT if work == "load" else FAILURES).lines(2, bench.target)
        bench.run("check", bound=END).require(CANNOT).lines(1, bench.target, "can it be reached")
    finally:
        heal()
    _require_kept(server, ended, work, users)
    return ended.seconds


def _require_kept(server, ended, work, users):
    with server.session() as session:
        eventually(lambda: _sessions(session) == 0, 60, "the server keeps the sessions of a client that is gone")
        if work == "load":
            checks.require_batches(session, TABLES, TABLES, 1, SCALE, BATCH)
        else:
            acknowledged, there = ended.row_count("Insert"), checks.inserted_rows(session, TABLES, 1)
            expect(0 < acknowledged <= there <= acknowledged + users, f"{acknowledged} acknowledged, {there} are there")


def _sessions(session):
    return session.number("SELECT COUNT(*) FROM information_schema.PROCESSLIST WHERE USER = 'bench'")


def _both(arena, cut_name, heal_name):
    network, server, bench = _world(arena)
    # What the server keeps of a client that is gone holds locks; it finds out by questions of its own.
    with server.session(schema="mysql") as session:
        session.rows(f"SET GLOBAL tcp_keepalive_time={LINK}, GLOBAL tcp_keepalive_interval=1, "
                     "GLOBAL tcp_keepalive_probes=2, GLOBAL net_write_timeout=5")
    for work, verb in (("load", "load"), ("workload", "refresh")):
        _cut(arena, getattr(network, cut_name), getattr(network, heal_name), server, bench, work)
        with server.session() as session:
            tried_next(bench, session, verb, 2)
    return f"load and workload ended within {END} s (link-timeout {LINK} s), one line; worked after healing; lost 0"


def cable(arena):
    return _both(arena, "pull_cable", "plug_in")


def blackhole(arena):
    return _both(arena, "lose_everything", "find_again")


def stop_in_blackhole(arena):
    """SIGTERM while every call hangs: the link's own time ends it, a second signal ends it at once."""
    network, server, bench = _world(arena)
    bench.do("create", "--tables", TABLES)
    bench.do("load", "--scale", 1)
    seconds = []
    for signals in (1, 2):
        running = bench.start("workload", "--users", 8, "--duration", "60s")
        eventually(lambda: " tx/s" in running.printed(), 15, "no work begins")
        network.lose_everything()
        pause(0.3, running)
        for _ in range(signals):
            running.signal(signal.SIGTERM)
            pause(0.2, running)
        ended = running.wait(END if signals == 1 else 3).require(TERMINATED).lines(2, "stopping")
        seconds.append(ended.seconds)
        network.find_again()
    bench.do("refresh", "--scale", 0, bound=60)
    bench.do("drop")
    with server.session() as session:
        checks.require_empty(session)
    return f"one signal: over after {seconds[0]:.1f} s; two: after {seconds[1]:.1f} s, counted from the start; lost 0"


CASES = {"network-cable": cable, "network-blackhole": blackhole, "network-blackhole-stopped": stop_in_blackhole}
