#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""report.html and the page of a comparison in a real browser. Arguments: the program lkbench, then those of
unittest; LK_SCREENSHOTS=FOLDER keeps pictures."""
import json
import os
import pathlib
import random
import subprocess
import sys
import tempfile
import unittest

import sample_run
from browser import Browser
from selenium.webdriver.common.keys import Keys

LKBENCH = ""


def lkbench(*words):
    return subprocess.run([LKBENCH, *map(str, words)], check=True, capture_output=True, text=True, timeout=100).stdout


class PageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory(prefix="lk-")
        cls.folder = pathlib.Path(cls.temporary.name)
        cls.browser = Browser()
        cls.rich = sample_run.rich()

    @classmethod
    def tearDownClass(cls):
        cls.browser.close()
        cls.temporary.cleanup()

    def page_of(self, run, name="run"):
        folder = self.folder / name
        folder.mkdir(exist_ok=True)
        (folder / "run.json").write_text(json.dumps(run), encoding="utf-8")
        self.assertEqual(lkbench("report", folder), f"{folder}/report.html\n")
        return folder / "report.html"

    def open(self, page):
        console, requests = self.browser.open(page)
        self.assertEqual(console, [])
        self.assertEqual(requests, [])

    def open_rich(self):
        self.browser.look()
        self.open(self.page_of(self.rich))

    def rows(self, table):
        """The rows of a table as lists of (text, value); the value is None where a cell has none."""
        return self.browser.run("""return [...document.querySelectorAll("#" + arguments[0] + " tbody tr")].map((row) =>
            [...row.cells].map((cell) => [cell.textContent, cell.dataset.value === undefined ? null
              : Number(cell.dataset.value)]));""", table)

    def keep(self, name, parts=1):
        folder = os.environ.get("LK_SCREENSHOTS")
        for part in range(parts if folder else 0):
            self.browser.screenshot(pathlib.Path(folder) / f"{name}-{part}.png", part)

    def test_draws_every_chart(self):
        self.open_rich()
        charts = self.browser.run("return [...document.querySelectorAll('canvas')].map((canvas) => canvas.id)")
        self.assertEqual(charts, ["throughput", "response", "spectrum", "fairness-0", "fairness-1"])
        for chart in charts:
            painted, colours = self.browser.painted(chart)
            self.assertGreater(painted, 3000, chart)
            self.assertGreater(colours, 20, chart)

    def marks(self, chart):
        """The texts on the time axis of a chart."""
        return self.browser.run("""return Chart.getChart(arguments[0]).scales.x.ticks.map((tick) => tick.label);""", chart)

    def test_time_axis_has_round_marks_whatever_the_length(self):
        for nanoseconds, marks, title in (
                (8_009_000_000, ["0", "2", "4", "6", "8"], "seconds"),
                (2_100_000_000, ["0", "0.5", "1", "1.5", "2"], "seconds"),
                (61_300_000_000, ["0", "10", "20", "30", "40", "50", "60"], "seconds"),
                (1_805_000_000_000, ["0:00", "5:00", "10:00", "15:00", "20:00", "25:00", "30:00"], "minutes")):
            run = sample_run.run([sample_run.Phase(random.Random(1), seconds=2)],
                                 workload_changes={"elapsed_ns": nanoseconds})
            self.open(self.page_of(run, "axis"))
            for chart in ("throughput", "response"):
                self.assertEqual(self.marks(chart), marks)
            axis = self.browser.run("return Chart.getChart('throughput').options.scales.x.title.text")
            self.assertEqual(axis, title + " from the start")

    def test_legend_shows_the_dashes_of_the_lines(self):
        self.open_rich()
        dashes = self.browser.run("return Chart.getChart('response').legend.legendItems.map((item) => item.lineDash)")
        self.assertEqual(dashes, [[], [6, 3], [2, 2]])

    def test_headline_is_that_of_the_run(self):
        self.open_rich()
        tiles = self.browser.run("""return Object.fromEntries([...document.querySelector("dl.tiles").children].map((tile) =>
            [tile.children[0].textContent, [tile.children[1].textContent, Number(tile.children[1].dataset.value)]]));""")
        measured = self.rich["workload"]["measured"]
        total, times = measured["total"], measured["total"]["response_ns"]
        self.assertEqual(tiles["Executions"], [f"{total['executions']:,}", total["executions"]])
        self.assertEqual(tiles["Failures"][1], total["failures"])
        self.assertEqual(tiles["Throughput"], [f"{measured['rate_per_s']:.1f} tx/s", measured["rate_per_s"]])
        for name, key in (("Median response", "p50"), ("95 % within", "p95"), ("99 % within", "p99"), ("Slowest", "max")):
            self.assertEqual(tiles[name][1], times[key])
            self.assertEqual(tiles[name][0], f"{times[key] / 1e6:#.3g} ms", name)

    def test_tables_have_the_numbers_of_the_run(self):
        self.open_rich()
        for number, phase in enumerate(self.rich["workload"]["phases"]):
            part = phase["measured"]
            rows = [row for row in self.rows(f"transactions-{number}") if row[1][0]]
            for row, expected in zip(rows, part["transactions"] + [{**part["total"], "name": "Total"}], strict=True):
                self.check_row(row, expected)
            for row, expected in zip(self.rows(f"tables-{number}"), part["tables"], strict=True):
                self.assertEqual(row.pop(1)[0], str(expected["columns"]))
                self.check_row(row, expected)
            for row, expected in zip(self.rows(f"columns-{number}"), part["column_counts"], strict=True):
                self.check_row(row, expected)
            self.assertEqual({row[0][0]: row[1][1] for row in self.rows(f"classes-{number}")}, part["total"]["errors"])

    def check_row(self, row, expected):
        self.assertEqual(row[0][0], expected["name"])
        for cell, key in zip(row[1:4], ("executions", "failures", "rows")):
            self.assertEqual(cell, [f"{expected[key]:,}", expected[key]])
        for cell, key in zip(row[5:], ("mean", "p50", "p90", "p95", "p99", "p999", "max"), strict=True):
            nanoseconds = expected["response_ns"][key]
            self.assertEqual(cell[1], nanoseconds)
            self.assertAlmostEqual(float(cell[0].replace(",", "")), nanoseconds / 1e6, delta=0.051)

    def test_verdict_and_limits_are_those_of_the_run(self):
        self.open_rich()
        self.assertEqual(self.browser.run("return document.getElementById('verdict').innerText"),
                         "A limit failed\n\n1 limit of 3 failed: total.p99 (exit code 3)")
        self.assertEqual([[cell[0] for cell in row] for row in self.rows("limits")],
                         [["total.throughput", ">300", "487.2\u202f/s", "✓ passed"],
                          ["total.p99", "<10ms", "21.4\u202fms", "✗ failed"],
                          ["errors", "<1%", "0.410\u202f%", "✓ passed"]])

    def test_text_of_a_run_never_becomes_markup(self):
        self.open_rich()
        heads = self.browser.run("return [...document.querySelectorAll('.phase > h2')].map((head) => head.textContent)")
        self.assertEqual(heads, ["Phase base", "Phase burst </script><script>alert(1)</script>"])
        self.assertEqual(self.browser.run("return document.images.length"), 0)
        self.assertEqual(self.browser.run("return document.scripts.length"), 3)
        self.assertIn("<img src=x onerror=alert(2)>", self.rows("errors")[0][5][0])

    def test_charts_have_a_text_and_a_table_that_the_keyboard_opens(self):
        self.open_rich()
        for label in self.browser.run("return [...document.querySelectorAll('canvas')].map((each) => each.ariaLabel)"):
            self.assertGreater(len(label), 40)
        summary = self.browser.driver.find_element("css selector", "figure summary")
        summary.send_keys(Keys.ENTER)
        self.browser.settle()
        rows = self.browser.run("return document.querySelectorAll('figure details[open] tbody tr').length")
        self.assertEqual(rows, len(self.rich["workload"]["intervals"]))

    def test_first_tab_leads_past_the_head(self):
        self.open_rich()
        self.browser.driver.switch_to.active_element.send_keys(Keys.TAB)
        self.assertEqual(self.browser.run("return document.activeElement.textContent"), "Skip to the results")

    def test_has_every_event_and_the_command_that_repeats_the_run(self):
        self.open_rich()
        self.assertEqual([row[0][0] for row in self.rows("events")], ["1 phase", "2 outage", "3 phase"])
        self.assertEqual(self.browser.run("return document.getElementById('repeat').textContent"),
                         "lkbench run -c effective.toml --seed 731")

    def test_fits_a_phone_and_keeps_to_light_and_dark(self):
        self.open_rich()
        self.keep("light", 5)
        light = self.browser.run("return getComputedStyle(document.body).backgroundColor")
        self.browser.look(dark=True)
        self.keep("dark", 5)
        self.assertNotEqual(self.browser.run("return getComputedStyle(document.body).backgroundColor"), light)
        self.browser.look(dark=True, media="print")
        self.keep("print", 5)
        self.assertEqual(self.browser.run("return getComputedStyle(document.body).backgroundColor"), light)
        self.browser.look(width=390)
        self.keep("phone", 6)
        self.assertLessEqual(self.browser.run("return document.documentElement.scrollWidth"), 390)
        self.browser.look()

    def test_shows_a_run_that_measured_nothing(self):
        run = sample_run.run([sample_run.Phase(random.Random(1), seconds=1)])
        run.update(workload=None, load=None, exit_code=5, problems=[
            {"level": "error", "number": "12154", "count": 1, "text": "no listener"}],
            verdict={"result": "error", "text": "the database cannot be reached"})
        self.open(self.page_of(run, "nothing"))
        self.assertIn("the database cannot be reached", self.browser.run("return document.body.innerText"))
        self.assertEqual(self.rows("problems")[0][2][0], "no listener")

    def test_shows_a_run_of_one_second_and_an_interruption(self):
        run = sample_run.run([sample_run.Phase(random.Random(1), seconds=1)], interrupted="SIGINT", exit_code=130,
                             verdict={"result": "interrupted", "text": "stopped early"})
        self.open(self.page_of(run, "short"))
        self.assertIn("Interrupted", self.browser.run("return document.getElementById('verdict').innerText"))
        self.assertGreater(self.browser.painted("throughput")[0], 1000)

    def test_comparison_has_the_numbers_of_its_json(self):
        slow = sample_run.run([sample_run.Phase(random.Random(3), seconds=40, rate=300, dip=1)], job={"users": 9})
        fast = sample_run.run([sample_run.Phase(random.Random(4), seconds=40, rate=400, dip=1)])
        self.page_of(slow, "a")
        self.page_of(fast, "b")
        page, numbers = self.folder / "compare.html", self.folder / "compare.json"
        text = lkbench("compare", self.folder / "a", self.folder / "b", "--html", page, "--json", numbers)
        self.assertIn("higher (better)", text)
        self.browser.look()
        self.open(page)
        self.keep("compare")
        figures = json.loads(numbers.read_text())["pairs"][0]["phases"][0]["figures"]
        for row, figure in zip(self.rows("figures-0-0"), figures, strict=True):
            self.assertEqual([row[0][0], row[1][1], row[2][1], row[3][1]],
                             [figure["name"], figure["first"], figure["second"], figure["change"]])
        self.assertEqual(self.rows("figures-0-0")[0][6][0], "higher ✓ better")
        self.assertEqual([row[0][0] for row in self.rows("settings-0")][0], "job.scale")
        self.assertGreater(self.browser.painted("changes-0-0")[0], 1000)


if __name__ == "__main__":
    LKBENCH = sys.argv.pop(1)
    unittest.main()
