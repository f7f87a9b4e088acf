# SPDX-License-Identifier: Apache-2.0
"""Checks the tables of docs/kept-behaviours.md: every row is whole, its places and tests are those of the build."""

import argparse
import json
import pathlib
import re
import subprocess
import sys

HEAD = ["where", "what is kept", "what depends on it", "test"]


def rows(text):
    """Yields line number and cells of every row; a table's head and the line below it are not rows."""
    for number, line in enumerate(text.splitlines(), 1):
        if not line.startswith("|"):
            continue
        cells = [cell.strip() for cell in re.split(r"(?<!\\)\|", line.strip())[1:-1]]
        if cells != HEAD and not all(re.fullmatch(r"-+", cell) for cell in cells):
            yield number, cells


def last_name(place):
    """`A::B(int)` is found in the sources as B."""
    return re.sub(r"\(.*|<[^>]*>", "", place).split("::")[-1]


def problems(text, tests, sources):
    """What is wrong, a line each. `sources` is the text of all of them."""
    found = []
    count = 0
    for number, cells in rows(text):
        count += 1
        if len(cells) != len(HEAD):
            found.append(f"line {number}: {len(cells)} cells, expected {len(HEAD)}: {', '.join(HEAD)}")
            continue
        found += [f"line {number}: the cell \"{head}\" is empty" for head, cell in zip(HEAD, cells) if not cell]
        places = re.findall(r"`([^`]+)`", cells[0])
        found += [f"line {number}: no source has {place}" for place in places if last_name(place) not in sources]
        names = re.findall(r"`([^`]+)`", cells[-1])
        if cells[-1] and not names:
            found.append(f"line {number}: the test is not written as `Suite.Case`")
        found += [f"line {number}: no test is named {name}" for name in names if name not in tests]
    if count == 0:
        found.append(f"no row found; a table begins with | {' | '.join(HEAD)} |")
    return found


def tests_of_build(ctest, folder):
    command = [ctest, "--test-dir", folder, "--show-only=json-v1"]
    listing = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    return {test["name"] for test in json.loads(listing)["tests"]}


def text_of_sources(folders):
    files = [file for folder in folders for file in sorted(folder.rglob("*")) if file.suffix in (".cpp", ".h")]
    return "\n".join(file.read_text(encoding="utf-8") for file in files)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--ctest", required=True)
    parser.add_argument("--build", required=True, help="the build folder")
    parser.add_argument("document", type=pathlib.Path)
    parser.add_argument("sources", type=pathlib.Path, nargs="+", help="folders of the places")
    arguments = parser.parse_args()
    tests = tests_of_build(arguments.ctest, arguments.build)
    found = problems(arguments.document.read_text(encoding="utf-8"), tests, text_of_sources(arguments.sources))
    unbuilt = sorted(name for name in tests if name.endswith("_NOT_BUILT"))
    if found and unbuilt:
        found.append("not built, so that their tests are not known: " + ", ".join(unbuilt))
    for problem in found:
        print(f"{arguments.document.name}: {problem}", file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
