# SPDX-License-Identifier: Apache-2.0
"""The load of tables that are shaped as sysbench's, against what fills those."""
import programs
import results
import runner
from lkbench import Lkbench

TITLE = "loading tables shaped as sysbench's"

_TABLES = 4
_ROWS = 100_000  # a table: of fewer, starting would be a noticeable part of a turn
_COLUMNS = ["NUMBER(10)", "CHAR(120)", "CHAR(60)"]  # sysbench's k, c and pad, in any order
_STORED = "char(120),char(60),decimal(10,0)"
_USERS = (1, 2, 4)
_DRAWN = 40
_PROTOTYPE = "bench_prototype"


class Ours:
    """The columns of a table are drawn: of many tables one has each type once, and all that are loaded get its shape."""

    def __init__(self, bench, server):
        self._server = server
        types = [word for column in _COLUMNS for word in ("--column-types", column)]
        scale = ["--scale", _ROWS // 1000]
        self._lkbench = Lkbench(bench, server, "--tables", _TABLES, create=scale, load=[*scale, "--rows-per-commit", 1000])
        drawn = Lkbench(bench, server, "--tables", _DRAWN, create=["--min-columns", 3, "--max-columns", 3, *types])
        drawn.do("create")
        server.sql(f"CREATE TABLE {_PROTOTYPE} LIKE {self._shaped()}")
        drawn.do("drop")

    def _shaped(self):
        found = self._server.sql("SELECT table_name, GROUP_CONCAT(column_type ORDER BY column_type) AS columns"
                                 " FROM information_schema.columns WHERE table_schema = DATABASE()"
                                 " AND table_name LIKE 'lk\\_rep\\_table%' AND column_name <> 'ID'"
                                 f" GROUP BY table_name HAVING columns = '{_STORED}'")
        if not found:
            raise programs.Broken(f"none of {_DRAWN} tables has the columns {_STORED}")
        return found[0][0]

    def _prepare(self):
        self._lkbench.create_anew()
        for number in range(1, _TABLES + 1):
            self._server.sql(f"DROP TABLE LK_REP_TABLE{number}; CREATE TABLE LK_REP_TABLE{number} LIKE {_PROTOTYPE}")

    def contestant(self, users):
        def turn():
            run = self._lkbench.do("load", "--users", users)
            return runner.Measurement(_TABLES * _ROWS, run.seconds, run.cpu_seconds)
        return runner.Contestant(f"lkbench, {users}", self._lkbench.command("load", "--users", users), turn, self._prepare)


class Sysbench:
    def __init__(self, bench, server):
        self._server = server
        self._shown = ["sysbench", "oltp_insert", f"--tables={_TABLES}", f"--table-size={_ROWS}", "--create_secondary=off"]
        self._where = [f"--mysql-socket={server.socket}", f"--mysql-user={server.user}", f"--mysql-db={server.schema}"]
        bench.require("sysbench")

    def _prepare(self):
        self._server.sql("; ".join(f"DROP TABLE IF EXISTS sbtest{number}" for number in range(1, _TABLES + 1)))

    def contestant(self, users):
        threads = f"--threads={users}"

        def turn():
            run = programs.run([*self._shown, *self._where, threads, "prepare"])
            return runner.Measurement(_TABLES * _ROWS, run.seconds, run.cpu_seconds)
        return runner.Contestant(f"sysbench, {users}", programs.text_of([*self._shown, threads, "prepare"]), turn,
                                 self._prepare)


def run(bench):
    with bench.server() as server:
        ours, sysbench = Ours(bench, server), Sysbench(bench, server)
        contestants = [side.contestant(users) for users in _USERS for side in (ours, sysbench)]
        turns = runner.alternate(contestants, bench.rounds(4), server, bench.say)
        settings = server.settings()
    goals = [results.Goal(f"load of sysbench's tables, {users} user{'s' if users > 1 else ''}",
                          f"sysbench oltp_insert prepare, {users} thread{'s' if users > 1 else ''}", ">=", 1.5,
                          runner.rate_ratio(turns, f"lkbench, {users}", f"sysbench, {users}")) for users in _USERS]
    return results.result(
        unit="row", goals=goals, settings=settings, contestants=contestants, turns=turns,
        notes=["Times are those of whole processes, from start to end. The tables have the columns id, k NUMBER(10), "
               "c CHAR(120) and pad CHAR(60), and no secondary index. sysbench fills its texts to their full width, lkbench "
               "to 1 to 120 and 1 to 60 letters; stored, both are padded. A statement of sysbench has as many rows as fit into half a megabyte, one of lkbench 1000."])
