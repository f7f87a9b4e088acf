#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Looks whether every message that the runner can end or warn with is in a test.

Usage: messages.py SOURCE
Of each call that makes a message, the longest text in quotes must be in a transcript of tests/cli or in a text of
the tests beside it. Those that no test can bring about stand in UNTESTED, with the reason.
Exit code: 0 all are, 1 some are not (each is told with its place).
"""
import pathlib
import re
import sys

CALL = re.compile(r"\b(?:UsageError|PrepareError|ResultsError|Failure|Problem|Refuse)\(")
TOKEN = re.compile(r"""//.*|'(?:[^'\\\n]|\\.)'|"(?P<text>(?:[^"\\\n]|\\.)*)"|[()]""")
SHORTEST = 8  # a shorter text tells no message from another
PRODUCT = "lkbench"
TESTS = ("tests/cli", "tests/lkbench", "tests/results", "tests/display", "tests/fault")

UNTESTED = {
    "the sessions cannot be ended in order: the database has not answered for ":
        "a server cannot be stopped in that moment; UserPoolTest has the decision",
    "it was taken just now, or the system gives no thread": "it is free a moment before",
    "password: the terminal cannot be written to: use env:NAME or file:PATH": "a terminal takes what is written",
    ": use fewer users or raise the limit (ulimit -u)": "the threads of root, who runs the tests, are not limited",
}


def texts(code):
    """The texts in quotes of some code, as the compiler sees them: neighbours are one."""
    found, end = [], None
    for token in TOKEN.finditer(code):
        if token["text"] is None:
            continue
        text = re.sub(r"\\(.)", r"\1", token["text"])
        if end is not None and not code[end:token.start()].strip():
            found[-1] += text
        else:
            found.append(text)
        end = token.end()
    return found


def call_end(code, begin):
    """Where the parentheses that open before `begin` are closed."""
    depth = 1
    for token in TOKEN.finditer(code, begin):
        depth += {"(": 1, ")": -1}.get(token[0], 0)
        if depth == 0:
            return token.start()
    return len(code)


def messages(code):
    """(line, longest text) of each message that the code makes."""
    for call in CALL.finditer(code):
        found = max(texts(code[call.end():call_end(code, call.end())]), key=len, default="")
        if len(found) >= SHORTEST:
            yield code.count("\n", 0, call.start()) + 1, found


def tested(source):
    corpus = []
    for folder in TESTS:
        for file in sorted((source / folder).rglob("*")):
            if file.suffix == ".txt":
                corpus.append(file.read_text(encoding="utf-8"))
            elif file.suffix in (".cpp", ".h", ".py") and file.name != "messages.py":
                corpus += texts(file.read_text(encoding="utf-8"))
    return "\n".join(corpus)


def main():
    source = pathlib.Path(sys.argv[1])
    corpus = tested(source)
    count = missing = 0
    for file in sorted((source / PRODUCT).rglob("*.cpp")):
        for line, text in messages(file.read_text(encoding="utf-8")):
            count += 1
            if text not in corpus and text not in UNTESTED:
                missing += 1
                print(f"{file.relative_to(source)}:{line}: in no test: {text}")
    print(f"{count} messages, {missing} in no test")
    return 1 if missing or count < 100 else 0


if __name__ == "__main__":
    sys.exit(main())
