# SPDX-License-Identifier: Apache-2.0
"""Many users: the mixed workload by lkbench, and the same statements on the same tables by sysbench."""
import figures
import results
import runner
import workload
from lkbench import Lkbench

TITLE = "many users against sysbench"

_SCALE = 40  # 160,000 rows: a turn deletes a tenth of them
_USERS = (1, 2, 4, 16, 64, 256)
_MIX = "insert=40,update=40,delete=20"


def run(bench):
    with bench.server(*workload.SERVER) as server:
        work = workload.Workload(bench, server, Lkbench(bench, server), _SCALE, 3)
        contestants = [each for users in _USERS for each in _contestants(work, users)]
        turns = runner.alternate(contestants, bench.rounds(3), server, bench.say)
        settings = server.settings()

    goals = [results.Goal(f"workload, {users} user{'s' if users > 1 else ''}", "sysbench, as many threads, statements a second", ">=", 0.9,
                          runner.rate_ratio(turns, f"lkbench, {users}", f"sysbench, {users}")) for users in _USERS]
    goals.append(results.Goal("workload, from 16 to 256 users", "the same of sysbench", ">=", 0.9,
                              figures.paired_ratio(_kept(turns, "lkbench"), _kept(turns, "sysbench"))))
    return results.result(
        unit="statement", goals=goals, settings=settings, contestants=contestants, turns=turns,
        series=[{"label": name, "x": "users", "log_x": True, "points": _points(turns, name)}
                for name in ("lkbench", "sysbench")],
        notes=["sysbench runs bench/sysbench/replication.lua: its own scripts make other statements on narrower tables, "
               "which says nothing of this workload. The script makes those of lkbench, on the tables that lkbench has "
               "created and loaded, in the same mix; it takes its values from rows read beforehand and does not remember "
               "rows that it has inserted.",
               "The tables are made and loaded anew for every turn: a statement that finds no row costs a server less.",
               workload.NOTE])


def _contestants(work, users):
    return [runner.Contestant(f"lkbench, {users}", work.lkbench_command(users, _MIX),
                              lambda: work.lkbench(users, _MIX, "statement"), work.load),
            runner.Contestant(f"sysbench, {users}", f"sysbench bench/sysbench/replication.lua --threads={users} run",
                              lambda: work.sysbench_script(users), work.load)]


def _kept(turns, name):
    """How much of the rate with 16 users is left with 256, for each round."""
    return [many / few for many, few in zip(runner.rates(turns, f"{name}, 256"), runner.rates(turns, f"{name}, 16"))]


def _points(turns, name):
    points = []
    for users in _USERS:
        rate = figures.figure(runner.rates(turns, f"{name}, {users}"))
        points.append([users, rate.median, rate.low, rate.high])
    return points
