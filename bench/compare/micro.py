# SPDX-License-Identifier: Apache-2.0
"""The figures of the small parts, from what Google Benchmark wrote."""
import dataclasses
import json

import figures
import results

_NANOSECONDS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}


def read(file):
    """{name: [nanoseconds of processor time an iteration, of each repetition]}; empty when nothing was measured."""
    times = {}
    if file.exists():
        for each in json.loads(file.read_text())["benchmarks"]:
            if each["run_type"] == "iteration":
                times.setdefault(each["name"], []).append(each["cpu_time"] * _NANOSECONDS[each["time_unit"]])
    return times


def _rate(times):
    return figures.figure(1e9 / time for time in times)


def goals(times):
    """Those that are about small parts."""
    if not times:
        return []
    nothing = "an OCI that does nothing"
    found = [results.Goal("CTableLoader::MakeRecord", "a hand-written loop that fills the same arrays", ">=", 0.8,
                          figures.paired_ratio(times["record/hand loop"], times["record/loader"])),
             results.Goal("clock and histogram", "", "<=", 200, figures.figure(times["measuring/execution"]), "ns")]
    for text in ("table name", "delete", "update"):
        found.append(results.Goal(f"LKString::Format, {text}", "swprintf of the same text, time", "<=", 5,
                                  figures.paired_ratio(times[f"format/{text}"], times[f"swprintf/{text}"])))
    for xact, goal in (("insert", 40000), ("update", 40000), ("delete", 200000)):
        found.append(results.Goal(f"{xact}, 1 user", nothing, ">=", goal, _rate(times[f"execution/{xact}"]), "/s"))
    return [goal.as_json() for goal in found]


def rows(times):
    """(name, figure) of each part."""
    return [(name, dataclasses.asdict(figures.figure(own))) for name, own in times.items()]
