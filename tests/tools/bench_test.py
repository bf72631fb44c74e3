#!/usr/bin/env python3
"""tools/bench judges saved runs: its exit status is 0 within a goal, 0 if a goal is missed by less than the
spread, 1 if it is missed by more, 2 without a measurement.

bench_test.py BENCH"""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

BENCH = sys.argv.pop()


class Bench(unittest.TestCase):
    def table(self, only, runs, *options):
        """The exit status, and the cells of the one row whose figure contains `only`."""
        with tempfile.TemporaryDirectory() as folder:
            saved = pathlib.Path(folder, "runs.json")
            saved.write_text(json.dumps(runs))
            done = subprocess.run([sys.executable, BENCH, "--from", saved, "--only", only, "--markdown", *options],
                                  capture_output=True, text=True)
        self.error = done.stderr
        rows = done.stdout.splitlines()[2:]
        return done.returncode, [cell.strip() for cell in rows[0].strip("|").split("|")] if rows else []

    def reading(self, ours, raw):
        """The figure of `LoadJsonDocument`, at most 1.1 x."""
        return self.table("reading alone", {"json load/ours": ours, "json load/raw": raw})

    def test_a_goal_that_is_met(self):
        self.assertEqual(self.reading([0.022], [0.02]),
                         (0, ["reading alone: LoadJsonDocument", "at most 1.1 x", "1.1 x", "0 x", "met"]))

    def test_a_goal_that_is_missed(self):
        self.assertEqual(self.reading([0.023], [0.02]),
                         (1, ["reading alone: LoadJsonDocument", "at most 1.1 x", "1.15 x", "0 x", "MISSED"]))

    def test_compares_the_shortest_runs(self):
        status, cells = self.reading([5, 2.0, 2.0, 2.0, 9], [2, 2, 7, 2, 8])
        self.assertEqual((status, cells[2:]), (0, ["1 x", "0 x", "met"]))

    # The spread of four runs is that of the second shortest: 4 % above the shortest, and 5 %.
    def test_a_goal_that_is_missed_by_less_than_the_spread(self):
        status, cells = self.reading([2.5, 2.6, 9, 9], [2, 2.1, 9, 9])
        self.assertEqual((status, cells[2:]), (1, ["1.25 x", "0.113 x", "MISSED"]))
        status, cells = self.reading([2.4, 2.496, 9, 9], [2, 2.1, 9, 9])
        self.assertEqual((status, cells[2:]), (0, ["1.2 x", "0.108 x", "within the spread"]))

    def test_a_goal_between_two_values(self):
        for few, expected in ((10, (0, "10 x", "met")), (11.2, (1, "8.93 x", "MISSED")),
                              (9, (1, "11.1 x", "MISSED"))):
            status, cells = self.table("211 days against one", {"ledger pass-211-days/ours": [100],
                                                            "ledger pass-21-days/ours": [few]})
            self.assertEqual((status, cells[2], cells[4]), expected)

    def test_memory_against_the_larger_of_two_loads(self):
        status, cells = self.table("memory: conversion", {
            "memory of reports convert-200000/ours": [120], "memory of reports load-report/raw": [100],
            "memory of reports load-store/raw": [60]})
        self.assertEqual((status, cells[2], cells[4]), (0, "1.2 x", "met"))

    def test_a_rate_from_the_shortest_time(self):
        # For 10,000 decisions.
        for seconds, expected in ((0.0004, (0, "25 M/s", "met")), (0.000625, (1, "16 M/s", "MISSED"))):
            status, cells = self.table("contained in a list of 8 items", {
                "rules Rules/ContainedInList": [0.0009, seconds, seconds], "host contained": [1]})
            self.assertEqual((status, cells[2], cells[4]), expected)

    def test_a_platform_figure_has_no_goal(self):
        status, cells = self.table("a first pass: files", {
            "host first-pass-files": [0.012, 0.010]})
        self.assertEqual((status, cells[1:]), (0, ["-", "10 ms", "2 ms", ""]))

    def test_an_operation_that_was_not_measured(self):
        for runs in ({"json load/ours": [1]}, {"json load/ours": [1], "json load/raw": []},
                     {"json load/ours": [0], "json load/raw": [1]}):
            self.assertEqual(self.table("reading alone", runs), (2, []))
            self.assertRegex(self.error, "^bench: not measured: json load/(ours|raw)$")

    def test_a_figure_that_does_not_exist(self):
        self.assertEqual(self.table("no such figure", {}), (2, []))


if __name__ == "__main__":
    unittest.main()
