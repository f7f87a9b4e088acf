# SPDX-License-Identifier: Apache-2.0
"""lkbench as a contestant. It joins the server that a comparison has started in its folder."""
import json
import tempfile

import programs
import runner


class Lkbench:
    def __init__(self, bench, server, *flags, **of_verbs):
        """`flags` go with every invocation, those of a verb with that one: create=["--scale", 40]."""
        self._program = bench.program("lkbench")
        self._report = bench.work / "lkbench.json"
        self._always = ["--target", f"local:{server.folder}", "--log-level", "warning", *map(str, flags)]
        self._flags = list(map(str, flags))
        self._of_verbs = {verb: list(map(str, own)) for verb, own in of_verbs.items()}

    def command(self, verb, *flags):
        """As it is shown: without the folder of this run."""
        return programs.text_of(["lkbench", verb, *self._flags, *self._of_verbs.get(verb, []), *flags])

    def whole_command(self, verb, *flags):
        places = ["--results", tempfile.mkdtemp(dir=self._report.parent)] if verb in ("run", "workload") else []
        return [self._program, verb, *self._always, *self._of_verbs.get(verb, []), *flags, *places]

    def do(self, verb, *flags):
        return programs.run(self.whole_command(verb, *flags))

    def report(self, verb, *flags):
        """Runs a verb; what it wrote as JSON, and the run."""
        run = self.do(verb, *flags, "--json", self._report)
        return json.loads(self._report.read_text()), run

    def create_anew(self):
        self.do("drop")
        self.do("create")

    def load(self, *flags):
        """A Measurement of the load proper, as lkbench reports it."""
        report, run = self.report("load", *flags)
        return runner.Measurement(report["load"]["rows"], report["load"]["elapsed_ns"] / 1e9, run.cpu_seconds)
