#!/usr/bin/env python3
"""tools/first-use takes its commands from the README and judges what they did.

first_use_test.py FIRST_USE"""

import importlib.machinery
import importlib.util
import io
import sys
import unittest
from contextlib import redirect_stdout

sys.dont_write_bytecode = True
loader = importlib.machinery.SourceFileLoader("first_use", sys.argv.pop())
first_use = importlib.util.module_from_spec(importlib.util.spec_from_loader("first_use", loader))
loader.exec_module(first_use)


class Commands(unittest.TestCase):
    def test_are_those_of_the_first_block_of_shell(self):
        readme = (
            "# Title\n```\nnot shell\n```\n```sh\nsudo apt-get install git\n\n"
            "git clone ADDRESS-OF-THIS-REPOSITORY w\n```\n```sh\nlater\n```\n"
        )
        self.assertEqual(
            first_use.first_commands(readme), ["apt-get install git", "git clone /repository.git w"]
        )

    def test_are_missing_without_such_a_block(self):
        with self.assertRaisesRegex(ValueError, "no block of shell"):
            first_use.first_commands("# Title\n```\ngit clone\n```\n")

    def test_must_clone_the_repository(self):
        with self.assertRaisesRegex(ValueError, "clones"):
            first_use.first_commands("```sh\n./run\n```\n")


class Run(unittest.TestCase):
    def run_shell(self, script):
        with redirect_stdout(io.StringIO()) as shown:
            result = first_use.run(["bash", "-c", script])
        self.shown = shown.getvalue()
        return result

    def test_shows_each_line_with_its_time(self):
        self.run_shell("echo one; echo two >&2")
        self.assertRegex(self.shown, r"^ +\d+\.\d s  one\n +\d+\.\d s  two\n$")

    def test_measures_the_time_until_the_first_bar(self):
        status, chart_after = self.run_shell("sleep 0.3; echo 'Mon █'; sleep 2; echo 'Tue █'; exit 5")
        self.assertEqual(status, 5)
        self.assertGreaterEqual(chart_after, 0.3)
        self.assertLess(chart_after, 2)

    def test_finds_no_chart_without_a_bar(self):
        self.assertEqual(self.run_shell("echo Mon"), (0, None))


class Verdict(unittest.TestCase):
    def mistakes(self, *facts):
        return list(first_use.verdict(*facts))

    def test_accepts_three_commands_and_five_minutes(self):
        self.assertEqual(self.mistakes(3, 0, 300.0), [])

    def test_refuses_each_mistake_alone(self):
        for facts, text in (
            ((3, 1, 10.0), "status 1"),
            ((4, 0, 10.0), "4 commands"),
            ((3, 0, None), "no chart"),
            ((3, 0, 300.6), "after 301 s"),
        ):
            [mistake] = self.mistakes(*facts)
            self.assertIn(text, mistake)


if __name__ == "__main__":
    unittest.main()
