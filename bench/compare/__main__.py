# SPDX-License-Identifier: Apache-2.0
"""Compares lkbench with what its users would measure it against, and writes the results into docs/performance.md."""
import argparse
import importlib
import pathlib
import sys
import time

import bench
import page
import programs
import results

_ROOT = pathlib.Path(__file__).resolve().parents[2]

# In the order of the page; each is a module of `comparisons` (- for _) with TITLE and run(bench).
COMPARISONS = ("load", "load-sysbench", "workload-bare", "client-cpu", "users", "durability", "memory", "start")


def arguments():
    parser = argparse.ArgumentParser(prog="bench/compare", description=__doc__)
    parser.add_argument("--binaries", type=pathlib.Path, default=_ROOT / "build/release/bin", metavar="FOLDER",
                        help="where lkbench and the programs of bench/ are (default build/release/bin)")
    parser.add_argument("--work", type=pathlib.Path, default=_ROOT / "build/bench", metavar="FOLDER",
                        help="for servers and results (default build/bench)")
    parser.add_argument("--only", action="append", choices=COMPARISONS, metavar="NAME",
                        help="only this comparison; repeat it for more: " + ", ".join(COMPARISONS))
    parser.add_argument("--rounds", type=int, metavar="N", help="how often contestants alternate")
    parser.add_argument("--no-page", action="store_true", help="leave docs/performance.md alone")
    return parser.parse_args()


def run_comparison(environment, name):
    module = importlib.import_module("comparisons." + name.replace("-", "_"))
    environment.heading(f"{name}: {module.TITLE}")
    began = time.monotonic()
    content = module.run(environment)
    results.write(environment.work, name, module.TITLE, content)
    for goal in content["goals"]:
        environment.say(f"{goal['what']} / {goal['against']}: {results.goal_text(goal)}")
    environment.heading(f"{name}: {time.monotonic() - began:.0f} s")


def main():
    options = arguments()
    environment = bench.Bench(options.binaries, options.work, options.rounds)
    broken = 0
    for name in options.only or COMPARISONS:
        try:
            run_comparison(environment, name)
        except programs.Broken as problem:
            environment.fail(f"{name}: {problem}")
            broken += 1
    if not options.no_page:
        page.write(_ROOT / "docs", options.work, COMPARISONS)
    return 1 if broken else 0


if __name__ == "__main__":
    sys.exit(main())
