#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""What a person sees: whole runs of lkbench in a terminal, read from the pane of a tmux server of this test.

terminal_test.py LKBENCH
"""
import os
import re
import signal
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM = ""
PROMPT = "ready>"
ROWS = 30
SLOWLY = "--rows-per-commit 10"  # a flush for every ten rows, so that a load takes seconds on any machine


class Terminal:
    """A shell in a window of so many columns."""

    def __init__(self, folder, columns, **variables):
        self.tmux = ["tmux", "-S", os.path.join(folder, "tmux"), "-f", "/dev/null"]
        self.columns = columns
        shell = {"PATH": os.path.dirname(PROGRAM) + ":/usr/bin:/bin:/usr/sbin", "HOME": folder, "PS1": PROMPT, "HISTFILE": "",
                 "TERM": "screen", **variables}
        words = ["env", "-i", *(f"{name}={value}" for name, value in shell.items()), "bash", "--norc", "--noprofile"]
        subprocess.run([*self.tmux, "new-session", "-d", "-x", str(columns), "-y", str(ROWS), "-c", folder, *words],
                       check=True)
        self.wait_for(lambda lines: lines[-1:] == [PROMPT], "a prompt")

    def close(self):
        subprocess.run([*self.tmux, "kill-server"], check=False)

    def lines(self, *flags):
        """The lines from the first to the last that holds something; those that were wrapped are joined."""
        text = subprocess.run([*self.tmux, "capture-pane", "-p", "-J", "-S", "-", *flags], check=True,
                              capture_output=True, text=True).stdout
        return [line.rstrip() for line in text.rstrip().split("\n")]

    def wait_for(self, condition, what):
        end = time.monotonic() + 120
        while time.monotonic() < end:
            lines = self.lines()
            if condition(lines):
                return lines
            time.sleep(0.02)
        raise AssertionError(f"waited for {what}, the pane shows:\n" + "\n".join(self.lines()))

    def keys(self, *keys):
        subprocess.run([*self.tmux, "send-keys", *keys], check=True)

    def start(self, command):
        self.keys("-l", command)
        self.keys("Enter")

    def resize(self, columns):
        self.columns = columns
        subprocess.run([*self.tmux, "resize-window", "-x", str(columns), "-y", str(ROWS)], check=True)

    def cursor(self):
        format = "#{cursor_x} #{cursor_flag}"
        return subprocess.run([*self.tmux, "display-message", "-p", format], check=True, capture_output=True,
                              text=True).stdout.split()

    def wait_for_prompt(self):
        """The lines below the command once it has ended."""
        lines = self.wait_for(lambda lines: lines[-1] == PROMPT and len(lines) > 1, "the prompt after the command")
        return lines[1:-1]


class TerminalTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def terminal(self, columns, **variables):
        terminal = Terminal(self.folder, columns, **variables)
        self.addCleanup(terminal.close)
        return terminal

    def script(self, *arguments):
        """A short command that calls lkbench, so that what is typed fits the narrowest window."""
        with open(os.path.join(self.folder, "go"), "w", encoding="utf-8") as file:
            file.write(" ".join(["exec lkbench", *arguments, "--target local:db --results out$1\n"]))
        return "sh go"

    def expect_fitting(self, terminal, lines):
        for line in lines:
            self.assertLess(len(line), terminal.columns, line)

    def expect_clean_end(self, terminal, lines):
        """No trace of a status line, and a shell as it was."""
        for line in lines:
            self.assertNotRegex(line, r"^load \[|left|\^C.*\S")
        self.assertEqual(terminal.cursor(), [str(len(PROMPT)), "1"])

    def run_is_shown(self, columns):
        terminal = self.terminal(columns)
        terminal.start(self.script(f"run --tables 2 --scale 100 --duration 4s {SLOWLY}"))
        loading = terminal.wait_for(lambda lines: re.search(r"^load \[#+-+\] .* left$", lines[-1]), "a load's bar")
        self.expect_fitting(terminal, loading)
        working = terminal.wait_for(lambda lines: re.search(r"^workload .*0:0\d left .*failures 0$", lines[-1]),
                                    "a status line")
        self.expect_fitting(terminal, working)
        self.assertRegex(working[-2], r"^ +\d s +[\d.]+ tx/s  failures 0 .*p99 [\d.,]+ ms$")
        lines = terminal.wait_for_prompt()
        self.expect_fitting(terminal, lines)
        self.expect_clean_end(terminal, lines)
        self.assertEqual(lines[-1], "results  out")
        self.assertEqual(sum(line.startswith("total  ") for line in lines), 1 if columns > 100 else 2)
        with open(os.path.join(self.folder, "out", "log.txt"), encoding="utf-8") as log:
            self.assertRegex(log.read(), r"Z  loaded [\d,]+ of 200,000 rows \(\d+ %\), [\d,]+ rows/s\n")

    def test_a_run_fits_60_columns(self):
        self.run_is_shown(60)

    def test_a_run_fits_80_columns(self):
        self.run_is_shown(80)

    def test_a_run_fits_200_columns(self):
        self.run_is_shown(200)

    def test_a_create_tells_of_its_tables(self):
        terminal = self.terminal(60)
        with open(os.path.join(self.folder, "go"), "w", encoding="utf-8") as file:
            file.write("exec lkbench create --tables 5000 --target local:db\n")
        terminal.start("sh go")
        working = terminal.wait_for(
            lambda lines: re.search(r"^create  [\d,]+ of 5,000 tables  \d+:\d\d  \d+:\d\d left$", lines[-1]), "a status")
        self.expect_fitting(terminal, working)
        terminal.keys("C-c")
        self.expect_clean_end(terminal, terminal.wait_for_prompt())

    def start_workload(self, terminal, *arguments):
        subprocess.run([PROGRAM, "create", "--tables", "1", "--target", "local:" + self.folder + "/db"], check=True,
                       capture_output=True)
        subprocess.run([PROGRAM, "load", "--scale", "1", "--target", "local:" + self.folder + "/db"], check=True,
                       capture_output=True)
        terminal.start(self.script("workload --duration 90s", *arguments))

    def start_long_workload(self, terminal):
        self.start_workload(terminal)
        terminal.wait_for(lambda lines: lines[-1].startswith("workload  "), "a status line")

    def test_an_interrupted_workload_leaves_its_report_and_a_clean_prompt(self):
        terminal = self.terminal(80)
        self.start_long_workload(terminal)
        terminal.keys("C-c")
        lines = terminal.wait_for_prompt()
        self.assertIn("lkbench: stopping; once more to quit at once", lines)
        self.expect_fitting(terminal, lines)
        self.expect_clean_end(terminal, lines)
        self.assertEqual(lines[-1], "results  out")

    def test_an_interrupted_load_leaves_a_clean_prompt(self):
        terminal = self.terminal(60)
        terminal.start(self.script("run --tables 1 --scale 5000"))
        terminal.wait_for(lambda lines: lines[-1].startswith("load ["), "a load's bar")
        terminal.keys("C-c")
        lines = terminal.wait_for_prompt()
        self.assertIn("lkbench: interrupted", lines)
        self.expect_fitting(terminal, lines)
        self.expect_clean_end(terminal, lines)

    def test_a_second_interrupt_leaves_a_clean_prompt(self):
        terminal = self.terminal(80)
        self.start_long_workload(terminal)
        server = self.server()
        os.kill(server, signal.SIGSTOP)  # so that the first interrupt does not end it
        try:
            terminal.keys("C-c")
            terminal.wait_for(lambda lines: any("once more to quit" in line for line in lines), "the first one's line")
            terminal.keys("C-c")
            lines = terminal.wait_for_prompt()
        finally:
            os.kill(server, signal.SIGCONT)
        self.expect_fitting(terminal, lines)
        self.expect_clean_end(terminal, lines)

    def server(self):
        """The process of this test's database."""
        for pid in filter(str.isdigit, os.listdir("/proc")):
            try:
                with open(f"/proc/{pid}/cmdline", encoding="utf-8", errors="replace") as file:
                    command = file.read()
            except OSError:
                continue
            if "mariadbd" in command.split("\0")[0] and self.folder in command:
                return int(pid)
        raise AssertionError("there is no database")

    def test_a_window_that_changes_leaves_no_rubbish(self):
        terminal = self.terminal(100)
        self.start_long_workload(terminal)
        for columns in (50, 70, 44):
            terminal.resize(columns)
            shown = len(terminal.lines())
            lines = terminal.wait_for(lambda lines: len(lines) > shown + 2, "lines after the change")
            self.assertEqual(sum(line.startswith("workload ") and "left" in line for line in lines), 1, lines)
            self.assertLess(len(lines[-1]), columns)
        terminal.keys("C-c")
        self.expect_clean_end(terminal, terminal.wait_for_prompt())

    def test_colours_are_only_for_failures(self):
        terminal = self.terminal(80)
        self.start_workload(terminal, "--duration 1s --limits 'throughput>100000'")
        terminal.wait_for_prompt()
        painted = [line for line in terminal.lines("-e") if "\x1b[31m" in line]
        self.assertEqual([re.match(r".*\x1b\[31m(\w*)", line)[1] for line in painted], ["FAIL"])

    def test_no_color_is_respected(self):
        terminal = self.terminal(80, NO_COLOR="1")
        self.start_workload(terminal, "--duration 1s --limits 'throughput>100000'")
        terminal.wait_for_prompt()
        self.assertNotIn("\x1b[31m", "\n".join(terminal.lines("-e")))

    def test_a_dumb_terminal_gets_the_lines_of_a_file(self):
        terminal = self.terminal(80, TERM="dumb")
        terminal.start(self.script(f"run --tables 1 --scale 200 --duration 1s {SLOWLY}"))
        lines = terminal.wait_for_prompt()
        self.assertTrue(any(re.match(r"loaded [\d,]+ of 200,000 rows", line) for line in lines), lines)
        self.expect_clean_end(terminal, lines)


if __name__ == "__main__":
    PROGRAM = os.path.abspath(sys.argv.pop(1))
    unittest.main()
