# SPDX-License-Identifier: Apache-2.0
"""The workload's transactions: by lkbench, by bare programs and by sysbench, each as a turn."""
import pathlib
import re

import programs
import runner

KINDS = ("insert", "update", "delete")
# Requests to the server: an insert describes its table, draws an ID, inserts and commits; an update describes, updates
# and commits; a delete deletes and commits.
STATEMENTS = {"insert": 4, "update": 3, "delete": 2}
TABLES = [f"LK_REP_TABLE{number}" for number in range(1, 5)]
# No flush at a commit: what the disk takes hides what the client takes.
SERVER = ("--innodb-flush-log-at-trx-commit=0",)
NOTE = "The server does not flush its log at a commit: what a disk takes would hide what the clients take."

_SCRIPT = pathlib.Path(__file__).resolve().parents[1] / "sysbench/replication.lua"


def _kind_of(xact):
    return xact["name"].split()[0].lower()


class Workload:
    """Turns on the default job's tables."""

    def __init__(self, bench, server, lkbench, scale, seconds):
        self._bench, self._server, self._lkbench = bench, server, lkbench
        self._scale, self._rows = scale, int(scale * 1000)
        self.seconds = seconds

    def load(self):
        self._lkbench.create_anew()
        self._lkbench.load("--users", "2", "--scale", self._scale)

    def _flags(self, users, mix):
        return ["--scale", self._scale, "--users", users, "--duration", f"{self.seconds}s", "--mix", mix]

    def lkbench(self, users, mix, unit):
        """`unit` is transaction or statement. The processor time is that of the workload proper: start and report take a tenth
        of a second, which a longer run would not notice, and the other programs have neither."""
        report, _ = self._lkbench.report("workload", *self._flags(users, mix))
        done = report["workload"]["measured"]
        units = sum(xact["executions"] * (STATEMENTS[_kind_of(xact)] if unit == "statement" else 1)
                    for xact in done["transactions"])
        return runner.Measurement(units, done["elapsed_ns"] / 1e9, done["processor_ns"] / 1e9)

    def lkbench_command(self, users, mix):
        return self._lkbench.command("workload", *self._flags(users, mix))

    def bare(self, program, kind):
        run = programs.run([self._bench.program(program), kind, self._server.socket, self._server.user,
                            self._server.schema, self._rows, self.seconds, *TABLES])
        told = re.fullmatch(r"transactions (\d+) seconds ([\d.]+) cpu ([\d.]+)", run.output.strip())
        if not told:
            raise programs.Broken(f"{program}: {run.output.strip()}")
        return runner.Measurement(int(told[1]), float(told[2]), float(told[3]))

    def sysbench_script(self, threads):
        """The same statements by sysbench; a unit is a statement."""
        run = self._sysbench(_SCRIPT, threads, f"--rows={self._rows}")
        statements = sum(int(number) for number in re.findall(r"^statements: (\d+)$", run.output, re.MULTILINE))
        return runner.Measurement(statements, _seconds(run.output), run.cpu_seconds)

    def sysbench_own(self, script, threads):
        """One of sysbench's own scripts on its own tables; a unit is a statement."""
        run = self._sysbench(script, threads, *self._own_tables())
        told = re.search(r"^\s*queries:\s+(\d+)", run.output, re.MULTILINE)
        return runner.Measurement(int(told[1]), _seconds(run.output), run.cpu_seconds)

    def sysbench_prepare(self):
        programs.run([*self._sysbench_start(), "oltp_insert", *self._own_tables(), "prepare"])

    def _own_tables(self):
        return ["--tables=4", f"--table-size={self._rows}"]

    def _sysbench_start(self):
        return [self._bench.require("sysbench"), f"--mysql-socket={self._server.socket}",
                f"--mysql-user={self._server.user}", f"--mysql-db={self._server.schema}"]

    def _sysbench(self, script, threads, *flags):
        return programs.run([*self._sysbench_start(), script, *flags, f"--threads={threads}",
                             f"--time={self.seconds}", "run"])


def _seconds(output):
    """How long sysbench says that it ran."""
    return float(re.search(r"total time:\s+([\d.]+)s", output)[1])
