#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""The output for programs: whole runs with --format json, held against the schema of run.json and run.json itself.

stream_test.py LKBENCH SOURCE
"""
import copy
import json
import os
import re
import signal
import subprocess
import sys
import tempfile
import unittest

import jsonschema

PROGRAM, SOURCE = "", ""


def schema_of(name):
    """The schema of a part of run.json, without what the stream leaves out."""
    with open(os.path.join(SOURCE, "docs", "run.schema.json"), encoding="utf-8") as file:
        schema = json.load(file)
    for part in schema["$defs"].values():
        part["required"] = [key for key in part.get("required", [])
                            if key not in ("buckets", "tables", "column_counts", "user_executions")]
    part = copy.deepcopy(schema["$defs"][name])
    part["$defs"] = schema["$defs"]
    return jsonschema.Draft202012Validator(part)


class StreamTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def start(self, *arguments):
        return subprocess.Popen([PROGRAM, *arguments, "--format", "json", "--target", "local:db"], cwd=self.folder,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)

    def stream(self, *arguments, code=0):
        """The objects of an invocation, each of a line of its own, and what was on standard error."""
        program = self.start(*arguments)
        out, err = program.communicate(timeout=120)
        self.assertEqual(program.returncode, code, err + out)
        return [json.loads(line) for line in out.splitlines()], err

    def run_json(self, folder):
        with open(os.path.join(self.folder, folder, "run.json"), encoding="utf-8") as file:
            return json.load(file)

    def prepare(self):
        for words in (["create", "--tables", "1"], ["load", "--scale", "0.2"]):
            self.stream(*words)

    def test_a_run_tells_everything_that_its_file_has(self):
        objects, err = self.stream("run", "--tables", "2", "--scale", "1", "--warm-up", "1s", "--results", "out",
                                   "--phase", "name=one duration=2s", "--phase", "name=two duration=1s warm_up=0s")
        self.assertEqual(err, "")
        run = self.run_json("out")
        of = {}
        for each in objects:
            of.setdefault(each["type"], []).append(each)
        self.assertEqual(objects[0]["type"], "begin")
        self.assertEqual(objects[-1]["type"], "end")
        self.assertEqual(set(of), {"begin", "tables", "load", "event", "interval", "phase", "end"})

        begin, = of["begin"]
        for key in ("lkbench", "verb", "started", "target", "seeds"):
            self.assertEqual(begin[key], run[key], key)
        self.assertEqual([of["load"][0]["rows"], of["load"][0]["over"]], [0, False])
        self.assertEqual([of["load"][-1]["rows"], of["load"][-1]["over"]], [2000, True])

        workload = run["workload"]
        shown = [{key: value for key, value in each.items() if key not in ("type", "phase_name")}
                 for each in of["interval"]]
        names = [xact["name"] for xact in workload["measured"]["transactions"]]
        for each in shown:
            self.assertEqual([xact.pop("name") for xact in each["transactions"]], names)
        self.assertEqual(shown, workload["intervals"])
        self.assertEqual([each["phase_name"] for each in of["interval"]][-1], "two")
        self.assertEqual([{**each, "type": None} for each in of["event"]],
                         [{**each, "type": None} for each in workload["events"]])
        self.assertEqual([each["name"] for each in of["phase"]], ["one", "two"])
        for told, kept in zip(of["phase"], workload["phases"]):
            schema_of("phase").validate(told)
            self.assertEqual(told["measured"]["total"]["executions"], kept["measured"]["total"]["executions"])
            self.assertNotIn("buckets", json.dumps(told))

        end, = of["end"]
        for key in ("exit_code", "verdict", "interrupted", "load", "problems", "limits", "notes"):
            self.assertEqual(end[key], run[key], key)
        self.assertEqual(end["results"], "out")
        self.assertEqual(end["workload"]["measured"]["total"]["executions"],
                         sum(each["total"]["executions"] for each in of["interval"] if not each["warm_up"]))

    def tables(self, *arguments):
        """The first and the last that a verb tells of its tables."""
        told = [each for each in self.stream(*arguments)[0] if each["type"] == "tables"]
        for each in told:
            each.pop("elapsed_ns")
        return told[0], told[-1]

    def test_create_refresh_and_drop_tell_of_their_tables(self):
        def state(verb, tables, over, **rows):
            return {"type": "tables", "verb": verb, "tables": tables, "of": 3, **rows, "over": over}

        self.assertEqual(self.tables("create", "--tables", "3"), (state("create", 0, False), state("create", 3, True)))
        self.stream("load", "--scale", "0.2")
        self.assertEqual(self.tables("refresh", "--scale", "0.1", "--users", "2"),
                         (state("refresh", 0, False, rows_removed=0), state("refresh", 3, True, rows_removed=300)))
        self.assertEqual(self.tables("drop"), (state("drop", 0, False), state("drop", 3, True)))

    def test_the_log_has_the_text_that_is_not_printed(self):
        self.prepare()
        self.stream("workload", "--duration", "1s", "--results", "out")
        with open(os.path.join(self.folder, "out", "log.txt"), encoding="utf-8") as log:
            text = log.read()
        self.assertRegex(text, r"Z  workload: 2 users, 1 table")
        self.assertRegex(text, r"Z  +1 s +[\d.]+ tx/s")
        self.assertNotIn('"type"', text)

    def test_a_limit_that_failed_is_in_the_end(self):
        self.prepare()
        objects, _ = self.stream("workload", "--duration", "1s", "--results", "out", "--limits", "throughput>1000000",
                                 code=3)
        self.assertEqual([each["passed"] for each in objects[-1]["limits"]], [False])
        self.assertEqual(objects[-1]["exit_code"], 3)

    def test_a_refused_verb_has_its_problem_and_its_end(self):
        objects, err = self.stream("workload", "--results", "out", code=1)
        self.assertEqual([each["type"] for each in objects], ["begin", "problem", "end"])
        self.assertEqual("lkbench: " + objects[1]["text"] + "\n", err)
        self.assertEqual(objects[2]["verdict"], {"result": "error", "text": objects[1]["text"]})
        self.assertIsNone(objects[2]["results"])

    def test_what_fails_before_the_work_has_an_end(self):
        with open(os.path.join(self.folder, "db"), "w", encoding="utf-8"):
            pass
        objects, err = self.stream("create", code=5)
        self.assertEqual([each["type"] for each in objects], ["problem", "end"])
        self.assertEqual(objects[1], {"type": "end", "exit_code": 5,
                                      "verdict": {"result": "error", "text": objects[0]["text"]}})
        self.assertEqual(err, "lkbench: " + objects[0]["text"] + "\n")

    def test_an_interrupted_run_ends_its_stream(self):
        self.prepare()
        program = self.start("workload", "--duration", "90s", "--results", "out")
        lines = []
        for line in program.stdout:
            lines.append(json.loads(line))
            if lines[-1]["type"] == "interval" and len(lines) < 10:
                program.send_signal(signal.SIGINT)
                break
        lines += [json.loads(line) for line in program.communicate(timeout=60)[0].splitlines()]
        self.assertEqual(program.returncode, 130)
        self.assertIn({"type": "problem", "text": "stopping; once more to quit at once"}, lines)
        self.assertEqual(lines[-1]["interrupted"], "SIGINT")
        self.assertIn("interrupted", [each["kind"] for each in lines if each["type"] == "event"])

    def test_a_wrong_command_line_leaves_the_stream_empty(self):
        objects, err = self.stream("run", "--users", "0", code=1)
        self.assertEqual(objects, [])
        self.assertTrue(err.startswith("lkbench: --users"))

    def test_the_example_of_the_document_is_true(self):
        with open(os.path.join(SOURCE, "docs", "stream.md"), encoding="utf-8") as file:
            example = re.search(r"## Example\n\n```\n(.*?)```", file.read(), re.S)[1]
        transcript = os.path.join(self.folder, "example.txt")
        with open(transcript, "w", encoding="utf-8") as file:
            file.write(example)
        subprocess.run([sys.executable, "-B", os.path.join(SOURCE, "tests", "cli", "transcript.py"), "--bin",
                        os.path.dirname(PROGRAM), "--source", SOURCE, transcript], check=True)


if __name__ == "__main__":
    PROGRAM, SOURCE = os.path.abspath(sys.argv.pop(1)), os.path.abspath(sys.argv.pop(1))
    unittest.main()
