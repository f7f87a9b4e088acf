# SPDX-License-Identifier: Apache-2.0
"""docs/reference is what the program's tables say, and has every variable that the program asks the environment for;
docs/explanation/numbers.md explains every figure.

Usage: reference.py [--update] PROGRAM SOURCE     PROGRAM is docs_reference, SOURCE the top of the source tree
"""
import argparse
import json
import pathlib
import re
import subprocess
import sys

from links import FENCE

PAGES = {"lkbench": "reference/lkbench.md", "job": "reference/job.md"}
NUMBERS = "explanation/numbers.md"
ENVIRONMENT = "reference/environment.md"
PRODUCT = ("Benchmarks", "host", "lkbench", "localdb", "oci")


def printed(program, name):
    return subprocess.run([program, name], check=True, capture_output=True, text=True, timeout=60).stdout


def first_difference(ours, theirs):
    """The first line that differs, as "line N", or an empty text."""
    left, right = ours.splitlines(), theirs.splitlines()
    for number, (one, other) in enumerate(zip(left + [None], right + [None]), 1):
        if one != other:
            return f"line {number} is {one!r}, the program says {other!r}"
    return ""


def figures(schema, root=None):
    """The names of all properties below a schema that hold a number or times."""
    root = root or schema
    found = set()
    for name, each in schema.get("properties", {}).items():
        if is_figure(each, root):
            found.add(name)
    for value in schema.values():
        for each in value if isinstance(value, list) else value.values() if isinstance(value, dict) else []:
            if isinstance(each, dict):
                found |= figures(each, root)
        if isinstance(value, dict):
            found |= figures(value, root)
    return found


def is_figure(schema, root):
    if "$ref" in schema:
        name = schema["$ref"].rsplit("/", 1)[1]
        return name in ("times", "digest", "buckets") or is_figure(root["$defs"][name], root)
    kinds = schema.get("type", [])
    if kinds == "array":
        return is_figure(schema.get("items", {}), root)
    return bool({"integer", "number"} & set([kinds] if isinstance(kinds, str) else kinds))


def unexplained(names, text):
    explained = set(re.findall(r"`([^`\n]+)`", FENCE.sub("", text)))
    return sorted(set(names) - explained)


def variables(text):
    """The environment variables that a source asks for by name."""
    return set(re.findall(r'(?:getenv|Variable)\("(\w+)"\)', text))


def variables_of(source):
    files = [file for folder in PRODUCT for file in (source / folder).rglob("*.cpp")]
    return set().union(*(variables(file.read_text(encoding="utf-8")) for file in files))


def problems(program, source):
    docs = source / "docs"
    for name, file in PAGES.items():
        difference = first_difference((docs / file).read_text(encoding="utf-8"), printed(program, name))
        if difference:
            yield f"{file}: {difference}"
    text = (docs / NUMBERS).read_text(encoding="utf-8")
    schema = json.loads((docs / "run.schema.json").read_text(encoding="utf-8"))
    for where, names in (("run.json", figures(schema)), ("series.csv", printed(program, "columns").split())):
        for name in unexplained(names, text):
            yield f"{NUMBERS}: `{name}` of {where} is not explained"
    for name in unexplained(variables_of(source), (docs / ENVIRONMENT).read_text(encoding="utf-8")):
        yield f"{ENVIRONMENT}: the program reads `{name}`, which is not there"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--update", action="store_true", help="write the pages of docs/reference")
    parser.add_argument("program")
    parser.add_argument("source", type=pathlib.Path)
    given = parser.parse_args()
    if given.update:
        for name, file in PAGES.items():
            (given.source / "docs" / file).write_text(printed(given.program, name), encoding="utf-8")
    found = list(problems(given.program, given.source))
    for problem in found:
        print(problem, file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
