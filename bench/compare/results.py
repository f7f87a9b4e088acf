# SPDX-License-Identifier: Apache-2.0
"""The results of comparisons, one JSON file each."""
import dataclasses
import json

import figures
import machine


@dataclasses.dataclass(frozen=True)
class Goal:
    what: str
    against: str
    sense: str  # ">=" or "<="
    goal: float
    figure: figures.Figure
    unit: str = ""  # empty: a ratio

    def as_json(self):
        return dataclasses.asdict(self) | {"met": self.figure.meets(self.sense, self.goal)}


def contestant_rows(contestants, turns):
    """A row of the results' table for each contestant: medians with their spread."""
    rows = []
    for contestant in contestants:
        own = turns[contestant.name]
        row = {"name": contestant.name, "command": contestant.command}
        for column in ("rate", "client_cpu_us", "server_cpu_us"):
            row[column] = dataclasses.asdict(figures.figure(getattr(turn, column) for turn in own))
        rows.append(row)
    return rows


def result(*, unit, goals, settings, contestants=(), turns=None, notes=(), series=()):
    """`series`: [{"label", "points": [[x, median, low, high], …]}], drawn as lines; without them bars are drawn of the
    contestants. `notes` are sentences below the table."""
    return {"unit": unit, "goals": [goal.as_json() for goal in goals], "settings": settings,
            "contestants": contestant_rows(contestants, turns or {}), "notes": list(notes), "series": list(series),
            "turns": {name: [dataclasses.asdict(turn) for turn in own] for name, own in (turns or {}).items()},
            "machine": machine.describe()}


def write(folder, name, title, content):
    folder.mkdir(parents=True, exist_ok=True)
    (folder / f"{name}.json").write_text(json.dumps({"name": name, "title": title} | content, indent=1) + "\n")


def read_all(folder, names):
    """Those that are there, in the order of the names."""
    files = [folder / f"{name}.json" for name in names]
    return [json.loads(file.read_text()) for file in files if file.exists()]


def goal_text(goal):
    """'0.91 (0.88 to 0.93), goal >= 0.85: met' of a goal as it stands in a result."""
    measured = goal["figure"]
    unit = f" {goal['unit']}" if goal["unit"] else ""
    return (f"{number(measured['median'])} ({number(measured['low'])} to {number(measured['high'])}){unit}, "
            f"goal {goal['sense']} {number(goal['goal'])}: {'met' if goal['met'] else 'missed'}")


def number(value):
    """Three digits that tell, thousands grouped."""
    if abs(value) >= 1000:
        return f"{value:,.0f}"
    if abs(value) >= 100:
        return f"{value:.0f}"
    return f"{value:.1f}" if abs(value) >= 10 else f"{value:.2f}"
