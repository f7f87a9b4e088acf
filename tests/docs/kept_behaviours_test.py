# SPDX-License-Identifier: Apache-2.0
"""Tests of kept_behaviours.py."""

import unittest

from kept_behaviours import problems

TABLE = "# Title\n\n| where | what is kept | what depends on it | test |\n|---|---|---|---|\n"
SOURCES = "int C::f(int) { return g; }"


class Problems(unittest.TestCase):
    def test_a_whole_row_with_tests_of_the_build_has_none(self):
        self.assertEqual(problems(TABLE + "| C::f | a | b | `S.A`, `S.B/x` |\n", {"S.A", "S.B/x"}, SOURCES), [])

    def test_a_test_that_is_not_in_the_build_is_named_with_its_line(self):
        self.assertEqual(problems(TABLE + "| C::f | a | b | `S.A`, `S.B` |\n", {"S.A"}, SOURCES),
                         ["line 5: no test is named S.B"])

    def test_a_place_that_no_source_has_is_named_with_its_line(self):
        row = "| `C::f(int)`, `g` of `D<int>::h` | a | b | `S.A` |\n"
        self.assertEqual(problems(TABLE + row, {"S.A"}, SOURCES), ["line 5: no source has D<int>::h"])

    def test_an_empty_cell_is_named_by_its_column(self):
        self.assertEqual(problems(TABLE + "| C::f | a |  | `S.A` |\n", {"S.A"}, SOURCES),
                         ['line 5: the cell "what depends on it" is empty'])
        self.assertEqual(problems(TABLE + "| C::f | a | b | |\n", {"S.A"}, SOURCES),
                         ['line 5: the cell "test" is empty'])

    def test_a_row_has_four_cells_and_an_escaped_bar_makes_none(self):
        self.assertEqual(problems(TABLE + "| C::f | a | b |\n", set(), SOURCES),
                         ["line 5: 3 cells, expected 4: where, what is kept, what depends on it, test"])
        self.assertEqual(problems(TABLE + "| C::f | a \\| b | c | `S.A` |\n", {"S.A"}, SOURCES), [])

    def test_a_test_stands_between_back_quotes(self):
        self.assertEqual(problems(TABLE + "| C::f | a | b | S.A |\n", {"S.A"}, SOURCES),
                         ["line 5: the test is not written as `Suite.Case`"])

    def test_a_document_without_rows_is_a_problem(self):
        self.assertEqual(len(problems(TABLE, {"S.A"}, SOURCES)), 1)


if __name__ == "__main__":
    unittest.main()
