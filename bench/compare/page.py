# SPDX-License-Identifier: Apache-2.0
"""Writes results into docs/performance.md: what stands between `<!-- result: NAME -->` and `<!-- end -->`. The rest of
the page is written by hand; a comparison without a result keeps what it has."""
import re

import micro
import plots
import programs
import results

_BLOCK = re.compile(r"(<!-- result: (\S+) -->\n).*?(<!-- end -->)", re.DOTALL)


def write(docs, work, names):
    file = docs / "performance.md"
    found = results.read_all(work, names)
    small = micro.read(work / "micro.json")
    blocks = {result["name"]: block(result, docs / "performance") for result in found}
    if small:
        blocks["micro"] = micro_block(small)
    if found or small:
        blocks["goals"] = goals_table([goal for result in found for goal in result["goals"]] + micro.goals(small))
    if found:
        blocks["machine"] = machine_block(found)
    text = file.read_text()
    for name in sorted(blocks.keys() - {name for _, name, _ in _BLOCK.findall(text)}):
        raise programs.Broken(f"{file} has no place for '{name}': it needs <!-- result: {name} --> and <!-- end -->")
    file.write_text(_BLOCK.sub(lambda match: match[1] + blocks.get(match[2], _inside(match)) + match[3], text))


def _inside(match):
    return match[0][len(match[1]):-len(match[3])]


def _row(*cells):
    return "| " + " | ".join(str(cell).replace("|", "\\|") for cell in cells) + " |\n"


def _table(head, rows):
    return _row(*head) + "|" + "---|" * len(head) + "\n" + "".join(_row(*row) for row in rows)


def _spread(figure):
    return f"{results.number(figure['median'])} ({results.number(figure['low'])}–{results.number(figure['high'])})"


def goals_table(goals):
    rows = [(goal["what"], goal["against"], f"{goal['sense']} {results.number(goal['goal'])} {goal['unit']}".strip(),
             _spread(goal["figure"]), "met" if goal["met"] else "**missed**") for goal in goals]
    return _table(("what", "against", "goal", "median (lowest–highest)", ""), rows)


def block(result, folder):
    """Table, commands, notes and plot of one comparison; the plot goes into the folder."""
    text = ""
    if result["contestants"]:
        unit = result["unit"]
        rows = [(row["name"], _spread(row["rate"]), _spread(row["client_cpu_us"]), _spread(row["server_cpu_us"]))
                for row in result["contestants"]]
        text += _table(("contestant", f"{unit}s/s", f"client µs/{unit}", f"server µs/{unit}"), rows)
        text += "\n" + "".join(f"- {row['name']}: `{row['command']}`\n" for row in result["contestants"])
    text += "".join(f"\n{note}\n" for note in result["notes"])
    if plots.draw(result, folder / f"{result['name']}.svg"):
        text += f"\n![{result['title']}]({folder.name}/{result['name']}.svg)\n"
    settings = ", ".join(f"{key} {value}" for key, value in result["settings"].items())
    return text + f"\nServer: {settings}.\n" if settings else text


def micro_block(times):
    return _table(("part", "ns of processor time"), [(name, _spread(figure)) for name, figure in micro.rows(times)])


def machine_block(found):
    newest = max((result["machine"] for result in found), key=lambda machine: machine["date"])
    loads = ", ".join(f"{result['name']} {result['machine']['load_average'][0]}" for result in found)
    rows = [(key.replace("_", " "), value) for key, value in newest.items() if key != "load_average"]
    return _table(("", ""), rows + [("load average at the end of", loads)])
