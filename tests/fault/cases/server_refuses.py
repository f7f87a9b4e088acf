# SPDX-License-Identifier: Apache-2.0
"""The server is there, but does not do what it is asked."""

import checks
from arena import TABLES, pause, tried_next
from lkbench import CANNOT, FAILURES
from processes import eventually, expect
from server import ACCOUNT


def too_many_connections(arena):
    """max_connections is reached for a while: one line, whatever the number of users."""
    server, bench = arena.served(arguments=["--max-connections=10"])
    bench.do("create", "--tables", TABLES)
    bench.do("load", "--scale", 1)
    for verb in ("load", "workload"):
        ended = bench.run(verb, "--users", 40, "--scale", 1).require(CANNOT)
        ended.lines(1, bench.target, "ORA-00018", "fewer users")
    with server.session() as session:
        eventually(lambda: _sessions(session) == 0, 15, "refused users stay connected")
        tried_next(bench, session, "load", 2)
    return "40 users on 10 connections: one line, exit code 5, nobody stays connected; lost 0"


def _sessions(session):
    return session.number(f"SELECT COUNT(*) FROM information_schema.PROCESSLIST WHERE USER = '{ACCOUNT}'")


# Rights on a whole schema are looked at when a session begins, those on a table at every statement.
def _grant_by_table(session):
    session.rows(f"REVOKE ALL ON lkbench.* FROM {ACCOUNT}@'%'")
    session.rows(f"GRANT SELECT, CREATE, ALTER, DROP ON lkbench.* TO {ACCOUNT}@'%'")
    for (table,) in session.rows("SELECT TABLE_NAME FROM information_schema.TABLES WHERE TABLE_SCHEMA = 'lkbench'"):
        session.rows(f"GRANT SELECT, INSERT, UPDATE, DELETE ON lkbench.{table} TO {ACCOUNT}@'%'")


def _working(arena, bench, users):
    running = bench.start("workload", "--users", users, "--duration", "4s")
    eventually(lambda: " tx/s" in running.printed(), 15, "the workload does not begin")
    pause(arena.moment(0.1, 0.8), running)
    return running


def privileges_revoked(arena):
    """The user may not write any more: counted, one line for each kind of statement, and over in time."""
    server, bench = arena.served()
    bench.do("create", "--tables", TABLES)
    bench.do("load", "--scale", 1)
    with server.session() as session:
        _grant_by_table(session)
        running = _working(arena, bench, 16)
        for number in range(1, TABLES + 1):
            session.rows(f"REVOKE INSERT, UPDATE, DELETE ON lkbench.LK_REP_TABLE{number} FROM {ACCOUNT}@'%'")
        ended = running.wait(20).require(FAILURES).lines(2, "ORA-01031")
        failures = ended.report["workload"]["measured"]["total"]["failures"]
        expect(failures > 0, "no failure was counted")
        bench.run("load", "--scale", 2).require(CANNOT).lines(2, "ORA-01031", "load: ")
        session.rows(f"GRANT ALL ON lkbench.* TO {ACCOUNT}@'%'")
        tried_next(bench, session, "refresh", 2, worked_on=1)
    return f"{failures:,} failures in {len(ended.problems)} lines, exit code 2; the next load says it in one; lost 0"


def table_dropped(arena):
    """Somebody else drops a table under the workload; `lkbench drop` clears the rest."""
    server, bench = arena.served()
    bench.do("create", "--tables", TABLES)
    bench.do("load", "--scale", 1)
    running = _working(arena, bench, 16)
    with server.session() as session:
        session.rows("DROP TABLE LK_REP_TABLE3")
        ended = running.wait(20).require(FAILURES).lines(4, "ORA-00942")
        failures = ended.report["workload"]["measured"]["total"]["failures"]
        for verb in ("load", "refresh", "workload"):
            bench.run(verb).require(1).lines(1, "LK_REP_TABLE3 is missing", "run `lkbench drop`")
        bench.do("drop")
        checks.require_empty(session)
        bench.do("create", "--tables", TABLES)
        tried_next(bench, session, "load", 1)
    return f"{failures:,} failures in {len(ended.problems)} lines, exit code 2; the next verbs say what to do; lost 0"


CASES = {
    "connections-refused": too_many_connections,
    "privileges-revoked": privileges_revoked,
    "table-dropped": table_dropped,
}
