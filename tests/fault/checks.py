# SPDX-License-Identifier: Apache-2.0
"""What a schema must hold, asked of the database itself."""

from processes import expect

ROWS = 1000  # per table and unit of scale
WITNESS = "FAULT_WITNESS"


def tables(session):
    """Names in the schema, in capitals, our own left out. A sequence is one of them."""
    names = session.rows("SELECT UPPER(TABLE_NAME) FROM information_schema.TABLES WHERE TABLE_SCHEMA = 'lkbench'")
    return {name for (name,) in names} - {WITNESS}


def state(session):
    return dict(session.rows("SELECT STATE_NAME, STATE_VALUE FROM LKBENCH_STATE"))


def rows_of(session, table):
    count, least, most = session.rows(f"SELECT COUNT(*), MIN(ID), MAX(ID) FROM {table}")[0]
    return int(count), int(least or 0), int(most or 0)


def require_whole(session, count, scale, worked_on=0):
    """Tables 1..count hold the rows 1..1000*scale and nothing else, and the state says so.

    A backup, where there is one, holds just what the state says of it. `worked_on`: up to this scale a workload
    may have deleted rows of the tables.
    """
    names = [f"LK_REP_TABLE{number}" for number in range(1, count + 1)]
    needed = {*names, "LK_REP_PROPERTIES", "LK_REP_ID_SEQ", "LKBENCH_STATE"}
    found, known = tables(session), state(session)
    strange = (found ^ needed) - {f"{name}_BAK" for name in names}
    expect(not strange, f"the schema holds {sorted(strange)} too many or too few")
    for number, name in enumerate(names, 1):
        expect(float(known.get(f"table.{number}.scale", 0)) == scale, f"{name} should be at scale {scale}: {known}")
        expect(f"table.{number}.loading" not in known, f"{name} counts as being loaded: {known}")
        _require_rows(session, name, ROWS * scale, ROWS * min(worked_on, scale))
        if f"{name}_BAK" in found:
            backed_up = round(ROWS * float(known.get(f"backup.{number}.scale", 0)))
            _require_rows(session, f"{name}_BAK", backed_up)


def _require_rows(session, table, rows, below=0):
    """The rows below+1..rows, all of them, and no others above."""
    found = rows_of(session, f"(SELECT ID FROM {table} WHERE ID > {below}) above")
    wanted = (rows - below, below + 1, rows) if rows > below else (0, 0, 0)
    expect(found == wanted, f"{table} holds (count, least, most) {found} above {below}, not {wanted}")


def require_empty(session):
    expect(not tables(session), f"after the drop the schema holds {sorted(tables(session))}")


def require_batches(session, count, users, base, scale, batch):
    """After a load that was broken: each set of a table is there from its begin, in whole batches.

    `users` is a multiple of `count`. Returns the number of rows that the load has committed.
    """
    sets, loaded = users // count, 0
    for number in range(1, count + 1):
        for index in range(sets):
            share = (scale - base) * ROWS // sets
            first = base * ROWS + index * share
            last = scale * ROWS if index == sets - 1 else first + share
            loaded += _require_set(session, f"LK_REP_TABLE{number}", first, last, batch)
    return loaded


def _require_set(session, table, first, last, batch):
    count, least, most = session.rows(
        f"SELECT COUNT(*), MIN(ID), MAX(ID) FROM {table} WHERE ID > {first} AND ID <= {last}"
    )[0]
    rows = int(count)
    if rows == 0:
        return 0
    expect(int(least) == first + 1 and int(most) == first + rows,
           f"{table} {first + 1}..{last}: {rows} rows from {least} to {most} are not in order")
    whole = rows % batch == 0 or rows == last - first
    expect(whole, f"{table} {first + 1}..{last}: {rows} rows, half a batch of {batch}")
    return rows


def inserted_rows(session, count, scale):
    """Rows above those that were loaded: what a workload has inserted."""
    return sum(
        session.number(f"SELECT COUNT(*) FROM LK_REP_TABLE{n} WHERE ID > {ROWS * scale}") for n in range(1, count + 1)
    )


def all_rows(session, count):
    return sum(session.number(f"SELECT COUNT(*) FROM LK_REP_TABLE{n}") for n in range(1, count + 1))


class Witness:
    """Commits a row after the other beside lkbench and remembers what the server acknowledged."""

    def __init__(self, new_session):
        self._session = new_session()
        self._session.rows(f"CREATE OR REPLACE TABLE {WITNESS} (ID INT PRIMARY KEY)")
        self.acknowledged = 0

    def commit_until(self, condition):
        """Commits until the condition holds or the server is gone."""
        try:
            while not condition():
                self._session.rows(f"INSERT INTO {WITNESS} VALUES ({self.acknowledged + 1})")
                self.acknowledged += 1
        except (ConnectionError, OSError):
            pass

    def require_kept(self, session):
        count = session.number(f"SELECT COUNT(*) FROM {WITNESS}")
        expect(count >= self.acknowledged, f"of {self.acknowledged} commits beside lkbench {count} are there")
        expect(count <= self.acknowledged + 1, f"{count} rows beside lkbench, only {self.acknowledged} were asked for")
