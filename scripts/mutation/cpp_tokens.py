# SPDX-License-Identifier: Apache-2.0
"""Splits C++ into tokens, as far as finding places to mutate needs it.

Comments, preprocessor lines, attributes and #include names are no tokens. Every token knows its offset, so that a
change of one leaves the rest of the text untouched.
"""
import dataclasses
import re

_PATTERN = re.compile(
    r"""(?P<skip>\s+|//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:[^\n\\]|\\.)*|\[\[.*?\]\])
      |(?P<string>(?:u8|[LuU])?"(?:[^"\\\n]|\\.)*")
      |(?P<char>[LuU]?'(?:[^'\\\n]|\\.)+')
      |(?P<number>\.?\d(?:[eEpP][+-]|[\w.']|)*)
      |(?P<word>[A-Za-z_]\w*)
      |(?P<sign><<=|>>=|<=>|->\*|\.\.\.|::|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|.)""",
    re.VERBOSE | re.DOTALL | re.MULTILINE)


@dataclasses.dataclass(frozen=True)
class Token:
    kind: str  # string, char, number, word or sign
    text: str
    start: int

    @property
    def end(self):
        return self.start + len(self.text)


def tokens(text):
    """The tokens of a source text, in order."""
    return [Token(match.lastgroup, match.group(), match.start())
            for match in _PATTERN.finditer(text) if match.lastgroup != "skip"]


def closing(all_tokens, at):
    """The index of the bracket that closes the one at index `at`; None when it is left open."""
    pairs = {"(": ")", "[": "]", "{": "}"}
    opened, closed = all_tokens[at].text, pairs[all_tokens[at].text]
    depth = 0
    for index in range(at, len(all_tokens)):
        token = all_tokens[index]
        if token.kind != "sign":
            continue
        depth += (token.text == opened) - (token.text == closed)
        if depth == 0:
            return index
    return None


def line_of(text, offset):
    """The number of the line that holds the offset, from 1."""
    return text.count("\n", 0, offset) + 1
