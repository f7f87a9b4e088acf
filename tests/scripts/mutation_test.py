#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Tests of scripts/mutation: which changes it finds in a text, and how it counts what came of them."""
import pathlib
import tempfile
import unittest

import mutants
import report
import worker


def changes(text, kind=None):
    """'old -> new' of every mutant of the text (of one kind)."""
    return [f"{mutant.old} -> {mutant.new}" for mutant in mutants.mutants_of("a.cpp", text)
            if kind is None or mutant.kind == kind]


class Constants(unittest.TestCase):
    def test_a_whole_number_becomes_the_next_and_zero_becomes_one(self):
        self.assertEqual(changes("x = f(0, 41);", "constant"), ["0 -> 1", "41 -> 42"])

    def test_hexadecimal_and_suffixed_numbers_keep_their_suffix(self):
        self.assertEqual(changes("x = f(0xFFu, 1.5f);", "constant"), ["0xFFu -> 256u", "1.5f -> 2.5f"])

    def test_a_text_gets_a_letter_more_behind_its_prefix_and_an_empty_one_stays(self):
        self.assertEqual(changes('x = f(L"ab", "");', "constant"), ['L"ab" -> L"~ab"'])

    def test_truth_is_turned(self):
        self.assertEqual(changes("x = f(true, FALSE);", "constant"), ["true -> false", "FALSE -> TRUE"])

    def test_comments_includes_and_static_assertions_are_left_alone(self):
        self.assertEqual(changes('#include "a1.h"\n// 1\n/* 2 */ static_assert(sizeof(a) == 3);\n'), [])


class Operators(unittest.TestCase):
    def test_comparisons_move_by_one_or_turn(self):
        self.assertEqual(changes("b = f(a < c, a >= c, a == c);", "comparison"), ["< -> <=", ">= -> >", "== -> !="])

    def test_template_brackets_and_unary_signs_are_none(self):
        self.assertEqual(changes("int* p = f<T>(-a, *b);", "comparison") + changes("c = f(-a, *b);", "operator"), [])

    def test_sums_products_and_logic_are_swapped(self):
        self.assertEqual(changes("x = f(a + b, a * b, a && b);", "operator"), ["+ -> -", "* -> /", "&& -> ||"])


class Conditions(unittest.TestCase):
    def test_an_if_is_negated_as_a_whole(self):
        self.assertEqual(changes("if (a && f(b)) g(c);", "condition"), ["(a && f(b)) -> (!(a && f(b)))"])

    def test_the_question_of_a_choice_is_negated(self):
        self.assertEqual(changes("return f(a) ? b : c;", "condition"), ["f(a) -> !(f(a))"])


class Statements(unittest.TestCase):
    def test_calls_and_assignments_are_deleted(self):
        text = "void f() {\n  m_a = 1;\n  g(x);\n  if (y) h();\n  delete p;\n  ++n;\n}"
        self.assertEqual(changes(text, "statement"),
                         ["m_a = 1; -> ;", "g(x); -> ;", "h(); -> ;", "delete p; -> ;", "++n; -> ;"])

    def test_returns_declarations_and_heads_of_functions_stay(self):
        self.assertEqual(changes("int f(int a) {\n  const int b = a;\n  return b;\n}", "statement"), [])

    def test_applying_changes_the_one_place(self):
        mutant = mutants.mutants_of("a.cpp", "f(1);\nf(1);\n")[-1]
        self.assertEqual((mutant.line, mutant.apply("f(1);\nf(1);\n")), (2, "f(1);\nf(2);\n"))


class Counting(unittest.TestCase):
    def test_invalid_and_equivalent_mutants_do_not_count(self):
        first, second, third, fourth = mutants.mutants_of("a.cpp", "f(1, 2, 3, 4);")[-4:]
        equivalents = {third.key(): "a reason"}
        outcomes = [(mutant, report.outcome(mutant, result, equivalents)) for mutant, result in
                    [(first, "some_test"), (second, None), (third, None), (fourth, "invalid")]]
        lines, score = report.table(outcomes)
        self.assertEqual(score, 50.0)
        self.assertEqual(lines[-1].split(), ["all", "1", "1", "1", "1", "50.0%"])

    def test_a_key_survives_a_move_to_another_line(self):
        keys = {mutants.mutants_of("a.cpp", text)[-1].key() for text in ("f(7);", "\n\nf(7);")}
        self.assertEqual(keys, {"a.cpp: constant: f(8);"})

    def test_a_deleted_statement_is_named_by_its_text(self):
        self.assertEqual(mutants.mutants_of("a.cpp", "{\n  g(x,\n    y);\n}")[-1].name(),
                         "a.cpp:2: statement: delete g(x, y);")

    def test_a_mutant_without_a_reason_is_no_equivalent(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder, "list.txt")
            path.write_text("# told\na.cpp: constant: f(8);  # seven is not used\n")
            self.assertEqual(report.read_equivalents(path), {"a.cpp: constant: f(8);": "seven is not used"})
            path.write_text("a.cpp: constant: f(8);\n")
            self.assertRaisesRegex(ValueError, "list.txt:1: no reason", report.read_equivalents, path)


class Programs(unittest.TestCase):
    def test_are_those_that_the_build_files_declare(self):
        with tempfile.TemporaryDirectory() as folder:
            inner = pathlib.Path(folder, "tests", "inner")
            inner.mkdir(parents=True)
            inner.joinpath("CMakeLists.txt").write_text("lk_add_test(one_test SOURCES a.cpp)\nlk_add_test(two_test\n")
            self.assertEqual(worker.test_programs(folder, "tests"), ["one_test", "two_test"])


if __name__ == "__main__":
    unittest.main()
