# SPDX-License-Identifier: Apache-2.0
"""What a commit costs that is on the disk before it is acknowledged: durable against relaxed."""
import results
import runner
import workload
from lkbench import Lkbench

TITLE = "durable against relaxed"

_SCALE = 40  # 160,000 rows
_SECONDS = 5
_MIX = "insert=40,update=40,delete=20"
_USERS = (2, 16)
_FLUSH = {"durable": 1, "relaxed": 2}


class _Servers:
    """Both at once: one waits while the other works."""

    def __init__(self, *servers):
        self._servers = servers

    def cpu_seconds(self):
        return sum(server.cpu_seconds() for server in self._servers)


def run(bench):
    with _server(bench, "durable") as durable, _server(bench, "relaxed") as relaxed:
        contestants = _contestants(bench, durable, "durable") + _contestants(bench, relaxed, "relaxed")
        turns = runner.alternate(contestants, bench.rounds(3), _Servers(durable, relaxed), bench.say)
        settings = durable.settings() | {"innodb_flush_log_at_trx_commit": "1 and 2"}
    told = [_told(turns, what) for what in ("load", *(f"workload, {users} users" for users in _USERS))]
    return results.result(unit="row or transaction", goals=[], settings=settings, contestants=contestants, turns=turns,
                          notes=[f"Relaxed is faster in the {'; in the '.join(told)}."])


def _server(bench, durability):
    return bench.server(f"--innodb-flush-log-at-trx-commit={_FLUSH[durability]}", folder=durability)


def _contestants(bench, server, durability):
    lkbench = Lkbench(bench, server)
    work = workload.Workload(bench, server, lkbench, _SCALE, _SECONDS)
    load = ["--scale", str(_SCALE)]

    def works(users):
        return runner.Contestant(f"{durability} workload, {users} users", work.lkbench_command(users, _MIX),
                                 lambda: work.lkbench(users, _MIX, "transaction"), work.load)
    return [runner.Contestant(f"{durability} load", lkbench.command("load", *load), lambda: lkbench.load(*load),
                              lkbench.create_anew), *map(works, _USERS)]


def _told(turns, what):
    ratio = runner.rate_ratio(turns, f"relaxed {what}", f"durable {what}")
    return f"{what}: {results.number(ratio.median)} ({results.number(ratio.low)}–{results.number(ratio.high)}) times"
