# SPDX-License-Identifier: Apache-2.0
"""Changes the plug-in's source in one place at a time and tells which changes no test notices."""
import argparse
import concurrent.futures
import pathlib
import queue
import random
import sys
import time

import mutants
import report
import worker

_ROOT = pathlib.Path(__file__).resolve().parents[2]
_PLUGIN = "Benchmarks/CREP_ORA8"
_GOAL = 90.0  # percent of the mutants that must be killed


def arguments():
    parser = argparse.ArgumentParser(prog="scripts/mutation", description=__doc__)
    parser.add_argument("--sample", type=int, metavar="N", help="try N mutants drawn at random instead of all")
    parser.add_argument("--seed", type=int, default=1, help="what --sample draws with (default 1)")
    parser.add_argument("--files", default="*", metavar="GLOB", help="only files of the plug-in with such a name")
    parser.add_argument("--list", action="store_true", help="print the mutants and do nothing")
    parser.add_argument("--jobs", type=int, default=2, metavar="N", help="workers at one time (default 2)")
    parser.add_argument("--folder", type=pathlib.Path, default=_ROOT / "build/mutate",
                        help="where the workers' trees and builds are (default build/mutate)")
    return parser.parse_args()


def chosen_mutants(options):
    found = []
    for file in sorted((_ROOT / _PLUGIN).glob(options.files)):
        if file.suffix in (".cpp", ".h"):
            found += mutants.mutants_of(str(file.relative_to(_ROOT)), file.read_text())
    if options.sample is not None and options.sample < len(found):
        picked = sorted(random.Random(options.seed).sample(range(len(found)), options.sample))
        found = [found[index] for index in picked]
    return found


def try_all(options, chosen):
    """[(mutant, result)] in the order of `chosen`. A worker takes neighbours, which need the fewest recompilations."""
    tests = worker.test_programs(_ROOT, "tests/plugin")
    workers = queue.SimpleQueue()
    for number in range(options.jobs):
        workers.put(worker.Worker(_ROOT, options.folder / f"worker-{number}", "CREP_ORA8", tests))
    pieces = [chosen[at:at + 25] for at in range(0, len(chosen), 25)]
    done = 0
    began = time.monotonic()

    def run_piece(piece):
        nonlocal done
        own = workers.get()
        try:
            results = []
            for mutant in piece:
                result = own.try_mutant(mutant)
                results.append((mutant, result))
                done += 1
                if result is None:
                    print(f"\rnot killed: {mutant.name()}", file=sys.stderr)
                print(f"\r{done}/{len(chosen)} mutants, {time.monotonic() - began:.0f} s", end="", file=sys.stderr)
            return results
        finally:
            workers.put(own)

    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        prepared = [workers.get() for _ in range(options.jobs)]
        list(pool.map(lambda own: own.prepare(), prepared))
        for own in prepared:
            workers.put(own)
        results = [pair for piece in pool.map(run_piece, pieces) for pair in piece]
    print(file=sys.stderr)
    return results


def main():
    options = arguments()
    chosen = chosen_mutants(options)
    if options.list:
        print(*(mutant.name() for mutant in chosen), sep="\n")
        return 0
    if not chosen:
        print(f"no source file of {_PLUGIN} matches '{options.files}'", file=sys.stderr)
        return 1
    equivalents = report.read_equivalents(pathlib.Path(__file__).with_name("equivalent.txt"))
    print(f"{len(chosen)} mutants, {options.jobs} workers; building", file=sys.stderr)
    try:
        results = try_all(options, chosen)
    except worker.BuildError as problem:
        print(problem, file=sys.stderr)
        return 1
    outcomes = [(mutant, report.outcome(mutant, result, equivalents)) for mutant, result in results]
    lines, score = report.table(outcomes)
    print(*lines, sep="\n")
    print(*(f"survived: {mutant.name()}" for mutant, word in outcomes if word == report.SURVIVED), sep="\n")
    return 0 if score >= _GOAL else 1


if __name__ == "__main__":
    sys.exit(main())
