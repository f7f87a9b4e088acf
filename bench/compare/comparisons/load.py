# SPDX-License-Identifier: Apache-2.0
"""The load of the default job's tables against the same rows, made beforehand, from a program that does nothing else."""
import bare
import results
import runner
from lkbench import Lkbench

TITLE = "loading the tables of the default job"

_ROWS_PER_COMMIT = 500
_SCALE = 40  # 160,000 rows
_TABLES = [f"LK_REP_TABLE{number}" for number in range(1, 5)]


def run(bench):
    with bench.server("--local-infile=ON") as server:
        lkbench = Lkbench(bench, server, create=["--scale", _SCALE], load=["--scale", _SCALE])
        lkbench.create_anew()
        bare.keep_all_digits(server, _TABLES)
        lkbench.load("--users", "1")
        files = bare.write_rows(server, bench.work / "rows", _TABLES)

        def ours(users):
            return runner.Contestant(f"lkbench, {users} user{'s' if users > 1 else ''}",
                                     lkbench.command("load", "--users", users),
                                     lambda: lkbench.load("--users", users), lkbench.create_anew)

        def theirs(name, kind, users):
            load = bare.Load(bench, server, kind, files, users, _ROWS_PER_COMMIT, _TABLES)
            return runner.Contestant(name, load.command, load.turn, lkbench.create_anew)

        contestants = [ours(1), theirs("bare bulk binding, 1 user", "bulk", 1), theirs("LOAD DATA, 1 user", "infile", 1),
                       ours(2), theirs("bare bulk binding, 2 users", "bulk", 2)]
        turns = runner.alternate(contestants, bench.rounds(5), server, bench.say)
        settings = server.settings()

    one, bulk, infile, two, bulk_two = (contestant.name for contestant in contestants)
    goals = [results.Goal("load, 1 user", "the same rows by bare bulk binding", ">=", 0.85,
                          runner.rate_ratio(turns, one, bulk)),
             results.Goal("load, 2 users", "1 user", ">=", 1.4, runner.rate_ratio(turns, two, one)),
             results.Goal("load, 1 user", "the same rows by LOAD DATA LOCAL INFILE", ">=", 0.8,
                          runner.rate_ratio(turns, one, infile))]
    limit = runner.rate_ratio(turns, bulk_two, bulk)
    return results.result(
        unit="row", goals=goals, settings=settings, contestants=contestants, turns=turns,
        notes=[f"The server's own limit: 2 users that only send load {results.number(limit.median)} "
               f"({results.number(limit.low)}–{results.number(limit.high)}) times as fast as 1.",
               "The rows of the bare programs are what lkbench sent before, digits included that the tables round away; reading "
               "and converting them is not timed. "
               "LOAD DATA commits once a table, the others after 500 rows."])
