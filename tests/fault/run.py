# SPDX-License-Identifier: Apache-2.0
"""Causes faults for real around the real lkbench and real servers, and prints a line for each.

run.py --lkbench FILE [--work FOLDER] [--case NAME]... [--seed N] [--allow-skip]

Exit code 0: every fault was caused and every promise held. 1: one did not hold, or a fault could not be caused
here and --allow-skip does not allow that. The seed decides about the random moments; it is printed.
"""

import argparse
import pathlib
import random
import shutil
import sys
import time
import traceback

from arena import Arena, NotAllowed
from cases import CASES
from lkbench import Lkbench
from processes import Broken


def read_arguments():
    parser = argparse.ArgumentParser(description="faults around lkbench")
    parser.add_argument("--lkbench", required=True, type=pathlib.Path)
    parser.add_argument("--work", type=pathlib.Path, default=pathlib.Path("build/fault"))
    parser.add_argument("--case", action="append", choices=sorted(CASES), metavar="NAME",
                        help="only this one; repeat it for more: " + ", ".join(CASES))
    parser.add_argument("--seed", type=int, default=random.randrange(10**6))
    parser.add_argument("--allow-skip", action="store_true", help="a fault that cannot be caused here is no failure")
    return parser.parse_args()


def make_fresh_data(binary, work):
    """The data that lkbench makes for a local folder, once; each case works on a copy."""
    folder = work / "fresh"
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    Lkbench(binary, work / "fresh-runs", f"local:{folder}/db").do("check")
    return folder / "db" / "data"


def run_case(name, arguments, work, fresh_data):
    """Returns PASS, FAIL or SKIP, and what to say."""
    arena = Arena(name, arguments.lkbench.resolve(), work, fresh_data, arguments.seed)
    try:
        return "PASS", CASES[name](arena)
    except NotAllowed as missing:
        return "SKIP", str(missing)
    except Broken as broken:
        return "FAIL", str(broken)
    except Exception:
        return "FAIL", "the case itself broke:\n" + traceback.format_exc()
    finally:
        arena.close()


def main():
    arguments = read_arguments()
    work = arguments.work.resolve()
    print(f"seed {arguments.seed}; again: make fault SEED={arguments.seed}", flush=True)
    fresh_data = make_fresh_data(arguments.lkbench.resolve(), work)
    results = []
    for name in arguments.case or CASES:
        begin = time.monotonic()
        result, text = run_case(name, arguments, work, fresh_data)
        results.append(result)
        print(f"{result}  {name:24} {time.monotonic() - begin:5.1f} s  {text}", flush=True)
    shutil.rmtree(work, ignore_errors=True)
    counts = {result: results.count(result) for result in ("PASS", "FAIL", "SKIP")}
    print(f"{counts['PASS']} faults held, {counts['FAIL']} did not, {counts['SKIP']} could not be caused here")
    return 1 if counts["FAIL"] or (counts["SKIP"] and not arguments.allow_skip) else 0


if __name__ == "__main__":
    sys.exit(main())
