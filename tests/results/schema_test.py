#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""The published schema: it is a schema, what lkbench writes keeps to it, and what is wrong does not."""
import copy
import json
import random
import subprocess
import sys
import unittest

import jsonschema
import sample_run

SCHEMA, WRITTEN = {}, []


class SchemaTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.validator = jsonschema.Draft202012Validator(SCHEMA)
        cls.sample = sample_run.run([sample_run.Phase(random.Random(1), seconds=3)])

    def refused(self, change):
        run = copy.deepcopy(self.sample)
        change(run)
        return not self.validator.is_valid(run)

    def test_is_a_schema(self):
        jsonschema.Draft202012Validator.check_schema(SCHEMA)

    def test_takes_what_lkbench_writes(self):
        self.assertEqual(len(WRITTEN), 2)
        for run in WRITTEN:
            self.validator.validate(run)

    def test_takes_the_samples_of_the_other_tests(self):
        self.validator.validate(self.sample)
        self.validator.validate(sample_run.rich())

    def test_every_object_of_a_written_run_is_described(self):
        """No key that the schema does not know: it would be a number that nobody explains."""
        def known(schema):
            if "$ref" in schema:
                schema = {**SCHEMA["$defs"][schema["$ref"].rsplit("/", 1)[1]], **{k: v for k, v in schema.items() if k != "$ref"}}
            keys = dict(schema.get("properties", {}))
            for other in schema.get("allOf", []) + schema.get("oneOf", []):
                keys.update(known(other)[0])
            return keys, schema

        def walk(value, schema, place):
            keys, resolved = known(schema)
            if isinstance(value, dict) and keys:
                for key, each in value.items():
                    self.assertIn(key, keys, place)
                    walk(each, keys[key], f"{place}.{key}")
            if isinstance(value, list):
                for each in value:
                    walk(each, resolved.get("items", {}), place)

        for run in WRITTEN:
            walk(run, SCHEMA, "run")

    def test_refuses_times_that_are_no_integers(self):
        self.assertTrue(self.refused(lambda run: run.update(elapsed_ns=1.5)))

    def test_refuses_another_version(self):
        self.assertTrue(self.refused(lambda run: run.update(schema_version=1)))

    def test_refuses_a_part_without_its_total(self):
        self.assertTrue(self.refused(lambda run: run["workload"]["measured"].pop("total")))

    def test_refuses_an_empty_bucket(self):
        self.assertTrue(self.refused(
            lambda run: run["workload"]["measured"]["total"]["response_ns"]["buckets"].append([5000, 0])))


if __name__ == "__main__":
    subprocess.run([sys.argv.pop(1), "--gtest_filter=RunFile.IsWritten*"], check=True, stdout=subprocess.DEVNULL)
    with open(sys.argv.pop(1), encoding="utf-8") as file:
        SCHEMA = json.load(file)
    while len(sys.argv) > 1:
        with open(sys.argv.pop(1), encoding="utf-8") as file:
            WRITTEN.append(json.load(file))
    unittest.main()
