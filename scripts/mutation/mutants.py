# SPDX-License-Identifier: Apache-2.0
"""The changes that are tried: one constant, one comparison or operator, one statement, one condition at a time.

A mutant may turn out not to compile (a deleted declaration that is used below); it then counts for nothing.
"""
import dataclasses
import re

from cpp_tokens import closing, line_of, tokens

# Binary operators stand between blanks in formatted code; brackets of templates and unary signs do not.
_OPERATORS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==",
              "&&": "||", "||": "&&", "+": "-", "-": "+", "*": "/", "/": "*"}
_COMPARISONS = {"<", "<=", ">", ">=", "==", "!="}
_WORDS = {"true": "false", "false": "true", "TRUE": "FALSE", "FALSE": "TRUE"}
_NO_STATEMENT = {"return", "if", "else", "for", "while", "do", "switch", "case", "default", "break", "continue", "using",
                 "namespace", "class", "struct", "enum", "template", "typedef", "static_assert", "extern", "public",
                 "private", "protected", "virtual", "friend", "const", "constexpr", "static", "inline", "auto", "throw",
                 "explicit", "operator"}


@dataclasses.dataclass(frozen=True)
class Mutant:
    file: str  # below the source folder
    line: int
    kind: str  # constant, comparison, operator, statement or condition
    start: int
    end: int
    old: str
    new: str
    context: str  # the changed line as it then stands; of a deleted statement, what is deleted

    def apply(self, text):
        return text[:self.start] + self.new + text[self.end:]

    def key(self):
        """What the list of equivalent mutants names it by: no line number, which moves when code above it changes."""
        return f"{self.file}: {self.kind}: {self.context}"

    def name(self):
        return f"{self.file}:{self.line}: {self.kind}: {self.context}"


def mutants_of(file, text):
    """All mutants of one source text, in its order."""
    found = []
    skipped = _asserted_at_compile_time(text)
    all_tokens = [token for token in tokens(text) if not any(a <= token.start < b for a, b in skipped)]

    def add(kind, start, end, new):
        old = text[start:end]
        shown = f"delete {old}" if kind == "statement" else _changed_line(text, start, end, new)
        found.append(Mutant(file, line_of(text, start), kind, start, end, old, new, " ".join(shown.split())))

    for index, token in enumerate(all_tokens):
        if token.kind == "number":
            add("constant", token.start, token.end, _other_number(token.text))
        elif token.kind == "string" and len(token.text) > 2:
            add("constant", token.start, token.end, _other_string(token.text))
        elif token.text in _WORDS:
            add("constant", token.start, token.end, _WORDS[token.text])
        elif token.kind == "sign" and token.text in _OPERATORS and _is_binary(text, token):
            kind = "comparison" if token.text in _COMPARISONS else "operator"
            add(kind, token.start, token.end, _OPERATORS[token.text])
        elif token.text in ("if", "while") and all_tokens[index + 1].text == "(":
            end = closing(all_tokens, index + 1)
            inner = text[all_tokens[index + 1].end:all_tokens[end].start]
            add("condition", all_tokens[index + 1].start, all_tokens[end].end, f"(!({inner}))")
        elif token.text == "?":
            _negate_question(text, all_tokens, index, add)
        if _begins_statement(all_tokens, index):
            end = _end_of_statement(all_tokens, index)
            if end is not None:
                add("statement", token.start, all_tokens[end].end, ";")
    return found


def _changed_line(text, start, end, new):
    behind = text.find("\n", end)
    return text[text.rfind("\n", 0, start) + 1:start] + new + text[end:behind if behind >= 0 else len(text)]


def _asserted_at_compile_time(text):
    return [match.span() for match in re.finditer(r"static_assert\(.*?\);", text, re.DOTALL)]


def _other_number(text):
    number = re.match(r"(0[xX][0-9a-fA-F]+|[0-9.]+)(.*)", text)
    digits, suffix = number.groups()
    if "." in digits:
        return f"{float(digits) + 1}{suffix}"
    value = int(digits, 0)
    return f"{1 if value == 0 else value + 1}{suffix}"


def _other_string(text):
    quote = text.index('"')
    return text[:quote + 1] + "~" + text[quote + 1:]


def _is_binary(text, token):
    return text[token.start - 1] == " " and text[token.end] in " \n"


def _negate_question(text, all_tokens, index, add):
    """The condition of `a ? b : c`, as far back as the bracket, sign or word that it follows."""
    depth, first = 0, index
    while first > 0:
        before = all_tokens[first - 1].text
        depth += (before in ")]}") - (before in "([{") if len(before) == 1 else 0
        if depth < 0 or (depth == 0 and before in ("=", "return", ",", ";", "?", ":", "{", "}", "<<")):
            break
        first -= 1
    if first < index:
        start, end = all_tokens[first].start, all_tokens[index - 1].end
        add("condition", start, end, f"!({text[start:end]})")


def _begins_statement(all_tokens, index):
    token = all_tokens[index]
    if token.text in _NO_STATEMENT or not (token.kind == "word" or token.text in ("++", "--", "*")):
        return False
    before = all_tokens[index - 1].text if index else ""
    if before not in (";", "{", "}", "else") and not _closes_condition(all_tokens, index - 1):
        return False
    following = all_tokens[index + 1].text if index + 1 < len(all_tokens) else ""
    return token.kind == "sign" or token.text == "delete" or following in (
        "(", "=", ".", "->", "::", "[", "++", "--", "+=", "-=", "*=", "/=")


def _closes_condition(all_tokens, index):
    """Whether the token is the bracket behind `if (…)`, `for (…)` or `while (…)`."""
    if index < 0 or all_tokens[index].text != ")":
        return False
    depth = 0
    for at in range(index, 0, -1):
        depth += (all_tokens[at].text == ")") - (all_tokens[at].text == "(")
        if depth == 0:
            return all_tokens[at - 1].text in ("if", "for", "while")
    return False


def _end_of_statement(all_tokens, index):
    """The semicolon that ends the statement; None when a block comes first (a function's head)."""
    while index < len(all_tokens):
        text = all_tokens[index].text
        if text == ";":
            return index
        if text == "(" or text == "[":
            index = closing(all_tokens, index)
        elif text == "{" or text == "}" or index is None:
            return None
        if index is None:
            return None
        index += 1
    return None
