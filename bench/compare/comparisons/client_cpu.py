# SPDX-License-Identifier: Apache-2.0
"""What a statement costs the client: lkbench against sysbench's own scripts."""
import results
import runner
import workload
from lkbench import Lkbench

TITLE = "processor time of the client"

_SCALE = 10
_USERS = (1, 16)
_SCRIPTS = {"insert": "oltp_insert", "update": "oltp_update_non_index", "delete": "oltp_delete"}


def run(bench):
    with bench.server(*workload.SERVER) as server:
        work = workload.Workload(bench, server, Lkbench(bench, server), _SCALE, 3)
        work.load()
        work.sysbench_prepare()
        contestants = [each for users in _USERS for kind in workload.KINDS for each in _contestants(work, kind, users)]
        turns = runner.alternate(contestants, bench.rounds(3), server, bench.say)
        settings = server.settings()

    goals = [results.Goal(f"client processor time per statement, {kind}, {_users(users)}",
                          f"sysbench {_SCRIPTS[kind]}", "<=", 1.0,
                          runner.client_cpu_ratio(turns, *_names(kind, users)))
             for users in _USERS for kind in workload.KINDS]
    counted = "; ".join(f"{kind} {number}" for kind, number in workload.STATEMENTS.items())
    return results.result(
        unit="statement", goals=goals, settings=settings, contestants=contestants, turns=turns,
        notes=[f"A statement is a request to the server. A transaction of lkbench makes several ({counted}: describe, ID, "
               "the row, commit), one of sysbench's scripts makes one, which commits by itself. So a transaction of "
               "lkbench costs its statements times what the table says.", workload.NOTE])


def _users(users):
    return f"{users} user{'s' if users > 1 else ''}"


def _names(kind, users):
    return f"lkbench {kind}, {_users(users)}", f"{_SCRIPTS[kind]}, {users} thread{'s' if users > 1 else ''}"


def _contestants(work, kind, users):
    ours, theirs = _names(kind, users)
    return [runner.Contestant(ours, work.lkbench_command(users, f"{kind}=1"),
                              lambda: work.lkbench(users, f"{kind}=1", "statement")),
            runner.Contestant(theirs, f"sysbench {_SCRIPTS[kind]} --tables=4 --threads={users} run",
                              lambda: work.sysbench_own(_SCRIPTS[kind], users))]
