# SPDX-License-Identifier: Apache-2.0
"""A run.json with invented measurements, for the tests of what reads one: the same arguments give the same run."""
import math
import random

SUB_BITS, MOST_BITS = 6, 42


def bucket_of(value):
    if value < 1 << SUB_BITS:
        return value
    exponent = value.bit_length() - 1
    if exponent >= MOST_BITS:
        return (1 << SUB_BITS) * (MOST_BITS - SUB_BITS + 1) - 1
    return ((exponent - SUB_BITS + 1) << SUB_BITS) + (value >> (exponent - SUB_BITS)) - (1 << SUB_BITS)


def middle_of(bucket):
    if bucket < 1 << SUB_BITS:
        return bucket
    shift = (bucket >> SUB_BITS) - 1
    return (((1 << SUB_BITS) + bucket % (1 << SUB_BITS)) << shift) + (1 << shift) // 2


def times(values):
    """The times object of a list of nanoseconds."""
    counts = {}
    for value in values:
        bucket = bucket_of(value)
        counts[bucket] = counts.get(bucket, 0) + 1
    buckets = sorted(counts.items())
    result = {"count": len(values), "sum": sum(values), "mean": sum(values) // len(values) if values else 0}
    for name, share in (("p50", 0.5), ("p90", 0.9), ("p95", 0.95), ("p99", 0.99), ("p999", 0.999)):
        result[name] = percentile(buckets, share, max(values, default=0))
    result["max"] = max(values, default=0)
    result["buckets"] = [list(pair) for pair in buckets]
    return result


def percentile(buckets, share, most):
    wanted = max(1, math.ceil(share * sum(count for _, count in buckets)))
    seen = 0
    for bucket, count in buckets:
        seen += count
        if seen >= wanted:
            return min(middle_of(bucket), most)
    return 0


def digest(values):
    whole = times(values)
    return {name: whole[name] for name in ("count", "mean", "p50", "p95", "p99", "p999", "max")}


KINDS = (("Insert Transaction", "CLKRepInsertXact", 4, 0.4), ("Update Transaction", "CLKRepUpdateXact", 5, 0.4),
         ("Delete Transaction", "CLKRepDeleteXact", 6, 0.2))


class Phase:
    """Executions of one phase, second by second, and what they add up to."""

    def __init__(self, chance, name="measure", begin=0, seconds=60, users=8, rate=400.0, median_ms=3.0, tables=4,
                 drift=0.0, noise=0.05, failure_share=0.001, dip=3.0):
        self.name, self.begin, self.seconds, self.users, self.tables = name, begin, seconds, users, tables
        self.by_second = []  # lists of (kind, table, user, failed, response)
        level = 0.0
        for second in range(seconds):
            level = drift * level + chance.gauss(0, noise)  # what is slow now stays slow for a while
            slow = dip if 0.55 < second / seconds < 0.62 else 1.0
            self.by_second.append([self._execution(chance, median_ms * slow * math.exp(-level), failure_share * slow)
                                   for _ in range(max(1, round(rate / slow * math.exp(level))))])
        self.executions = [each for second in self.by_second for each in second]

    def _execution(self, chance, median_ms, failure_share):
        kind = chance.choices(range(len(KINDS)), [each[3] for each in KINDS])[0]
        return (kind, chance.randrange(self.tables), chance.randrange(self.users), chance.random() < failure_share,
                int(median_ms * 1e6 * chance.lognormvariate(0, 0.55)))

    @staticmethod
    def tally(chosen):
        failures = sum(each[3] for each in chosen)
        errors = {"deadlock": failures * 2 // 3, "lock-timeout": failures - failures * 2 // 3}
        return {"executions": len(chosen), "failures": failures, "rows": len(chosen) - failures, "undone": 0,
                "errors": {name: count for name, count in errors.items() if count}}

    @staticmethod
    def times(chosen, make, share=1.0):
        return make([int(each[4] * share) for each in chosen if not each[3]])

    def figures(self, chosen):
        return {**self.tally(chosen), "response_ns": self.times(chosen, times),
                "service_ns": self.times(chosen, times, 0.9), "database_ns": self.times(chosen, times, 0.6)}

    def interval_figures(self, chosen):
        return {**self.tally(chosen), "response_ns": self.times(chosen, digest),
                "service_ns": self.times(chosen, digest, 0.9)}

    def part(self):
        of = lambda index, key: [each for each in self.executions if each[index] == key]
        columns = lambda table: 5 + table % 3
        counts = sorted({columns(table) for table in range(self.tables)})
        table = lambda chosen: {**self.tally(chosen), "response_ns": self.times(chosen, times)}
        return {"elapsed_ns": self.seconds * 10**9, "processor_ns": self.seconds * 10**8, "rate_per_s": sum(not each[3] for each in self.executions) / self.seconds,
                "total": self.figures(self.executions),
                "transactions": [{"name": kind[0], "class": kind[1], "id": kind[2], **self.figures(of(0, number))}
                                 for number, kind in enumerate(KINDS)],
                "tables": [{"number": number + 1, "name": f"LK_REP_TABLE{number + 1}", "columns": columns(number),
                            **table(of(1, number))} for number in range(self.tables)],
                "column_counts": [{"name": f"{count} columns", "columns": count, **table(
                    [each for each in self.executions if columns(each[1]) == count])} for count in counts]}

    def record(self):
        settings = {"users": self.users, "duration_ns": self.seconds * 10**9, "count": 0, "warm_up_ns": 0, "ramp_ns": 0,
                    "mix": {"insert": 40, "update": 40, "delete": 20}, "think_min_ns": 0, "think_max_ns": 0,
                    "rate_per_s": 0, "arrival": "fixed", "commit_every": 1}
        return {"name": self.name, "settings": settings, "begin_ns": self.begin * 10**9,
                "warm_up_end_ns": self.begin * 10**9, "end_ns": (self.begin + self.seconds) * 10**9,
                "warm_up": None, "measured": self.part(),
                "user_executions": [sum(each[2] == user for each in self.executions) for user in range(self.users)],
                "most_backlog": 0, "forgotten": 0}

    def intervals(self, phase):
        return [{"begin_ns": (self.begin + second) * 10**9, "end_ns": (self.begin + second + 1) * 10**9, "phase": phase,
                 "warm_up": False, "users": self.users, "backlog": 0, "total": self.interval_figures(chosen),
                 "transactions": [self.interval_figures([each for each in chosen if each[0] == kind])
                                  for kind in range(len(KINDS))]}
                for second, chosen in enumerate(self.by_second)]


def workload(phases, **changes):
    whole = Phase.__new__(Phase)
    whole.__dict__.update(phases[0].__dict__)
    whole.executions = [each for phase in phases for each in phase.executions]
    whole.seconds = sum(phase.seconds for phase in phases)
    return {"elapsed_ns": whole.seconds * 10**9, "users": max(phase.users for phase in phases), "lost_users": 0,
            "given_up_users": 0, "phases": [phase.record() for phase in phases], "measured": whole.part(),
            "intervals": [each for number, phase in enumerate(phases) for each in phase.intervals(number)],
            "errors": [], "events": [], "more_events": 0, **changes}


def run(phases, seed=1, verb="run", workload_changes=None, **changes):
    work = workload(phases, **(workload_changes or {}))
    failures = work["measured"]["total"]["failures"]
    result = {
        "schema": "lkbench-run", "schema_version": 2, "lkbench": {"version": "0.1.0", "optimised": True}, "verb": verb,
        "command": ["lkbench", verb, "--users", str(phases[0].users)],
        "repeat": ["lkbench", verb, "-c", "effective.toml", "--seed", str(seed)],
        "started": "2026-01-02T03:04:05Z", "elapsed_ns": work["elapsed_ns"] + 1_250_000_000,
        "exit_code": 2 if failures else 0,
        "verdict": {"result": "failures" if failures else "done",
                    "text": f"{failures} executions failed" if failures else "every execution succeeded"},
        "interrupted": None, "target": {"kind": "local", "text": "local:/data/bench"},
        "environment": {"host": {"system": "Linux 6.1.0 x86_64", "cpus": 8, "memory_bytes": 16 << 30},
                        "plugin": {"file": "libCREP_ORA8.so", "version": "CREP_ORA8 1.0"},
                        "oci": {"file": "libocimariadb.so", "version": "10.11.6"},
                        "server": {"version": "10.11.6-MariaDB", "settings": {
                            "innodb_flush_log_at_trx_commit": "1", "sync_binlog": "0"}}},
        "seeds": {"schema": 1, "run": seed},
        "job": {"users": phases[0].users, "scale": 10, "tables": phases[0].tables, "seed": 1},
        "histogram": {"rule": "log-linear", "unit": "ns", "sub_bits": SUB_BITS, "most_bits": MOST_BITS},
        "load": {"rows": 40000, "elapsed_ns": 1_250_000_000}, "workload": work, "problems": [], "limits": [],
        "notes": []}
    result.update(changes)
    return result


def rich(seed=7):
    """Two phases, events, limits, problems, and text that would break out of a page that does not escape."""
    chance = random.Random(seed)
    first = Phase(chance, name="base")
    second = Phase(chance, name="burst </script><script>alert(1)</script>", begin=60, seconds=30, rate=700, median_ms=5,
                   failure_share=0.01)
    errors = [{"class": "deadlock", "code": 60, "count": 17, "first_ns": 2_400_000_000, "last_ns": 88_100_000_000,
               "text": "ORA-00060: deadlock detected <img src=x onerror=alert(2)>"}]
    events = [{"kind": "phase", "begin_ns": 0, "length_ns": 0, "user": 0, "text": "phase base"},
              {"kind": "outage", "begin_ns": 33_200_000_000, "length_ns": 3_800_000_000, "user": 3,
               "text": "user 3: connection lost, back after 3.8 s"},
              {"kind": "phase", "begin_ns": 60_000_000_000, "length_ns": 0, "user": 0, "text": "phase burst"}]
    return run([first, second], seed=731, exit_code=3, workload_changes={"errors": errors, "events": events},
               verdict={"result": "limit", "text": "1 limit of 3 failed: total.p99"},
               limits=[{"name": "total.throughput", "limit": ">300", "value": 487.2, "unit": "per_s", "passed": True},
                       {"name": "total.p99", "limit": "<10ms", "value": 21_364_736, "unit": "ns", "passed": False},
                       {"name": "errors", "limit": "<1%", "value": 0.0041, "unit": "ratio", "passed": True}],
               problems=[{"level": "error", "number": "60", "count": 17,
                          "text": "ORA-00060: deadlock detected <img src=x onerror=alert(2)>"}],
               notes=["p99 of fewer than 100 executions is their maximum: Delete Transaction"])


if __name__ == "__main__":
    import json
    import sys

    json.dump(rich(), sys.stdout)
