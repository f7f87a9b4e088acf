# SPDX-License-Identifier: Apache-2.0
"""How long lkbench takes from its start to its first statement, private server included."""
import calendar
import shutil
import tempfile
import time

import figures
import programs
import results

TITLE = "from the start of lkbench to its first statement"

_TRACED = "4"  # statements, as the OCI library is given them


def _seconds_to_first_statement(bench, folder):
    trace = bench.work / "start.trace"
    trace.unlink(missing_ok=True)
    results_folder = tempfile.mkdtemp(dir=bench.work)
    began = time.time()
    programs.run([bench.program("lkbench"), "run", "--target", f"local:{folder}", "--duration", "100ms", "--log-level",
                  "warning", "--results", results_folder], variables={"OCIMARIADB_TRACE": f"{_TRACED}:{trace}"})
    for line in trace.read_text().splitlines():
        words = line.split()
        if words[3] == "sql-given":
            date, _, fraction = words[0].removesuffix("Z").partition(".")
            return calendar.timegm(time.strptime(date, "%Y-%m-%dT%H:%M:%S")) + float(f"0.{fraction}") - began
    raise programs.Broken(f"{trace} has no statement")


def run(bench):
    folder = bench.work / "start"
    new, existing = [], []
    for _ in range(bench.rounds(5)):
        shutil.rmtree(folder, ignore_errors=True)
        new.append(_seconds_to_first_statement(bench, folder))
        existing.append(_seconds_to_first_statement(bench, folder))
        bench.say(f"new folder {new[-1]:.2f} s, existing folder {existing[-1]:.2f} s")
    shutil.rmtree(folder, ignore_errors=True)
    goals = [results.Goal("start, existing folder", "", "<=", 0.6, figures.figure(existing), "s"),
             results.Goal("start, new folder", "", "<=", 1.5, figures.figure(new), "s")]
    return results.result(unit="start", goals=goals, settings={},
                          notes=[f"{results.goal_text(goal.as_json())}: {goal.what}." for goal in goals])
