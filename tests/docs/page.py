# SPDX-License-Identifier: Apache-2.0
"""A page of the documents as its commands: reading it, writing their output into it, and comparing. Pure.

A fence ```console holds what a reader types behind "$ " ("> " goes on) and what is printed; a line of three dots
stands for any number of lines, once in an output. Comments give orders:

    <!-- page: server -->                the commands find a MariaDB server at db1:3306
    <!-- page: needs COMMAND -->         the page is skipped where COMMAND fails
    <!-- page: in tests A is B -->       the tests run the commands with the word A written as B
    <!-- page: figures vary -->          of the next fence only words are compared, not the figures of a measurement
"""
import dataclasses
import re

FENCE, END = "```console", "```"
SKIPPED = "..."

VERDICTS = re.compile(r"(?:higher|lower) \((?:better|worse)\)|within noise|too short to tell")
# What a run on a slow machine, or of a build for debugging, says beside.
DOUBT = re.compile("note: (p99 of fewer than|lkbench itself kept|.*was built without optimisation)")
TIME = re.compile(r"\d{4}-\d\d-\d\d[T ]\d\d[:-]\d\d[:-]\d\dZ?")
MASKS = [
    (re.compile(r"\d[\d,]*(?:\.\d+)+|\d{1,3}(?:,\d{3})+|\d{5,}"), "<number>"),
    (re.compile(r"\d+(?= rows/s)"), "<number>"),
]


class PageError(Exception):
    """The page itself is wrong; the text says where."""


@dataclasses.dataclass
class Command:
    line: int  # of its "$", counted from 1
    text: str
    begin: int  # its output, as indices of lines
    end: int
    vary: bool


@dataclasses.dataclass
class Page:
    lines: list
    commands: list = dataclasses.field(default_factory=list)
    needs: list = dataclasses.field(default_factory=list)
    in_tests: list = dataclasses.field(default_factory=list)  # pairs of words
    has_server: bool = False

    def output(self, command):
        return self.lines[command.begin:command.end]


def parse(text):
    page = Page(text.splitlines())
    inside = vary = False
    for index, line in enumerate(page.lines):
        if inside and line == END:
            inside = vary = False
        elif inside:
            _take_line(page, index, line, vary)
        elif line == FENCE:
            inside = True
        elif match := re.fullmatch(r"<!-- page: (.*) -->", line):
            vary = _obey(page, index, match[1]) or vary
    if inside:
        raise PageError(f"line {len(page.lines)}: the last {FENCE} has no end")
    return page


def _obey(page, index, order):
    """Returns whether the figures of the next fence vary."""
    if order == "server":
        page.has_server = True
    elif order.startswith("needs "):
        page.needs.append(order.removeprefix("needs "))
    elif match := re.fullmatch(r"in tests (\S+) is (\S+)", order):
        page.in_tests.append((match[1], match[2]))
    elif order != "figures vary":
        raise PageError(f"line {index + 1}: unknown order \"{order}\"")
    return order == "figures vary"


def _take_line(page, index, line, vary):
    last = page.commands[-1] if page.commands and page.commands[-1].end == index else None
    if line.startswith("$ "):
        page.commands.append(Command(index + 1, line[2:], index + 1, index + 1, vary))
    elif last is None:
        raise PageError(f"line {index + 1}: output before the first command (\"$ …\") of its fence")
    elif (line.startswith("> ") or line == ">") and last.begin == index:
        last.text += "\n" + line[2:]
        last.begin = last.end = index + 1
    else:
        last.end = index + 1


def updated(page, outputs):
    """The text of the page with the output of each command replaced."""
    lines = list(page.lines)
    for command, output in reversed(list(zip(page.commands, outputs, strict=True))):
        lines[command.begin:command.end] = cut(page.output(command), output)
    return "\n".join(lines) + "\n"


def cut(old, new):
    """The new output as short as the old one: where that skips lines, as many stand before and behind, a doubt more."""
    if SKIPPED not in old:
        return new
    before = old.index(SKIPPED)
    behind = len(without_doubts(old)) - before - 1 + len(new) - len(without_doubts(new))
    if len(new) <= before + behind:
        return new
    return new[:before] + [SKIPPED] + new[len(new) - behind:]


def without_doubts(lines):
    kept = [line for line in lines if not DOUBT.match(line)]
    while kept and kept[-1] == "" and len(kept) < len(lines):  # what set them apart
        kept.pop()
    return kept


def masked(line, vary):
    """What of a line is the same in every run: columns, figures and the time of day are not."""
    line = TIME.sub("<time>", line)
    if vary:
        words = VERDICTS.sub("<verdict>", line).split()
        return " ".join(word for word in words if re.match(r"[A-Za-z(]|<verdict>", word))
    for pattern, name in MASKS:
        line = pattern.sub(name, line)
    return " ".join(line.split())


def differs(command, expected, actual):
    """Whether an output is another one than the page has."""
    if command.vary:
        expected, actual = without_doubts(expected), without_doubts(actual)
    left = [masked(line, command.vary) for line in expected]
    right = [masked(line, command.vary) for line in actual]
    if SKIPPED not in expected:
        return left != right
    before = expected.index(SKIPPED)
    behind = len(left) - before - 1
    if len(right) < before + behind:
        return True
    return left[:before] != right[:before] or left[before + 1:] != right[len(right) - behind:]
