#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Runs the commands of a page in a new empty folder and compares what they print with the page; with --update writes
it there instead. page.py describes a page.

Usage: pages.py --bin FOLDER [--update] FILE
Exit code: 0 as written, 1 something differs or a command failed, 2 the page cannot be read, 77 its needs are not met.
"""
import argparse
import pathlib
import re
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "cli"))

import page as pages  # noqa: E402
import page_server  # noqa: E402
import transcript  # noqa: E402

SECONDS = 300
HOME = "/home/me/bench"  # what the pages say for the folder that the commands run in
LIBRARIES = "/opt/lkbench/lib"


class Shell:
    """Runs commands one after the other: exported variables and the folder last from one to the next."""

    def __init__(self, folder, bin_folder, names):
        self._folder = folder / "bench"
        self._folder.mkdir()
        self._state = folder / "state"
        self._state.touch()
        self._variables = transcript.environment(bin_folder, "", self._folder)
        self._names = [*names, (HOME, str(self._folder)), (LIBRARIES, str(bin_folder.parent / "lib"))]

    def run(self, command):
        """Returns exit code and printed lines, in the words of the page."""
        for shown, real in self._names:
            command = command.replace(shown, real)
        whole = f"source {self._state}\n{command}\ncode=$?\n{{ export -p; printf 'cd %q\\n' \"$PWD\"; }} >{self._state}\nexit $code"
        code, lines = transcript.run(whole, self._folder, self._variables, SECONDS)
        return code, [self._told(line) for line in transcript.without_blank_end(lines)]

    def _told(self, line):
        for shown, real in self._names:
            line = line.replace(real, shown)
        return line.rstrip()


def command_of(page, command, update):
    text = command.text
    for shown, meant in [] if update else page.in_tests:
        text = re.sub(rf"(?<![\w.]){re.escape(shown)}(?!\w)", meant, text)
    return text


def play(page, shell, update):
    """Returns the outputs of the commands; None after the first that failed or differs."""
    outputs = []
    for command in page.commands:
        code, printed = shell.run(command_of(page, command, update))
        expected = transcript.without_blank_end(page.output(command))
        if code == 0 and (update or not pages.differs(command, expected, printed)):
            outputs.append(printed)
            continue
        print(f"line {command.line}: $ {command.text}")
        print(f"exit code {code}\npage:", *expected, "printed:", *printed, sep="\n  ")
        return None
    return outputs


def run_page(file, bin_folder, update):
    page = pages.parse(file.read_text(encoding="utf-8"))
    with tempfile.TemporaryDirectory(prefix="lk-") as name, page_server.servers(page.has_server) as names:
        shell = Shell(pathlib.Path(name), bin_folder, names)
        for need in page.needs:
            if shell.run(need)[0] != 0:
                print(f"skipped: this machine cannot do '{need}'")
                return transcript.SKIP_CODE
        outputs = play(page, shell, update)
    if outputs is None:
        return 1
    if update:
        file.write_text(pages.updated(page, outputs), encoding="utf-8")
    return 0


def main():
    arguments = argparse.ArgumentParser(description="Runs the commands of a page.")
    arguments.add_argument("--bin", type=pathlib.Path, required=True, help="folder put in front of PATH")
    arguments.add_argument("--update", action="store_true", help="write what the commands print into the page")
    arguments.add_argument("file", type=pathlib.Path)
    given = arguments.parse_args()
    try:
        return run_page(given.file, given.bin.resolve(), given.update)
    except (OSError, pages.PageError) as error:
        print(f"{given.file}: {error}", file=sys.stderr)
        return 2


if __name__ == "__main__":
    sys.exit(main())
