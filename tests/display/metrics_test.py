#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Metrics of whole runs, scraped while they run and compared with their run.json.

metrics_test.py LKBENCH
"""
import json
import os
import re
import socket
import subprocess
import sys
import tempfile
import time
import unittest
import urllib.error
import urllib.request

PROGRAM = ""


def free_port():
    with socket.socket() as taken:
        taken.bind(("127.0.0.1", 0))
        return taken.getsockname()[1]


class Metrics:
    """One answer, by name and labels."""

    def __init__(self, text):
        self.values = {}
        for name, labels, value in re.findall(r"^(\w+)(?:{(.*)})? (\S+)$", text, re.M):
            self.values[name, frozenset(re.findall(r'(\w+)="(.*?)"', labels))] = float(value)

    def get(self, name, **labels):
        return self.values.get((name, frozenset(labels.items())))

    def labels(self, name):
        return [dict(labels) for each, labels in self.values if each == name]


class MetricsTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.port = free_port()

    def command(self, *arguments):
        return [PROGRAM, *arguments, "--target", "local:db"]

    def start(self, *arguments):
        program = subprocess.Popen(self.command(*arguments, "--metrics", str(self.port)), cwd=self.folder,
                                   stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        self.addCleanup(program.stdout.close)
        self.addCleanup(program.wait)
        self.addCleanup(program.kill)
        return program

    def prepare(self):
        for words in (["create", "--tables", "1"], ["load", "--scale", "1"]):
            subprocess.run(self.command(*words), cwd=self.folder, check=True, stdout=subprocess.DEVNULL)

    def scrape(self):
        with urllib.request.urlopen(f"http://127.0.0.1:{self.port}/metrics", timeout=10) as answer:
            return Metrics(answer.read().decode())

    def scrape_until(self, condition, program):
        end = time.monotonic() + 60
        while time.monotonic() < end and program.poll() is None:
            try:
                metrics = self.scrape()
                if condition(metrics):
                    return metrics
            except (urllib.error.URLError, ConnectionError):
                pass
            time.sleep(0.02)
        raise AssertionError("it did not come: " + (program.stdout.read() if program.poll() is not None else ""))

    def test_the_figures_of_a_phase_are_those_of_its_file(self):
        self.prepare()
        program = self.start("workload", "--results", "out", "--users", "3", "--phase", "name=one duration=2s warm_up=1s",
                             "--phase", "name=two duration=60s rate=50")
        metrics = self.scrape_until(lambda metrics: metrics.get("lkbench_phase_info", phase="two", part="measured"),
                                    program)
        self.assertEqual(metrics.get("lkbench_users"), 3)
        self.assertIsNotNone(metrics.get("lkbench_backlog"))
        info, = metrics.labels("lkbench_run_info")
        program.send_signal(2)
        program.communicate(timeout=60)
        with open(os.path.join(self.folder, "out", "run.json"), encoding="utf-8") as file:
            run = json.load(file)
        self.assertEqual(info, {"version": run["lkbench"]["version"], "verb": "workload",
                                "schema_seed": str(run["seeds"]["schema"]), "run_seed": str(run["seeds"]["run"])})
        phase = run["workload"]["phases"][0]
        for part in ("measured", "warm_up"):
            self.assertEqual(len(phase[part]["transactions"]), 3)
            for xact in phase[part]["transactions"]:
                labels = {"phase": "one", "part": part, "transaction": xact["name"]}
                times = xact["response_ns"]
                self.assertGreater(times["count"], 0)
                self.assertEqual(metrics.get("lkbench_executions_total", **labels), xact["executions"])
                self.assertEqual(metrics.get("lkbench_rows_total", **labels), xact["rows"])
                self.assertEqual(metrics.get("lkbench_response_seconds_count", **labels), times["count"])
                self.assertAlmostEqual(metrics.get("lkbench_response_seconds_sum", **labels), times["sum"] / 1e9, 6)
                self.assertEqual(metrics.get("lkbench_response_seconds_bucket", le="+Inf", **labels), times["count"])
                bounds = sorted((float(each["le"]), metrics.get("lkbench_response_seconds_bucket", **each))
                                for each in metrics.labels("lkbench_response_seconds_bucket")
                                if {**each, "le": ""} == {**labels, "le": ""})
                self.assertEqual(len(bounds), 19)
                self.assertEqual([count for _, count in bounds], sorted(count for _, count in bounds))
                for bound, count in bounds:
                    if bound * 1e9 >= times["max"] * 1.01:
                        self.assertEqual(count, times["count"])

    def test_a_load_tells_its_rows(self):
        program = self.start("run", "--tables", "1", "--scale", "3000", "--results", "out")
        metrics = self.scrape_until(lambda metrics: metrics.get("lkbench_load_rows"), program)
        self.assertEqual(metrics.get("lkbench_load_rows_expected"), 3000000)
        self.assertLess(metrics.get("lkbench_load_rows"), 3000000)
        self.assertEqual(metrics.get("lkbench_users"), 0)
        self.assertEqual(metrics.labels("lkbench_phase_info"), [])
        program.send_signal(2)
        program.communicate(timeout=60)

    def test_only_this_machine_is_answered(self):
        self.prepare()
        program = self.start("workload", "--duration", "60s", "--results", "out")
        self.scrape_until(lambda metrics: metrics.get("lkbench_users") == 2, program)
        listening = set()
        for table in ("tcp", "tcp6"):
            with open("/proc/net/" + table, encoding="ascii") as file:
                listening |= {line.split()[1] for line in file.readlines()[1:] if line.split()[3] == "0A"}
        port = f":{self.port:04X}"
        self.assertEqual({each for each in listening if each.endswith(port)}, {"0100007F" + port})
        program.send_signal(2)
        program.communicate(timeout=60)

    def test_a_port_in_use_is_refused_before_the_work(self):
        with socket.socket() as other:
            other.bind(("127.0.0.1", self.port))
            other.listen()
            program = self.start("run", "--results", "out")
            out, _ = program.communicate(timeout=60)
        self.assertEqual(program.returncode, 5)
        self.assertEqual(out, f"lkbench: metrics: port {self.port} of 127.0.0.1 cannot be used: Address already in use: "
                              "name another one with --metrics PORT\n")
        self.assertFalse(os.path.exists(os.path.join(self.folder, "out")))


if __name__ == "__main__":
    PROGRAM = os.path.abspath(sys.argv.pop(1))
    unittest.main()
