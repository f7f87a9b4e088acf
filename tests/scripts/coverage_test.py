# SPDX-License-Identifier: Apache-2.0
"""The table of scripts/coverage, over summaries with counts that can be added in the head."""
import json
import pathlib
import subprocess
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).parents[2] / "scripts" / "coverage"


def file(name, covered, total, branches=(0, 0)):
    return {"filename": name, "line_covered": covered, "line_total": total,
            "branch_covered": branches[0], "branch_total": branches[1]}


FULL = [file("Benchmarks/CREP_ORA8/a.cpp", 97, 100), file("host/core/a.cpp", 9, 10), file("oci/mariadb/a.cpp", 9, 10)]


def run(files):
    with tempfile.TemporaryDirectory() as folder:
        summary = pathlib.Path(folder) / "summary.json"
        summary.write_text(json.dumps({"files": files}))
        return subprocess.run([SCRIPT, folder, summary], capture_output=True, text=True, check=False)


class Coverage(unittest.TestCase):
    def test_a_folder_is_the_sum_of_its_files(self):
        result = run(FULL + [file("localdb/a.cpp", 1, 2, (1, 4)), file("localdb/b.cpp", 2, 2, (2, 4))])
        row = next(line.split() for line in result.stdout.splitlines() if line.startswith("localdb"))
        self.assertEqual(row, ["localdb", "4", "3", "75.0%", "8", "3", "37.5%"])

    def test_folders_at_their_limits_pass(self):
        self.assertEqual(run(FULL).returncode, 0)

    def test_a_folder_below_its_limit_fails_by_name(self):
        result = run([file("Benchmarks/CREP_ORA8/a.cpp", 969, 1000)] + FULL[1:])
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr, "coverage: below the limit: Benchmarks/CREP_ORA8\n")

    def test_a_folder_that_was_not_counted_is_below_its_limit(self):
        result = run(FULL[:2])
        self.assertEqual(result.returncode, 1)
        self.assertIn("oci", result.stderr)


if __name__ == "__main__":
    unittest.main()
