# SPDX-License-Identifier: Apache-2.0
"""What is told of repeated measurements: their median with the lowest and the highest, and ratios of paired rounds."""
import dataclasses
import statistics


@dataclasses.dataclass(frozen=True)
class Figure:
    median: float
    low: float
    high: float
    count: int

    def meets(self, sense, goal):
        """Whether the median is at least (">=") or at most ("<=") the goal."""
        if sense not in (">=", "<="):
            raise ValueError(f"a goal is >= or <=, not {sense}")
        return self.median >= goal if sense == ">=" else self.median <= goal


def figure(values):
    values = list(values)
    if not values:
        raise ValueError("no measurement: nothing to tell the median of")
    return Figure(statistics.median(values), min(values), max(values), len(values))


def paired_ratio(ours, theirs):
    """Of measurements that alternated: each of ours by theirs of the same round, so that what a whole round suffered
    from the machine falls out."""
    if len(ours) != len(theirs):
        raise ValueError(f"{len(ours)} rounds against {len(theirs)}: ratios need pairs")
    return figure(a / b for a, b in zip(ours, theirs))


def slope(points):
    """Of the least-squares line through (x, y) points."""
    mean_x = statistics.fmean(x for x, _ in points)
    mean_y = statistics.fmean(y for _, y in points)
    spread = sum((x - mean_x) ** 2 for x, _ in points)
    if spread == 0:
        raise ValueError("a slope needs two different x")
    return sum((x - mean_x) * (y - mean_y) for x, y in points) / spread
