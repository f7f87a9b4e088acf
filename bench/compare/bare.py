# SPDX-License-Identifier: Apache-2.0
"""Programs over the database's own client library, with nothing around them."""
import re

import programs
import runner


def keep_all_digits(server, tables):
    """Makes columns that would round numbers keep them as they are sent. What lkbench draws values by, whether they may be
    NULL and their type as it was declared (in a comment), stays."""
    columns = server.sql("SELECT table_name, column_name, IF(is_nullable = 'YES', '', 'NOT NULL'), column_comment"
                         " FROM information_schema.columns WHERE table_schema = DATABASE() AND data_type = 'decimal'")
    for table, column, not_null, comment in columns:
        if table.upper() in tables:
            server.sql(f"ALTER TABLE {table} MODIFY {column} DOUBLE {not_null} COMMENT '{comment}'")


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
