# SPDX-License-Identifier: Apache-2.0
"""Tests of reference.py and links.py."""
import pathlib
import tempfile
import unittest

import links
import reference

SCHEMA = {
    "properties": {"a_ns": {"$ref": "#/$defs/count"}, "text": {"type": "string"}, "part": {"$ref": "#/$defs/part"},
                   "maybe": {"type": ["number", "null"]}, "list": {"type": "array", "items": {"type": "integer"}}},
    "$defs": {"count": {"type": "integer"}, "times": {"type": "object"},
              "part": {"oneOf": [{"type": "null"}, {"properties": {"inner": {"$ref": "#/$defs/times"}}}]}},
}


class Reference(unittest.TestCase):
    def test_figures_are_numbers_lists_of_them_and_times_at_any_depth(self):
        self.assertEqual(reference.figures(SCHEMA), {"a_ns", "maybe", "list", "inner"})

    def test_a_name_is_explained_where_it_stands_as_code(self):
        self.assertEqual(reference.unexplained(["a", "b", "c"], "```\nb\n```\n`a` is b, `c_ns` is not"), ["b", "c"])

    def test_variables_are_those_that_are_asked_for_by_name(self):
        self.assertEqual(reference.variables('a = std::getenv("HOME"); b = secure_getenv(name); c = Variable("X_1");'), {"HOME", "X_1"})

    def test_the_first_line_that_differs_is_told(self):
        self.assertEqual(reference.first_difference("a\nb\n", "a\nb\n"), "")
        self.assertEqual(reference.first_difference("a\nb\n", "a\nc\n"), "line 2 is 'b', the program says 'c'")
        self.assertEqual(reference.first_difference("a\n", "a\nb\n"), "line 2 is None, the program says 'b'")


class Links(unittest.TestCase):
    def test_headings_are_named_as_a_page_names_them(self):
        self.assertEqual(links.anchors("# Exit codes\n## `a_b`: c's, d!\n```\n# no\n```\n"), {"exit-codes", "a_b-cs-d"})

    def test_links_into_the_web_and_in_fences_do_not_count(self):
        self.assertEqual(links.links("[a](b.md#c) [d](https://e)\n```\n[f](g)\n```\n"), ["b.md#c"])

    def test_a_link_leads_to_a_file_and_to_its_heading(self):
        with tempfile.TemporaryDirectory(prefix="lk-") as name:
            file = pathlib.Path(name) / "a.md"
            (pathlib.Path(name) / "b.md").write_text("# Head\n")
            text = "# Here\n[1](b.md#head) [2](#here) [3](no.md) [4](b.md#no) [5](#there)\n"
            file.write_text(text)
            self.assertEqual(list(links.broken(file, text)), ["no.md: there is no such file",
                             "b.md#no: there is no such heading", "#there: there is no such heading"])

    def test_a_page_that_the_index_leaves_out_is_told(self):
        with tempfile.TemporaryDirectory(prefix="lk-") as name:
            docs = pathlib.Path(name) / "docs"
            docs.mkdir()
            for page in ("README.md", "in.md", "out.md"):
                (docs / page).write_text("[in](in.md)\n")
            self.assertEqual(list(links.problems(docs.parent)), ["docs/README.md: no link to docs/out.md"])


if __name__ == "__main__":
    unittest.main()
