# SPDX-License-Identifier: Apache-2.0
"""Programs over the database's own client library, with nothing around them."""
import re

import programs
import runner


def write_rows(server, folder, tables):
    """The rows of the tables, as files that LOAD DATA reads."""
    folder.mkdir(parents=True, exist_ok=True)
    for table in tables:
        lines = ["\t".join("\\N" if value == "NULL" else value for value in row)
                 for row in server.sql(f"SELECT * FROM {table} ORDER BY ID")]
        (folder / f"{table}.tsv").write_text("".join(line + "\n" for line in lines))
    return folder


class Load:
    def __init__(self, bench, server, kind, files, users, rows_per_commit, tables):
        """`kind` is bulk or infile."""
        self._command = [bench.program("bare_load"), kind, server.socket, server.user, server.schema, files, users,
                         rows_per_commit, *tables]
        self.command = f"bare_load {kind} … {users} {rows_per_commit} {' '.join(tables)}"

    def turn(self):
        run = programs.run(self._command)
        told = re.fullmatch(r"rows (\d+) seconds ([\d.]+) cpu ([\d.]+)", run.output.strip())
        if not told:
            raise programs.Broken(f"{self.command}: {run.output.strip()}")
        return runner.Measurement(int(told[1]), float(told[2]), float(told[3]))
