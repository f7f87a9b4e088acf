# SPDX-License-Identifier: Apache-2.0
"""One user's transactions: lkbench against its OCI calls alone, and those against the server's own client library."""
import results
import runner
import workload
from lkbench import Lkbench

TITLE = "one user against bare programs"

_SCALE = 10


def run(bench):
    with bench.server(*workload.SERVER) as server:
        work = workload.Workload(bench, server, Lkbench(bench, server), _SCALE, 2)
        contestants, turns = [], {}
        for kind in workload.KINDS:
            own = _contestants(work, kind)
            work.load()
            contestants += own
            turns |= runner.alternate(own, bench.rounds(5), server, bench.say)
        settings = server.settings()

    goals = []
    for kind in workload.KINDS:
        goals.append(results.Goal(f"{kind}, 1 user", "the same OCI calls alone", ">=", 0.95,
                                  runner.rate_ratio(turns, f"lkbench, {kind}", f"OCI calls alone, {kind}")))
        goals.append(results.Goal(f"OCI library, {kind}", "Connector/C with the same statements", ">=", 0.97,
                                  runner.rate_ratio(turns, f"OCI calls alone, {kind}", f"Connector/C, {kind}")))
    return results.result(unit="transaction", goals=goals, settings=settings, contestants=contestants, turns=turns,
                          notes=["The bare programs have their texts and values made beforehand, and their own "
                                 "processor time does not count the start.", workload.NOTE])


def _contestants(work, kind):
    # What has been deleted is loaded again, so that all delete as many rows.
    prepare = {"prepare": work.load} if kind == "delete" else {}
    return [runner.Contestant(f"lkbench, {kind}", work.lkbench_command(1, f"{kind}=1"),
                              lambda: work.lkbench(1, f"{kind}=1", "transaction"), **prepare),
            runner.Contestant(f"OCI calls alone, {kind}", f"bare_oci {kind} …", lambda: work.bare("bare_oci", kind),
                              **prepare),
            runner.Contestant(f"Connector/C, {kind}", f"bare_connector {kind} …",
                              lambda: work.bare("bare_connector", kind), **prepare)]
