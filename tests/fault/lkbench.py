# SPDX-License-Identifier: Apache-2.0
"""lkbench as a user runs it: started, waited for within a bound, judged by exit code, lines and report."""

import json
import os
import pathlib
import signal
import subprocess
import time

from processes import Broken, expect

DONE, USAGE, FAILURES, CANNOT, INTERRUPTED, TERMINATED = 0, 1, 2, 5, 130, 143
KILLED = -signal.SIGKILL


class Ended:
    """An lkbench that has ended."""

    def __init__(self, words, code, seconds, out, problems, report):
        self.words, self.code, self.seconds = words, code, seconds
        self.out, self.problems, self.report = out, problems, report

    def require(self, *codes):
        expect(self.code in codes, f"`{self.words}` ended with {self.code}, not {codes}: {self.problems}")
        return self

    def lines(self, most, *needed):
        """No more than `most` lines of problems; each of `needed` stands in one of them."""
        expect(len(self.problems) <= most, f"`{self.words}` said {len(self.problems)} lines: {self.problems}")
        for text in needed:
            said = any(text in line for line in self.problems)
            expect(said, f"`{self.words}` does not say {text!r}: {self.problems}")
        for line in self.problems:
            expect(len(line) < 1000, f"`{self.words}` said a line of {len(line)} characters: {line[:300]}…")
            for part in set(line.split(": ")):
                expect(len(part) < 15 or line.count(part) == 1, f"`{self.words}` says the same twice: {line}")
        return self

    def row_count(self, transaction):
        """Rows of the executions that the report counts as successful."""
        found = [each for each in self.report["workload"]["measured"]["transactions"] if each["name"].startswith(transaction)]
        return found[0]["rows"] if found else 0


class Running:
    def __init__(self, words, process, folder):
        self.words, self.process, self._folder = words, process, folder
        self._begin = time.monotonic()

    @property
    def pid(self):
        return self.process.pid

    def has_ended(self):
        return self.process.poll() is not None

    def printed(self):
        return (self._folder / "out").read_text(errors="replace")

    def signal(self, number):
        if not self.has_ended():
            self.process.send_signal(number)

    def wait(self, bound):
        try:
            code = self.process.wait(bound)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
            raise Broken(f"`{self.words}` did not end within {bound} s; it had said: {self._problems()}") from None
        report = self._folder / "report.json"
        parsed = json.loads(report.read_text()) if report.exists() and report.stat().st_size else None
        return Ended(self.words, code, time.monotonic() - self._begin, self.printed(), self._problems(), parsed)

    def _problems(self):
        return (self._folder / "err").read_text(errors="replace").splitlines()


class Lkbench:
    """lkbench on one target. `prefix` are words to run it by, as `ip netns exec NAME`."""

    _runs = 0

    def __init__(self, binary, folder, target, password="", prefix=()):
        self.target, self._folder = target, pathlib.Path(folder)
        self._prefix, self._binary = [str(word) for word in prefix], str(binary)
        self._environment = dict(os.environ, LKBENCH_FAULT_PASSWORD=password)
        self._password = ["--password", "env:LKBENCH_FAULT_PASSWORD"] if password else []

    def start(self, verb, *flags):
        Lkbench._runs += 1
        folder = self._folder / f"run{Lkbench._runs}"
        folder.mkdir(parents=True)
        words = [verb, "--target", self.target, *self._password, *(str(flag) for flag in flags)]
        if verb != "check":
            words += ["--json", str(folder / "report.json")]
        if verb in ("run", "workload"):
            words += ["--results", str(folder / "results")]
        with open(folder / "out", "wb") as out, open(folder / "err", "wb") as err:
            process = subprocess.Popen(
                [*self._prefix, self._binary, *words], stdin=subprocess.DEVNULL, stdout=out, stderr=err,
                env=self._environment, start_new_session=True,
            )
        return Running(" ".join(["lkbench", verb, *(str(flag) for flag in flags)]), process, folder)

    def run(self, verb, *flags, bound=120):
        return self.start(verb, *flags).wait(bound)

    def do(self, verb, *flags, bound=120):
        """Runs a verb that has to succeed and say nothing."""
        ended = self.run(verb, *flags, bound=bound).require(DONE)
        expect(not ended.problems, f"`{ended.words}` said: {ended.problems}")
        return ended
