# SPDX-License-Identifier: Apache-2.0
"""lkbench is killed or stopped at random moments, alone or with everything that belongs to it."""

import signal
import subprocess
import time

import checks
from arena import TABLES, VERBS, finish_local, tried_next
from lkbench import CANNOT, DONE, FAILURES, INTERRUPTED, KILLED, TERMINATED
from processes import eventually, expect, parent_of, signal_if_running
from server import Joined
from wire import SqlError

MOMENTS = 20
LOADED, SCALE = 3, 30  # before the workload and the refresh; what a load goes for
END = 30


def _prepare(bench, work):
    bench.do("create", "--tables", TABLES)
    if work != "load":
        bench.do("load", "--scale", LOADED)
    if work == "refresh":
        bench.do("load", "--scale", SCALE, "--use-backup")


def _worked_on(work):
    return LOADED if work == "workload" else 0


def _flags(work, moment):
    """Several users and backups take turns."""
    users = ("--users", (1, TABLES, 2 * TABLES)[moment % 3])
    backup = ("--use-backup",) if moment % 2 else ()
    if work == "load":
        return ("--scale", SCALE, *users, *backup)
    if work == "refresh":
        return ("--scale", 1, *users, *backup)
    return ("--duration", "60s", *users)


def _longest(work):
    """Seconds that the work takes about: moments are spread over them."""
    return {"load": 0.9, "workload": 1.2, "refresh": 0.5}[work]


def _on_a_server(arena, work):
    """lkbench alone is killed; the server goes on."""
    server, bench = arena.served()
    killed = 0
    with server.session() as session:
        for moment in range(MOMENTS):
            _prepare(bench, work)
            running = bench.start(work, *_flags(work, moment))
            _wait_for(running, arena.moment(0.0, _longest(work)))
            running.signal(signal.SIGKILL)
            killed += running.wait(END).require(KILLED, DONE).code == KILLED
            eventually(lambda: _others(session) == 0, END, "sessions of a killed lkbench stay")
            tried_next(bench, session, VERBS[moment % 4], SCALE, worked_on=_worked_on(work))
    expect(killed >= MOMENTS // 2, f"only {killed} of {MOMENTS} were killed before their end")
    return f"{killed} of {MOMENTS} died at work; load, refresh and drop went on from each in turn; lost 0"


def _wait_for(running, seconds):
    try:
        running.process.wait(seconds)
    except subprocess.TimeoutExpired:
        pass


def _others(session):
    return session.number("SELECT COUNT(*) FROM information_schema.PROCESSLIST WHERE USER = 'bench'")


def in_load(arena):
    return _on_a_server(arena, "load")


def in_workload(arena):
    return _on_a_server(arena, "workload")


def in_refresh(arena):
    return _on_a_server(arena, "refresh")


def everything(arena):
    """lkbench, keeper and server of a local folder at the same moment, a witness's commits beside them."""
    folder, bench = arena.local()
    recovery, acknowledged = 0.0, 0
    for moment, work in enumerate(("load", "workload", "refresh") * 2):
        _prepare(bench, work)
        running = bench.start(work, *_flags(work, moment))
        eventually(lambda: folder.path.joinpath("mariadb.sock").exists(), END, "no server")
        eventually(lambda: _answers(folder), END, "no answer")
        witness = checks.Witness(folder.session)
        victims = [running.pid, parent_of(folder.server()), folder.server()]
        begin, length = time.monotonic(), arena.moment(0.0, _longest(work))
        witness.commit_until(lambda: time.monotonic() - begin > length)
        arena.random.shuffle(victims)
        for victim in victims:
            signal_if_running(victim, signal.SIGKILL)
        running.wait(END).require(KILLED, CANNOT, FAILURES, DONE)
        with Joined(folder, bench) as joined, folder.session() as session:
            witness.require_kept(session)
            tried_next(bench, session, VERBS[moment // 2 % 4], SCALE, worked_on=_worked_on(work))
        folder.require_quiet()
        recovery, acknowledged = max(recovery, joined.recovery), acknowledged + witness.acknowledged
    return f"6 times; the next lkbench works after {recovery:.1f} s; {acknowledged:,} commits of a witness, lost 0"


def _answers(folder):
    try:
        folder.session().close()
        return folder.server() is not None
    except (OSError, SqlError):
        return False


def local_folder(arena):
    """lkbench of a local folder: its server has to end by itself."""
    folder, bench = arena.local()
    slowest = 0.0
    for moment, work in enumerate(("load", "workload", "refresh") * 2):
        _prepare(bench, work)
        running = bench.start(work, *_flags(work, moment))
        _wait_for(running, arena.moment(0.0, 0.4 + _longest(work)))
        running.signal(signal.SIGKILL)
        running.wait(END).require(KILLED, DONE)
        slowest = max(slowest, folder.require_quiet())
        finish_local(folder, bench, VERBS[moment // 2 % 4], SCALE, worked_on=_worked_on(work))
    return f"6 kills; the server was gone after at most {slowest:.1f} s; lost 0"


def signals(arena):
    """SIGINT and SIGTERM at random moments: the exit code says which, the summary is printed, the rest works."""
    server, bench = arena.served()
    slowest = 0.0
    with server.session() as session:
        for moment, work in enumerate(("load", "workload", "refresh") * 4):
            number, code = ((signal.SIGINT, INTERRUPTED), (signal.SIGTERM, TERMINATED))[moment % 2]
            _prepare(bench, work)
            running = bench.start(work, *_flags(work, moment))
            eventually(lambda: running.printed() or running.has_ended(), END, "nothing is printed")
            _wait_for(running, arena.moment(0.0, _longest(work) * 0.8))
            running.signal(number)
            begin = time.monotonic()
            ended = running.wait(END).require(code, DONE)
            slowest = max(slowest, time.monotonic() - begin)
            if ended.code == code:
                ended.lines(2, "stopping; once more to quit at once")
                expect(work != "workload" or "elapsed " in ended.out, "a stopped workload has no summary")
            tried_next(bench, session, VERBS[moment // 2 % 4], SCALE, worked_on=_worked_on(work))
    return f"12 signals, each with its exit code; over after at most {slowest:.1f} s; lost 0"


CASES = {
    "lkbench-killed-load": in_load,
    "lkbench-killed-workload": in_workload,
    "lkbench-killed-refresh": in_refresh,
    "lkbench-killed-local": local_folder,
    "everything-killed": everything,
    "signals": signals,
}
