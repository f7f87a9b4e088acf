#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Replays a transcript of commands and compares what they print. README.md describes the format.

Usage: transcript.py --bin FOLDER --source FOLDER FILE
Exit code: 0 as written, 1 something differs, 2 the file cannot be read, 77 its needs are not met here.
"""
import argparse
import dataclasses
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile

COMMAND_SECONDS = 120
HOLES = {
    "<num>": r"-?\d[\d,]*(?:\.\d+)?(?:[eE][-+]?\d+)?",
    "<path>": r"[^\s:;,']*/[^\s:;,']*",
    "<word>": r"\S+",
    "<any>": r".*",
}
SKIPPED_LINES = "..."
SKIP_CODE = 77


class FormatError(Exception):
    """The transcript itself is wrong; the text says where."""


@dataclasses.dataclass
class Case:
    line: int
    command: str
    output: list = dataclasses.field(default_factory=list)
    code: int = 0


@dataclasses.dataclass
class Transcript:
    needs: list = dataclasses.field(default_factory=list)
    cases: list = dataclasses.field(default_factory=list)


def parse(text):
    transcript = Transcript()
    case = None
    for number, line in enumerate(text.splitlines(), 1):
        if line.startswith("# ") or line == "#":
            continue
        if line.startswith("! needs "):
            transcript.needs.append(line.removeprefix("! needs "))
        elif line.startswith("$ "):
            case = Case(number, line[2:])
            transcript.cases.append(case)
        elif case is None:
            if line:
                raise FormatError(f"line {number}: output before the first command ('$ …')")
        elif line.startswith("> ") or line == ">":
            if case.output:
                raise FormatError(f"line {number}: a command goes on ('>') after its output")
            case.command += "\n" + line[2:]
        elif re.fullmatch(r"\? \d+", line):
            case.code = int(line[2:])
        else:
            case.output.append(line)
    if not transcript.cases:
        raise FormatError("no command ('$ …')")
    return transcript


def without_blank_end(lines):
    end = len(lines)
    while end > 0 and not lines[end - 1].strip():
        end -= 1
    return lines[:end]


def line_matches(pattern, line):
    parts = re.split("(" + "|".join(map(re.escape, HOLES)) + ")", pattern)
    return re.fullmatch("".join(HOLES.get(part, re.escape(part)) for part in parts), line.rstrip()) is not None


def output_matches(expected, actual):
    """Whether all lines match; a line of three dots stands for any number of lines."""
    if not expected:
        return not actual
    if expected[0].strip() == SKIPPED_LINES:
        return any(output_matches(expected[1:], actual[skipped:]) for skipped in range(len(actual) + 1))
    return bool(actual) and line_matches(expected[0].rstrip(), actual[0]) and output_matches(expected[1:], actual[1:])


def environment(bin_folder, source_folder, home):
    return {
        "PATH": f"{bin_folder}:/usr/local/bin:/usr/bin:/bin",
        "HOME": str(home),
        "LC_ALL": "C.UTF-8",
        "SOURCE": str(source_folder),
        **{name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")},
    }


def run(command, folder, variables, seconds=COMMAND_SECONDS):
    """Returns the exit code (128 + number for a signal, as a shell has it) and the printed lines."""
    process = subprocess.Popen(["bash", "-c", command], cwd=folder, env=variables, stdin=subprocess.DEVNULL,
                               stdout=subprocess.PIPE, stderr=subprocess.STDOUT, start_new_session=True)
    try:
        printed, _ = process.communicate(timeout=seconds)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        printed, _ = process.communicate()
        printed += f"\n(killed: it took longer than {seconds} s)".encode()
    code = process.returncode if process.returncode >= 0 else 128 - process.returncode
    return code, printed.decode(errors="replace").splitlines()


def difference(case, code, actual):
    """What differs, for a person; empty when nothing does."""
    expected = without_blank_end(case.output)
    actual = without_blank_end(actual)
    same_output = output_matches(expected, actual)
    if same_output and code == case.code:
        return ""
    told = [f"line {case.line}: $ {case.command}"]
    if code != case.code:
        told.append(f"exit code {code}, expected {case.code}")
    if not same_output:
        told += ["expected:"] + ["  " + line for line in expected]
    told += ["printed:"] + ["  " + line for line in actual]
    return "\n".join(told)


def replay(transcript, bin_folder, source_folder):
    """Returns the exit code of the whole; prints the first difference."""
    with tempfile.TemporaryDirectory(prefix="lk-") as folder:
        variables = environment(bin_folder, source_folder, folder)
        for need in transcript.needs:
            if run(need, folder, variables)[0] != 0:
                print(f"skipped: this machine cannot do '{need}'")
                return SKIP_CODE
        for case in transcript.cases:
            told = difference(case, *run(case.command, folder, variables))
            if told:
                print(told)
                return 1
    return 0


def main():
    arguments = argparse.ArgumentParser(description="Replays a transcript of commands.")
    arguments.add_argument("--bin", type=pathlib.Path, required=True, help="folder put in front of PATH")
    arguments.add_argument("--source", type=pathlib.Path, required=True, help="folder that $SOURCE names")
    arguments.add_argument("file", type=pathlib.Path)
    given = arguments.parse_args()
    try:
        transcript = parse(given.file.read_text(encoding="utf-8"))
    except (OSError, FormatError) as error:
        print(f"{given.file}: {error}", file=sys.stderr)
        return 2
    return replay(transcript, given.bin.resolve(), given.source.resolve())


if __name__ == "__main__":
    sys.exit(main())
