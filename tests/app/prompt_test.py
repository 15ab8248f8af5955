#!/usr/bin/python3
"""Drives the prompt of the command through a pseudo-terminal, as a person would.

    prompt_test.py PATH-OF-TARN [unittest options]
"""

import os
import pty
import re
import select
import signal
import sys
import tempfile
import time
import unittest

PROGRAM = sys.argv.pop(1)
PATIENCE = 20.0  # seconds until a test gives up waiting
CTRL_C, CTRL_D, CTRL_U, TAB, UP = "\x03", "\x04", "\x15", "\t", "\x1b[A"


class Terminal:
    """The command with a terminal of its own."""

    def __init__(self, *arguments, **environment):
        self.seen = ""
        self.child, self.master = pty.fork()
        if self.child == 0:
            variables = dict(os.environ, TERM="xterm", LC_ALL="C.UTF-8")
            variables.update(environment)
            os.execve(PROGRAM, [PROGRAM, *arguments],
                      {k: v for k, v in variables.items() if v is not None})

    def type(self, text):
        os.write(self.master, text.encode())

    def expect(self, pattern):
        """Waits for text that matches; drops it and all before it. Returns what came before."""
        deadline = time.monotonic() + PATIENCE
        while not (match := re.search(pattern, self.seen)):
            if not self._read(deadline):
                raise AssertionError(f"no {pattern!r} in {self.seen!r}")
        before = self.seen[: match.start()]
        self.seen = self.seen[match.end():]
        return before

    def run(self, line):
        """Types a line and returns what is printed until the next prompt."""
        self.type(line + "\r")
        self.expect(re.escape(line) + "\r\n")
        return self.expect(r"(^|\n)> $").replace("\r", "").lstrip("\n")

    def end(self):
        """Ends the input; returns the exit status."""
        self.type(CTRL_D)
        deadline = time.monotonic() + PATIENCE
        while self._read(deadline):
            pass
        return os.waitstatus_to_exitcode(os.waitpid(self.child, 0)[1])

    def kill(self):
        try:
            os.kill(self.child, signal.SIGKILL)
            os.waitpid(self.child, 0)
        except (ProcessLookupError, ChildProcessError):
            pass
        os.close(self.master)

    def _read(self, deadline):
        """Reads what is there; false at the end of output or of patience."""
        ready, _, _ = select.select([self.master], [], [], max(0.0, deadline - time.monotonic()))
        if not ready:
            return False
        try:
            data = os.read(self.master, 65536)
        except OSError:
            return False
        self.seen += data.decode(errors="replace")
        return bool(data)


class PromptTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = folder.name

    def start(self, *arguments, **environment):
        settings = {"HOME": self.home, "XDG_STATE_HOME": None, "TARN_MODULE": None}
        terminal = Terminal(*arguments, **{**settings, **environment})
        self.addCleanup(terminal.kill)
        self.banner = terminal.expect("> $")
        return terminal

    def test_greets_with_the_modules_description(self):
        self.start()
        self.assertIn("TARN Support DLL v5.0 |TARN version:5.09.02", self.banner)
        self.assertIn("help()", self.banner)

    def test_prints_the_values_of_expressions(self):
        terminal = self.start()
        self.assertEqual(terminal.run("6 * 7"), "42")
        self.assertEqual(terminal.run("Sinc(0), 'text' -- a comment"), "1.0\ttext")
        self.assertEqual(terminal.run("{1, 2, {3}}"), "{1, 2, {3}}")
        self.assertEqual(terminal.run("Sinc({0, 0})"), "{1, 1}")
        self.assertEqual(terminal.run("nil"), "nil")

    def test_statements_and_calls_without_values_print_nothing_more(self):
        terminal = self.start()
        self.assertEqual(terminal.run("x = 5"), "")
        self.assertEqual(terminal.run("print('once')"), "once")
        self.assertEqual(terminal.run("x"), "5")
        self.assertEqual(terminal.run(""), "")

    def test_errors_end_the_input_but_not_the_prompt(self):
        terminal = self.start()
        self.assertEqual(terminal.run("error('oh')"), "prompt:1: oh")
        self.assertEqual(terminal.run("Gamma_P(-1, 1)"), "prompt:1: Gamma_P: Bad argument.")
        self.assertIn("unexpected symbol", terminal.run("x = )"))
        self.assertEqual(terminal.run("1 + 1"), "2")

    def test_input_goes_on_over_lines(self):
        terminal = self.start()
        for lines, printed in (
            (("for i = 1, 2 do", "print(i)", "end"), "1\n2"),
            (("6 *", "7"), "42"),
            (("t = {", "1,", "2}"), ""),
            (("#[[two", "lines]]"), "9"),
        ):
            for line in lines[:-1]:
                terminal.type(line + "\r")
                terminal.expect(r"\n>> $")
            self.assertEqual(terminal.run(lines[-1]), printed)

    def test_completes_names(self):
        terminal = self.start()
        terminal.type("BesselJ0" + TAB)
        terminal.expect(r"BesselJ0.*\($")
        terminal.type("0)\r")
        terminal.expect("\n1.0\r\n> $")
        terminal.type("RandPo" + TAB)
        terminal.expect(r"isson\($")
        terminal.type(CTRL_U + "math.sqr" + TAB)
        terminal.expect("t$")

    def test_lists_the_names_that_complete(self):
        terminal = self.start()
        terminal.type("BesselJ" + TAB)
        terminal.expect(r"\nBesselJ0 +BesselJ1 +BesselJn +BesselJpn\r\n")
        terminal.expect("> BesselJ$")
        terminal.type("1(0)\r")
        terminal.expect("\n0.0\r\n> $")

    def test_helps(self):
        terminal = self.start()
        self.assertIn("regularised incomplete beta function", terminal.run('help()'))
        self.assertTrue(terminal.run('help("Beta_I")').startswith("Beta_I(number, number, number)"))
        self.assertIn("help()", terminal.run("help"))

    def test_an_interrupt_cancels_the_running_script(self):
        terminal = self.start()
        for _ in range(2):
            terminal.type("print('running') while true do end\r")
            terminal.expect("\nrunning\r\n")
            terminal.type(CTRL_C)
            terminal.expect(r"prompt:1: interrupted\r\n> $")
            self.assertEqual(terminal.run("1 + 1"), "2")

    def test_an_interrupt_can_be_caught(self):
        terminal = self.start()
        terminal.type("print(pcall(function() print('running') while true do end end))\r")
        terminal.expect("\nrunning\r\n")
        terminal.type(CTRL_C)
        terminal.expect(r"false\tprompt:1: Progress window got cancel\r\n> $")

    def test_a_second_interrupt_stops_what_catches_the_first(self):
        terminal = self.start()
        for _ in range(2):
            terminal.type("while true do print(pcall(function() print('on') "
                          "while true do end end)) end\r")
            terminal.expect("\non\r\n")
            terminal.type(CTRL_C)
            terminal.expect("got cancel\r\non\r\n")
            terminal.type(CTRL_C)
            terminal.expect(r"prompt:1: interrupted\r\n> $")
            self.assertEqual(terminal.run("1 + 1"), "2")

    def test_progress_is_shown_and_taken_away_again(self):
        terminal = self.start()
        terminal.type("w = ProgressWnd() w:SetCaption('Residue = 1\\r\\n') w:SetProgress(50) "
                      "local t = os.clock() repeat w:SetProgress(50) until os.clock() > t + 0.2 "
                      "print('printed') w:SetProgress(100)\r")
        terminal.expect(r"\r\x1b\[K 50% \[#{12} {12}\] Residue = 1")
        terminal.expect(r"\r\x1b\[Kprinted\r\n> $")

    def test_progress_is_taken_away_at_the_end_of_the_input(self):
        terminal = self.start()
        terminal.type("w = ProgressWnd() w:SetProgress(50) error('oh')\r")
        terminal.expect(r" 50% \[#{12} {12}\]\r\x1b\[Kprompt:1: oh\r\n> $")

    def test_progress_shows_nothing_in_a_dumb_terminal(self):
        terminal = self.start(TERM="dumb")
        terminal.type("w = ProgressWnd() w:SetProgress(50) print('printed')\r")
        self.assertNotIn("50%", terminal.expect("\nprinted\r\n"))

    def test_completes_methods(self):
        terminal = self.start()
        terminal.run("w = ProgressWnd()")
        terminal.type("w:SetP" + TAB)
        terminal.expect("rogress$")

    def test_an_interrupt_drops_what_is_being_typed(self):
        terminal = self.start()
        terminal.type("abc")
        terminal.expect("abc$")
        terminal.type(CTRL_C)
        terminal.expect("\n> $")
        terminal.type("for i = 1, 2 do\r")
        terminal.expect(">> $")
        terminal.type(CTRL_C)
        terminal.expect("\n> $")
        self.assertEqual(terminal.run("1 + 1"), "2")

    def test_remembers_from_session_to_session(self):
        terminal = self.start()
        terminal.run("first = 'line'")
        terminal.run("second = 'line'")
        self.assertEqual(terminal.end(), 0)
        terminal = self.start()
        terminal.type(UP)
        terminal.expect("second = 'line'$")
        terminal.type(UP)
        terminal.expect("first")
        self.assertTrue(os.path.isfile(self.home + "/.local/state/tarn/history"))

    def test_keeps_the_history_where_the_environment_says(self):
        terminal = self.start(XDG_STATE_HOME=self.home + "/state")
        terminal.run("x = 1")
        self.assertEqual(terminal.end(), 0)
        self.assertTrue(os.path.isfile(self.home + "/state/tarn/history"))
        self.assertFalse(os.path.exists(self.home + "/.local"))

    def test_works_without_a_home(self):
        for home in (None, "", "/dev/null"):
            terminal = self.start(HOME=home)
            self.assertEqual(terminal.run("1 + 1"), "2")
            terminal.type(UP)
            terminal.expect(r"1 \+ 1$")
            terminal.type(CTRL_U)
            self.assertEqual(terminal.end(), 0)

    def test_takes_characters_beyond_ascii(self):
        terminal = self.start()
        self.assertEqual(terminal.run("#'é'"), "2")

    def test_opens_after_scripts_where_asked_to(self):
        terminal = self.start("-i", "-e", "x = 7")
        self.assertEqual(terminal.run("x"), "7")
        self.assertEqual(terminal.end(), 0)


if __name__ == "__main__":
    unittest.main()
