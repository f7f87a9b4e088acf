#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Tests of transcript.py itself."""
import contextlib
import io
import pathlib
import unittest

import transcript


def replay(text, bin_folder="/nowhere"):
    """The exit code and what was told."""
    told = io.StringIO()
    with contextlib.redirect_stdout(told):
        code = transcript.replay(transcript.parse(text), bin_folder, pathlib.Path("/source"))
    return code, told.getvalue()


class Replay(unittest.TestCase):
    def test_output_and_code_as_written_pass(self):
        self.assertEqual(replay("$ echo a; echo b >&2; exit 3\na\nb\n? 3\n"), (0, ""))

    def test_no_output_written_means_no_output(self):
        self.assertEqual(replay("$ true\n")[0], 0)
        self.assertEqual(replay("$ echo a\n")[0], 1)

    def test_other_output_fails_and_is_shown(self):
        code, told = replay("$ echo a\nb\n")
        self.assertEqual(code, 1)
        self.assertIn("line 1: $ echo a\nexpected:\n  b\nprinted:\n  a", told)

    def test_another_exit_code_fails_and_is_shown(self):
        code, told = replay("$ exit 4\n? 3\n")
        self.assertEqual(code, 1)
        self.assertIn("exit code 4, expected 3", told)

    def test_a_failure_without_a_written_code_fails(self):
        self.assertEqual(replay("$ false\n")[0], 1)

    def test_a_signal_counts_as_128_and_its_number(self):
        self.assertEqual(replay("$ kill -9 $$\n? 137\n")[0], 0)

    def test_missing_and_additional_lines_fail(self):
        self.assertEqual(replay("$ echo a\na\nb\n")[0], 1)
        self.assertEqual(replay("$ echo a; echo b\na\n")[0], 1)

    def test_later_commands_are_not_run_after_a_difference(self):
        _, told = replay("$ echo a\nb\n$ echo c\nd\n")
        self.assertNotIn("echo c", told)

    def test_commands_share_a_folder_that_is_new_and_empty(self):
        self.assertEqual(replay("$ ls\n$ echo a >file\n$ cat file\na\n$ [ $PWD = $HOME ]\n")[0], 0)

    def test_a_command_may_have_several_lines(self):
        self.assertEqual(replay("$ cat <<END\n> a\n>\n> b\n> END\na\n\nb\n")[0], 0)

    def test_comments_and_blank_lines_between_commands_say_nothing(self):
        self.assertEqual(replay("# first\n\n$ echo a\na\n\n# second\n$ true\n")[0], 0)

    def test_needs_that_are_not_met_skip_the_file(self):
        self.assertEqual(replay("! needs true\n! needs false\n$ exit 1\n"),
                         (77, "skipped: this machine cannot do 'false'\n"))

    def test_a_command_that_hangs_is_killed(self):
        code, lines = transcript.run("sleep 60 & wait", "/", {"PATH": "/usr/bin:/bin"}, seconds=0.2)
        self.assertEqual(code, 137)
        self.assertIn("killed: it took longer", lines[-1])

    def test_bin_and_source_are_known_to_the_commands(self):
        self.assertEqual(replay("$ echo ${PATH%%:*} $SOURCE\n/build/bin /source\n", "/build/bin")[0], 0)


class Holes(unittest.TestCase):
    def check(self, pattern, good, bad):
        for line in good:
            self.assertTrue(transcript.line_matches(pattern, line), line)
        for line in bad:
            self.assertFalse(transcript.line_matches(pattern, line), line)

    def test_num(self):
        self.check("x <num> s", ["x 1 s", "x -1.5 s", "x 12,345.6 s", "x 1e-9 s"], ["x  s", "x a s", "x 1.s", "y 1 s"])

    def test_path(self):
        self.check("in '<path>':", ["in '/a/b.so':", "in '../x':"], ["in 'x':", "in '/a b':"])

    def test_word(self):
        self.check("<word> b", ["a b", "a'/: b"], ["a c b", " b"])

    def test_any(self):
        self.check("a<any>b", ["ab", "a c b"], ["a c"])

    def test_other_characters_stand_for_themselves(self):
        self.check("a.(b)* [c] <x>", ["a.(b)* [c] <x>"], ["ax(b)* [c] <x>"])

    def test_three_dots_stand_for_any_lines(self):
        matches = transcript.output_matches
        self.assertTrue(matches(["a", "...", "z"], ["a", "z"]))
        self.assertTrue(matches(["a", "...", "z"], ["a", "b", "z", "z"]))
        self.assertTrue(matches(["..."], []))
        self.assertFalse(matches(["a", "...", "z"], ["a", "b"]))


class Format(unittest.TestCase):
    def check(self, text, told):
        with self.assertRaises(transcript.FormatError) as caught:
            transcript.parse(text)
        self.assertIn(told, str(caught.exception))

    def test_output_without_a_command_is_refused(self):
        self.check("\na\n$ b\n", "line 2: output before the first command")

    def test_a_command_that_goes_on_after_its_output_is_refused(self):
        self.check("$ a\nb\n> c\n", "line 3")

    def test_a_file_without_a_command_is_refused(self):
        self.check("# nothing\n", "no command")


if __name__ == "__main__":
    unittest.main()
