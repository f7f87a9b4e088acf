# SPDX-License-Identifier: Apache-2.0
"""Links of the documents lead to a file, and to a heading where they name one; docs/README.md leads to every page.

Usage: links.py SOURCE     SOURCE is the top of the source tree
"""
import argparse
import pathlib
import re
import sys

LINK = re.compile(r"(?<!\!)\[[^\]]*\]\(([^)\s]+)\)")
FENCE = re.compile(r"^```.*?^```$", re.MULTILINE | re.DOTALL)


def anchors(text):
    """The names that a reader of Markdown gives to headings: lower case, hyphens for blanks, no other signs."""
    heads = re.findall(r"^#+ (.+)$", FENCE.sub("", text), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", re.sub(r"[`*]", "", head).lower()).replace(" ", "-") for head in heads}


def links(text):
    return [each for each in LINK.findall(FENCE.sub("", text)) if not re.match(r"[a-z]+:", each)]


def broken(file, text):
    for link in links(text):
        path, _, anchor = link.partition("#")
        target = (file.parent / path) if path else file
        if not target.exists():
            yield f"{link}: there is no such file"
        elif anchor and anchor not in anchors(target.read_text(encoding="utf-8")):
            yield f"{link}: there is no such heading"


def not_reached(index, pages):
    reached = {(index.parent / each.partition("#")[0]).resolve() for each in links(index.read_text(encoding="utf-8"))}
    return [page for page in pages if page.resolve() not in reached and page != index]


def problems(source):
    pages = sorted(source.glob("docs/**/*.md"))
    for file in [*sorted(source.glob("*.md")), *pages, *sorted(source.glob("tests/**/*.md"))]:
        for problem in broken(file, file.read_text(encoding="utf-8")):
            yield f"{file.relative_to(source)}: {problem}"
    for page in not_reached(source / "docs/README.md", pages):
        yield f"docs/README.md: no link to {page.relative_to(source)}"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("source", type=pathlib.Path)
    found = list(problems(parser.parse_args().source))
    for problem in found:
        print(problem, file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
