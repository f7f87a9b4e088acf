# SPDX-License-Identifier: Apache-2.0
"""What was tried and what came of it, as a table and a list."""
import collections

KILLED, SURVIVED, EQUIVALENT, INVALID = "killed", "survived", "equivalent", "invalid"


def outcome(mutant, result, equivalents):
    """One of the four words above, for what the worker said about the mutant."""
    if result == "invalid":
        return INVALID
    if result is not None:
        return KILLED
    return EQUIVALENT if mutant.key() in equivalents else SURVIVED


def score(counts):
    """The killed share of all mutants that compile and change what the program does, in percent."""
    meant = counts[KILLED] + counts[SURVIVED]
    return 100.0 * counts[KILLED] / meant if meant else 100.0


def table(outcomes):
    """Lines: a row a file, and the total. `outcomes` is a list of (mutant, word)."""
    per_file = collections.defaultdict(collections.Counter)
    for mutant, word in outcomes:
        per_file[mutant.file][word] += 1
    total = sum(per_file.values(), collections.Counter())
    lines = [f"{'file':<52}{'killed':>8}{'survived':>10}{'equivalent':>12}{'invalid':>9}{'score':>9}"]
    for name, counts in [*sorted(per_file.items()), ("all", total)]:
        lines.append(f"{name:<52}{counts[KILLED]:>8}{counts[SURVIVED]:>10}{counts[EQUIVALENT]:>12}"
                     f"{counts[INVALID]:>9}{score(counts):>8.1f}%")
    return lines, score(total)


def read_equivalents(path):
    """{key: reason} from lines `KEY  # REASON`; a line without a reason is an error."""
    found = {}
    for number, line in enumerate(path.read_text().splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        key, separator, reason = line.rpartition("  # ")
        if not separator or not reason.strip():
            raise ValueError(f"{path}:{number}: no reason; write: MUTANT  # REASON")
        found[key.strip()] = reason.strip()
    return found
