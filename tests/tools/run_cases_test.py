#!/usr/bin/env python3
"""run-cases accounts for every case of a program: it fails, and names the case, if one fails, crashes, hangs or
never runs, also if the program's exit status is 0.

run_cases_test.py RUN_CASES"""

import os
import pathlib
import subprocess
import sys
import tempfile
import textwrap
import time
import unittest

RUN_CASES = sys.argv.pop()

# Stands for a test program: writes the lines of a plan as GoogleTest would, and ends like it.
PROGRAM = """
import os, sys, time

def begin(name): print(f"[ RUN      ] {name}", flush=True)
def end(name, result, where=""): print(f"[ {result:>8} ] {name}{where} (3 ms)", flush=True)
def start(count, *notes):
    for note in notes: print(note)
    print(f"[==========] Running {count} tests from 1 test suite.")
    print("[----------] Global test environment set-up.", flush=True)
def finish(count):
    print("[----------] Global test environment tear-down")
    print(f"[==========] {count} tests from 1 test suite ran. (4 ms total)")
"""


class RunCases(unittest.TestCase):
    def run_program(self, body, seconds=60, **environment):
        """The exit status and the output of run-cases, for a program of the helpers above and the body."""
        with tempfile.TemporaryDirectory() as folder:
            program = pathlib.Path(folder, "program.py")
            program.write_text(PROGRAM + textwrap.dedent(body))
            clean = {name: value for name, value in os.environ.items()
                     if not name.startswith("GTEST_") and name != "WATTLEAF_CASES_ALONE"}
            begin = time.monotonic()
            done = subprocess.run([sys.executable, RUN_CASES, "--seconds", str(seconds), sys.executable, program],
                                  env={**clean, **environment}, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        self.seconds = time.monotonic() - begin
        return done.returncode, done.stdout.splitlines()

    def test_counts_the_cases_that_pass_and_names_the_skipped_ones(self):
        status, lines = self.run_program("""
            start(3)
            begin("Day.IsLong"); print("noise"); end("Day.IsLong", "OK ")
            begin("Day.IsReal"); end("Day.IsReal", "SKIPPED")
            begin("Share/Day.Ends/0"); end("Share/Day.Ends/0", "OK ")
            finish(3)
            print("[  PASSED  ] 2 tests.")
            print("[  SKIPPED ] 1 test, listed below:")
            print("[  SKIPPED ] Day.IsReal")
            """)
        self.assertEqual((status, lines), (0, ["skipped: Day.IsReal", "cases: 2 passed, 1 skipped"]))

    def test_shows_the_output_of_failed_cases_only(self):
        status, lines = self.run_program("""
            start(3, "Note: Randomizing tests' orders with a seed of 1 .")
            begin("Day.IsLong"); print("noise"); end("Day.IsLong", "OK ")
            begin("Day.IsShort"); print("day_test.cpp:7: Failure"); end("Day.IsShort", "FAILED ")
            begin("Share/Day.Ends/0"); print("day_test.cpp:9: Failure")
            end("Share/Day.Ends/0", "FAILED ", ", where GetParam() = 4-byte object <01-00 00-00>")
            finish(3)
            print("[  FAILED  ] 2 tests, listed below:")
            print("[  FAILED  ] Day.IsShort")
            sys.exit(1)
            """)
        self.assertEqual((status, lines), (1, [
            "[ RUN      ] Day.IsShort", "day_test.cpp:7: Failure", "[  FAILED  ] Day.IsShort (3 ms)",
            "[ RUN      ] Share/Day.Ends/0", "day_test.cpp:9: Failure",
            "[  FAILED  ] Share/Day.Ends/0, where GetParam() = 4-byte object <01-00 00-00> (3 ms)",
            "Day.IsShort failed", "Share/Day.Ends/0 failed",
            "failed, with GTEST_RANDOM_SEED=1; 1 cases passed"]))

    def test_shows_the_figures_of_cases_that_pass(self):
        status, lines = self.run_program("""
            start(2)
            begin("Day.IsCut"); print("noise"); print("figures: 7 lengths"); end("Day.IsCut", "OK ")
            begin("Day.IsLong"); print("no figures: 8"); end("Day.IsLong", "OK ")
            finish(2)
            """)
        self.assertEqual((status, lines), (0, ["figures: 7 lengths", "cases: 2 passed, 0 skipped"]))

    def test_fails_for_a_failed_case_even_with_status_0(self):
        status, lines = self.run_program("""
            start(1)
            begin("Day.IsLong"); end("Day.IsLong", "FAILED ")
            finish(1)
            """)
        self.assertEqual((status, lines[2]), (1, "Day.IsLong failed"))

    def test_names_the_case_that_was_running_when_the_program_ended_with_status_0(self):
        status, lines = self.run_program("""
            start(3)
            begin("Day.IsLong"); end("Day.IsLong", "OK ")
            begin("Day.IsShort"); print("so far", flush=True)
            sys.exit(0)
            """)
        self.assertEqual((status, lines), (1, [
            "[ RUN      ] Day.IsShort", "so far",
            "Day.IsShort was running when the program ended: status 0", "1 of 3 cases ended",
            "failed, with GTEST_RANDOM_SEED=1; 1 cases passed"]))

    def test_names_the_case_that_was_running_at_a_crash(self):
        status, lines = self.run_program("""
            start(1)
            begin("Day.IsShort")
            os.abort()
            """)
        self.assertEqual((status, lines[1:3]), (1, [
            "Day.IsShort was running when the program ended: signal 6", "0 of 1 cases ended"]))

    def test_names_the_case_that_hangs(self):
        status, lines = self.run_program("""
            start(2)
            begin("Day.IsLong"); end("Day.IsLong", "OK ")
            begin("Day.IsShort")
            time.sleep(60)
            """, seconds=2)
        self.assertEqual((status, lines[1]),
                         (1, "Day.IsShort was running when the program ended: stopped after 2 seconds"))
        self.assertLess(self.seconds, 40)

    def test_fails_if_cases_never_ran(self):
        status, lines = self.run_program("""
            start(3)
            begin("Day.IsLong"); end("Day.IsLong", "OK ")
            """)
        self.assertEqual((status, lines[0]), (1, "1 of 3 cases ended"))

    def test_fails_if_the_program_ends_badly_after_its_cases(self):
        status, lines = self.run_program("""
            start(1)
            begin("Day.IsLong"); end("Day.IsLong", "OK ")
            finish(1)
            print("ERROR: LeakSanitizer: detected memory leaks")
            sys.exit(23)
            """)
        self.assertEqual((status, lines[:2]), (1, ["ERROR: LeakSanitizer: detected memory leaks",
                                                   "after 1 cases the program ended: status 23"]))

    def test_fails_if_the_program_ends_before_its_first_case(self):
        status, lines = self.run_program("""print("cannot load a library")""")
        self.assertEqual((status, lines[:2]), (1, ["cannot load a library",
                                                   "the program ended before its first case: status 0"]))

    def test_says_first_that_a_program_wrote_nothing(self):
        status, lines = self.run_program("sys.exit(0)")
        self.assertEqual((status, lines[0]), (1, "the program ended without any output: status 0"))

    def test_fails_without_any_case(self):
        status, lines = self.run_program("start(0)\nfinish(0)")
        self.assertEqual((status, lines[0]), (1, "the program has no such case"))

    def test_reads_cases_after_unfinished_lines_and_with_line_ends_of_windows(self):
        status, lines = self.run_program("""
            start(1)
            sys.stdout.write("unfinished[ RUN      ] Day.IsLong\\r\\n")
            sys.stdout.write("unfinished[       OK ] Day.IsLong (0 ms)\\r\\n")
            """)
        self.assertEqual((status, lines), (0, ["cases: 1 passed, 0 skipped"]))

    def test_leaves_alone_what_a_case_prints_of_another_one(self):
        status, lines = self.run_program("""
            start(1)
            begin("Day.IsLong"); end("Day.IsShort", "FAILED "); end("Day.IsLong", "OK ")
            """)
        self.assertEqual((status, lines), (0, ["cases: 1 passed, 0 skipped"]))

    def test_does_not_wait_for_a_process_that_outlives_the_program(self):
        status, lines = self.run_program("""
            import subprocess
            start(1)
            begin("Day.IsLong"); end("Day.IsLong", "OK ")
            subprocess.Popen([sys.executable, "-c", "import time; time.sleep(60)"])
            """)
        self.assertEqual((status, lines), (0, ["cases: 1 passed, 0 skipped"]))
        self.assertLess(self.seconds, 40)

    SETTINGS = """
        start(1)
        begin("Day.IsLong")
        print(os.environ.get("GTEST_SHUFFLE"), os.environ["GTEST_RANDOM_SEED"], os.environ.get("GTEST_FILTER"))
        end("Day.IsLong", "FAILED ")
        """

    def test_shuffles_in_a_fixed_order(self):
        self.assertEqual(self.run_program(self.SETTINGS)[1][1], "1 1 None")

    def test_leaves_order_and_filter_to_the_environment(self):
        status, lines = self.run_program(self.SETTINGS, GTEST_RANDOM_SEED="7", GTEST_FILTER="Day.*")
        self.assertEqual((lines[1], lines[-1]), ("1 7 Day.*", "failed, with GTEST_RANDOM_SEED=7; 0 cases passed"))

    ALONE = """
        if "--gtest_list_tests" in sys.argv:
            print("Day.\\n  IsLong\\n  IsShort\\nShare/Day.\\n  Ends/0  # GetParam() = 0\\nTyped/0.  # TypeParam = int\\n  Is")
            sys.exit(0)
        name = os.environ["GTEST_FILTER"]
        start(1)
        begin(name)
        if name == "Day.IsShort" and "CRASH" in os.environ: os._exit(5)
        end(name, "SKIPPED" if name == "Day.IsLong" else "OK ")
        finish(1)
        """

    def test_can_start_a_process_for_each_case(self):
        self.assertEqual(self.run_program(self.ALONE, WATTLEAF_CASES_ALONE="1"),
                         (0, ["skipped: Day.IsLong", "cases: 3 passed, 1 skipped"]))

    def test_runs_the_other_cases_after_a_crash_of_one_alone(self):
        status, lines = self.run_program(self.ALONE, WATTLEAF_CASES_ALONE="1", CRASH="1")
        self.assertEqual((status, lines), (1, [
            "[ RUN      ] Day.IsShort", "Day.IsShort was running when the program ended: status 5",
            "0 of 1 cases ended", "skipped: Day.IsLong",
            "failed, with GTEST_RANDOM_SEED=1; 2 cases passed"]))

    def test_fails_alone_if_the_program_cannot_list_its_cases(self):
        status, lines = self.run_program("""print("missing.dll")\nsys.exit(3)""", WATTLEAF_CASES_ALONE="1")
        self.assertEqual((status, lines), (1, ["missing.dll", "the program cannot list its cases: status 3"]))

    def test_fails_alone_without_any_case(self):
        status, lines = self.run_program("""
            if "--gtest_list_tests" not in sys.argv: start(0)
            """, WATTLEAF_CASES_ALONE="1")
        self.assertEqual((status, lines[0]), (1, "the program has no such case"))

    def test_fails_if_there_is_no_program(self):
        done = subprocess.run([sys.executable, RUN_CASES, "/no/such/program"], capture_output=True, text=True)
        self.assertEqual(done.returncode, 1)
        self.assertTrue(done.stderr.startswith("cannot start the program: "))


if __name__ == "__main__":
    unittest.main()
