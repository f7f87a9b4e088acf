# SPDX-License-Identifier: Apache-2.0
"""What a virtual user takes of memory beyond its connection, and whether that grows with time."""
import time

import figures
import programs
import results
from lkbench import Lkbench

TITLE = "memory of virtual users"

_USERS = (1, 16, 64, 128, 256)
_SECONDS = 6  # of each workload
_LONG_USERS = 64
_LONG_SECONDS = 40
_EARLY = 20  # by then the working set of the long workload is there
_KIB = 1024


def _of_workload(lkbench, users, seconds):
    """[(seconds since the workload began, bytes)] of a workload, from its first line of progress to its end."""
    command = lkbench.whole_command("workload", "--users", users, "--duration", f"{seconds}s", "--log-level", "info")
    samples = []
    with programs.Background(command) as workload:
        while not workload.line().lstrip().startswith("1 s"):
            pass
        began = time.monotonic()
        while time.monotonic() - began < seconds - 1.5:
            samples.append((1 + time.monotonic() - began, workload.resident_bytes()))
            time.sleep(0.1)
        while "elapsed" not in workload.line():
            pass
    return samples


def _of_connections(bench, server, number):
    command = [bench.program("bare_idle"), server.socket, server.user, server.schema, number]
    with programs.Background(command) as idle:
        idle.line()
        return idle.resident_bytes()


def run(bench):
    with bench.server("--innodb-flush-log-at-trx-commit=2") as server:
        lkbench = Lkbench(bench, server)
        lkbench.create_anew()
        lkbench.load()
        ours, bare = [], []
        for users in _USERS:
            ours.append((users, max(size for _, size in _of_workload(lkbench, users, _SECONDS)) / _KIB))
            bare.append((users, _of_connections(bench, server, users) / _KIB))
            bench.say(f"{users} users: lkbench {ours[-1][1]:,.0f} KiB, bare connections {bare[-1][1]:,.0f} KiB")
        long = _of_workload(lkbench, _LONG_USERS, _LONG_SECONDS)
        settings = server.settings()
    early = max(size for at, size in long if at < _EARLY) / _KIB
    late = max(size for _, size in long) / _KIB
    beyond = figures.slope(ours) - figures.slope(bare)
    goals = [results.Goal("memory of a virtual user", "its connection alone", "<=", 256, figures.figure([beyond]), "KiB more"),
             results.Goal(f"memory of {_LONG_USERS} users after {_LONG_SECONDS} s", f"after {_EARLY} s", "<=", 1.05,
                          figures.figure([late / early]))]

    def line(label, points):
        return {"label": label, "x": "users", "y": "KiB", "points": [[x, y, y, y] for x, y in points]}
    return results.result(
        unit="user", goals=goals, settings=settings, series=[line("lkbench workload", ours), line("bare connections", bare)],
        notes=["Own memory (anonymous pages) of a process: a workload of the default job with so many users, and a program "
               f"that holds so many connections. A user of the workload takes {figures.slope(ours):.0f} KiB, a connection "
               f"{figures.slope(bare):.0f} KiB (slopes of the lines)."])
