# SPDX-License-Identifier: Apache-2.0
"""Contestants take turns within one run, A B C A B C …, so that all of them meet the same machine and the same server."""
import dataclasses
from typing import Callable

import figures


@dataclasses.dataclass(frozen=True)
class Measurement:
    """What one turn did: units (rows, transactions) in so many seconds, for so much processor time of the client."""
    units: float
    seconds: float
    client_cpu: float


@dataclasses.dataclass(frozen=True)
class Contestant:
    name: str
    command: str  # as it is shown
    turn: Callable[[], Measurement]
    prepare: Callable[[], None] = lambda: None  # before each turn, not measured


@dataclasses.dataclass(frozen=True)
class Turn:
    rate: float  # units a second
    client_cpu_us: float  # a unit
    server_cpu_us: float  # a unit


def alternate(contestants, rounds, server, say):
    """{name: [a Turn for each round]}"""
    turns = {contestant.name: [] for contestant in contestants}
    for number in range(1, rounds + 1):
        for contestant in contestants:
            contestant.prepare()
            before = server.cpu_seconds()
            done = contestant.turn()
            turn = Turn(done.units / done.seconds, done.client_cpu * 1e6 / done.units,
                        (server.cpu_seconds() - before) * 1e6 / done.units)
            turns[contestant.name].append(turn)
            say(f"round {number} of {rounds}, {contestant.name}: {turn.rate:,.0f}/s in {done.seconds:.1f} s, a unit costs"
                f" the client {turn.client_cpu_us:.2f} and the server {turn.server_cpu_us:.2f} us")
    return turns


def rates(turns, name):
    return [turn.rate for turn in turns[name]]


def rate_ratio(turns, ours, theirs):
    return figures.paired_ratio(rates(turns, ours), rates(turns, theirs))


def client_cpu_ratio(turns, ours, theirs):
    return figures.paired_ratio([turn.client_cpu_us for turn in turns[ours]],
                                [turn.client_cpu_us for turn in turns[theirs]])
