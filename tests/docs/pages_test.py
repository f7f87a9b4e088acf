# SPDX-License-Identifier: Apache-2.0
"""Tests of page.py and pages.py."""
import contextlib
import io
import pathlib
import tempfile
import unittest

import pages as tool
from page import Command, PageError, cut, differs, masked, parse, updated

PLAIN = Command(1, "x", 1, 1, False)
VARYING = Command(1, "x", 1, 1, True)


def page_of(*lines):
    return "\n".join(["# Title", "```console", *lines, "```", "Behind."]) + "\n"


class Parse(unittest.TestCase):
    def test_commands_have_their_text_and_their_output(self):
        page = parse(page_of("$ a", "1", "$ b <<END", ">", "> c", "2", "", "3"))
        self.assertEqual([each.text for each in page.commands], ["a", "b <<END\n\nc"])
        self.assertEqual([page.output(each) for each in page.commands], [["1"], ["2", "", "3"]])

    def test_other_fences_are_text(self):
        self.assertEqual(parse("```sh\n$ rm -r /\n```\n").commands, [])

    def test_output_without_a_command_is_named_by_its_line(self):
        with self.assertRaisesRegex(PageError, "line 3: output before"):
            parse(page_of("1"))
        with self.assertRaisesRegex(PageError, "line 7: output before"):
            parse("```console\n$ a\n1\n```\n\n```console\n2\n```\n")

    def test_a_fence_has_an_end(self):
        with self.assertRaisesRegex(PageError, "no end"):
            parse("```console\n$ a\n")

    def test_orders_are_read_and_others_refused(self):
        page = parse("<!-- page: server -->\n<!-- page: needs x y -->\n<!-- page: in tests 30s is 3s -->\n")
        self.assertEqual((page.has_server, page.needs, page.in_tests), (True, ["x y"], [("30s", "3s")]))
        with self.assertRaisesRegex(PageError, "line 1: unknown order \"serve\""):
            parse("<!-- page: serve -->\n")

    def test_figures_vary_in_the_next_fence_only(self):
        page = parse("<!-- page: figures vary -->\n" + page_of("$ a") + page_of("$ b"))
        self.assertEqual([each.vary for each in page.commands], [True, False])


class Update(unittest.TestCase):
    def test_outputs_are_replaced_and_all_else_stays(self):
        text = page_of("$ a", "old", "$ b", "$ c", "old")
        self.assertEqual(updated(parse(text), [["1", "2"], ["3"], []]), page_of("$ a", "1", "2", "$ b", "3", "$ c"))

    def test_three_dots_stay_where_they_are(self):
        self.assertEqual(cut(["a", "...", "y", "z"], list("123456")), ["1", "...", "5", "6"])
        self.assertEqual(cut(["a", "...", "z"], ["1", "2"]), ["1", "2"])

    def test_a_doubt_that_comes_or_goes_does_not_move_them(self):
        doubt = "note: p99 of fewer than 100 executions is their maximum: x"
        self.assertEqual(cut(["a", "...", "z"], ["1", "2", "3", doubt, "4"]), ["1", "...", doubt, "4"])
        self.assertEqual(cut(["a", "...", doubt, "z"], ["1", "2", "3", "4"]), ["1", "...", "4"])


class Difference(unittest.TestCase):
    def test_measured_figures_times_and_widths_are_none(self):
        self.assertFalse(differs(PLAIN, ["rows  1,000 in 0.1 s, 900 rows/s, seed 123456 at 2026-01-02T03-04-05Z"],
                                 ["rows 98,765 in 12.9 s, 12 rows/s, seed 99999  at 2027-11-12T13-14-15Z"]))

    def test_a_small_whole_number_is_one(self):
        self.assertTrue(differs(PLAIN, ["2 tables"], ["3 tables"]))

    def test_where_figures_vary_words_are_compared(self):
        self.assertFalse(differs(VARYING, ["p99 1.5 ms 12 -3.0 % lower (better)"], ["p99 90 ms 7 +1.2 % within noise"]))
        self.assertTrue(differs(VARYING, ["p99 1.5 ms"], ["p95 1.5 ms"]))
        self.assertFalse(differs(VARYING, ["a x-2026-01-02T03-04-05Z"], ["note: p99 of fewer than 100 executions", "a x-2027-01-02T03-04-05Z"]))
        self.assertFalse(differs(VARYING, ["a"], ["a", "", "note: two is of an lkbench that was built without optimisation"]))
        self.assertEqual(masked("total 5,969 0 < 0.001", True), "total")

    def test_three_dots_stand_for_any_lines_between_those_that_count(self):
        self.assertFalse(differs(PLAIN, ["a", "...", "z"], ["a", "b", "c", "z"]))
        self.assertFalse(differs(PLAIN, ["a", "...", "z"], ["a", "z"]))
        self.assertTrue(differs(PLAIN, ["a", "...", "z"], ["a", "b"]))
        self.assertTrue(differs(PLAIN, ["a", "...", "z"], ["b", "z"]))
        self.assertTrue(differs(PLAIN, ["a", "...", "a"], ["a"]))

    def test_a_line_more_is_one(self):
        self.assertTrue(differs(PLAIN, ["a"], ["a", "b"]))


class Run(unittest.TestCase):
    def run_page(self, text, update=False):
        with tempfile.TemporaryDirectory(prefix="lk-") as folder:
            file = pathlib.Path(folder) / "page.md"
            file.write_text(text, encoding="utf-8")
            told = io.StringIO()
            with contextlib.redirect_stdout(told):
                code = tool.run_page(file, pathlib.Path(folder) / "bin", update)
            return code, told.getvalue(), file.read_text(encoding="utf-8")

    def test_a_page_that_is_right_passes_and_stays(self):
        text = page_of("$ export A=b; mkdir c; cd c", "$ echo $A $(basename $PWD)", "b c")
        self.assertEqual(self.run_page(text), (0, "", text))

    def test_a_page_that_is_wrong_fails_with_the_line_of_the_command(self):
        code, told, _ = self.run_page(page_of("$ echo two", "one"))
        self.assertEqual((code, told.splitlines()[0]), (1, "line 3: $ echo two"))

    def test_a_command_that_fails_fails_the_page_and_updates_nothing(self):
        text = page_of("$ echo two", "one", "$ false")
        code, told, after = self.run_page(text, update=True)
        self.assertEqual((code, after), (1, text))
        self.assertIn("exit code 1", told)

    def test_an_update_writes_what_is_printed_with_the_pages_own_words(self):
        text = page_of("$ echo $PWD/x")
        self.assertEqual(self.run_page(text, update=True)[2], page_of("$ echo $PWD/x", "/home/me/bench/x"))

    def test_the_words_of_tests_are_not_those_of_an_update(self):
        text = "<!-- page: in tests 30s is 3s -->\n" + page_of("$ echo 30s", "3s")
        self.assertEqual(self.run_page(text)[0], 0)
        self.assertIn("$ echo 30s\n30s\n", self.run_page(text, update=True)[2])

    def test_the_words_of_tests_are_whole_ones(self):
        text = "<!-- page: in tests 1m is 3s -->\n" + page_of("$ echo '\"1m\" 0.1ms 0.1m 11m =1m'", '"3s" 0.1ms 0.1m 11m =3s')
        self.assertEqual(self.run_page(text)[0], 0)

    def test_a_page_whose_needs_are_not_met_is_skipped(self):
        self.assertEqual(self.run_page("<!-- page: needs false -->\n")[0], 77)


if __name__ == "__main__":
    unittest.main()
