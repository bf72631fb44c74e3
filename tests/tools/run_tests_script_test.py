#!/usr/bin/env python3
"""run-tests.cmd runs the listed test programs and fails for each that does not pass all of its cases.

run_tests_script_test.py SCRIPT SAMPLE_PROGRAM FOLDER_OF_BUILD UNDER_WINE...

SAMPLE_PROGRAM prints what a plan beside it says. FOLDER_OF_BUILD has the script and the list of the real programs,
of which a few run too."""

import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

SCRIPT, SAMPLE, BUILD = (pathlib.Path(argument) for argument in sys.argv[1:4])
UNDER_WINE = sys.argv[4:]
sys.argv[1:] = []

GOOD = ["[==========] Running 3 tests from 2 test suites.", "[       OK ] A.One (0 ms)", "[  PASSED  ] 3 tests."]


def run_script(folder, *arguments):
    """The exit status and the lines of the script in `folder`, with the current directory elsewhere."""
    script = "Z:" + str(folder / "run-tests.cmd").replace("/", "\\")
    run = subprocess.run([*UNDER_WINE, "cmd", "/c", script, *arguments], cwd="/", stdin=subprocess.DEVNULL,
                         stdout=subprocess.PIPE, stderr=subprocess.STDOUT)  # fmt: skip
    lines = run.stdout.decode("utf-8", "replace").replace("\r", "").splitlines()
    # Wine's own word on standard error when a process ends while one of its threads is talking to Wine's server.
    return run.returncode, [line for line in lines if not line.startswith("wine client error:")]


class Script(unittest.TestCase):
    def setUp(self):
        self.scratch = tempfile.TemporaryDirectory(prefix="with blank ")
        self.folder = pathlib.Path(self.scratch.name)
        shutil.copy(SCRIPT, self.folder)
        (self.folder / "bin").mkdir()
        self.listed = ["# the programs"]

    def tearDown(self):
        self.scratch.cleanup()

    def add(self, name, lines, status=0, ring="core"):
        shutil.copy(SAMPLE, self.folder / "bin" / f"{name}.exe")
        (self.folder / "bin" / f"{name}.plan").write_text("\n".join([str(status), *lines]) + "\n")
        self.listed.append(f"{ring} {name}")

    def run_all(self, *arguments):
        (self.folder / "tests.txt").write_bytes(("\r\n".join(self.listed) + "\r\n").encode())
        return run_script(self.folder, *(arguments or ("core", "service", "host")))

    def test_adds_up_the_cases_of_each_ring(self):
        self.add("one_tests", GOOD)
        self.add("two_tests", ["[==========] Running 14 tests from 1 test suite.", "[  PASSED  ] 12 tests.",
                               "[  SKIPPED ] 2 tests, listed below:", "[  SKIPPED ] A.One", "[  SKIPPED ] A.Two"])  # fmt: skip
        self.add("three_tests", ["[==========] Running 2 tests from 1 test suite.", "[  PASSED  ] 1 test.",
                                 "[  SKIPPED ] 1 test, listed below:", "[  SKIPPED ] A.One"], ring="host")  # fmt: skip
        self.listed += ["left-out notebook_tests needs the simulated notebook", "left-out zone_tests needs a zone"]
        code, shown = self.run_all()
        self.assertEqual(shown, [
            "core.one_tests: passed",
            "core.two_tests: passed",
            "host.three_tests: passed",
            "",
            "core: 15 passed, 0 failed, 2 skipped",
            "service: 0 passed, 0 failed, 0 skipped",
            "host: 1 passed, 0 failed, 1 skipped",
            "left out: 2 programs, with the reasons in tests.txt",
            "all passed",
        ])  # fmt: skip
        self.assertEqual(code, 0)
        self.assertIn("A.Two", (self.folder / "logs" / "two_tests.log").read_text())

    def test_runs_the_chosen_ring_or_program_only(self):
        self.add("one_tests", GOOD)
        self.add("two_tests", GOOD, ring="service")
        self.add("three_tests", GOOD, ring="host")
        self.assertEqual(self.run_all("service")[1][:2], ["service.two_tests: passed", ""])
        self.assertEqual(self.run_all("host.three_tests", "core")[1][:3],
                         ["core.one_tests: passed", "host.three_tests: passed", ""])  # fmt: skip
        self.assertEqual(self.run_all("core.two_tests"), (2, ["no program was chosen: tests.txt lists them."]))

    def test_waits_for_a_key_without_arguments_only(self):
        self.add("one_tests", GOOD)
        (self.folder / "tests.txt").write_text("core one_tests\n")
        code, shown = run_script(self.folder)
        self.assertIn("all passed", shown)
        self.assertRegex(shown[-1], "(?i)press .* key")
        self.assertEqual(self.run_all("core")[1][-1], "all passed")

    def test_fails_for_each_program_that_does_not_pass_all_its_cases(self):
        one_failed = ["[  PASSED  ] 2 tests.", "[  FAILED  ] 1 test, listed below:", "[  FAILED  ] A.One"]
        # As GoogleTest prints lists of texts, and what the command interpreter takes for its own.
        text = ['  Which is: { ("2023-10-11", 3.3), "a & b | c > d', ') else ( %PATH% ^', '"']
        two_failed = ["[  PASSED  ] 1 test.", "[  FAILED  ] 2 tests, listed below:", "[  FAILED  ] A.One"]
        none = ["[==========] Running 0 tests from 0 test suites.", "[  PASSED  ] 0 tests."]
        kinds = (
            ("failed", [*GOOD[:2], *one_failed], 1, "FAILED, status 1"),
            ("two", [*GOOD[:2], *text, *two_failed], 1, "FAILED, status 1"),
            ("silent", [*GOOD[:2], *one_failed], 0, "FAILED, status 0"),
            ("crashed", GOOD, 5, "FAILED after its last case, status 5"),
            ("ended", GOOD[:2], 0, "FAILED, 0 of 3 cases ended, status 0"),
            ("empty", none, 0, "FAILED, it began no case, status 0"),
        )
        for name, lines, status, _ in kinds:
            self.add(name, lines, status)
        self.add("good", GOOD)
        self.listed.append("host missing")
        code, shown = self.run_all()
        self.assertEqual(code, 1)
        self.assertEqual(shown[:7], [f"core.{name}: {verdict}: see logs\\{name}.log" for name, _, _, verdict in kinds]
                         + ["core.good: passed"])  # fmt: skip
        self.assertRegex(shown[7], r"^host\.missing: FAILED, it began no case, status [1-9]\d*: see logs\\missing\.log$")
        self.assertEqual(shown[9], "core: 11 passed, 4 failed, 0 skipped")
        self.assertEqual(shown[12:], [f"FAILED: core.{name}" for name, *_ in kinds] + ["FAILED: host.missing"])

    def test_reads_the_log_while_a_process_that_a_test_left_has_it_open(self):
        self.add("left_tests", [*GOOD, "leave a process"])
        code, shown = self.run_all()
        self.assertEqual((code, shown[0], shown[-1]), (0, "core.left_tests: passed", "all passed"))

    def test_says_that_its_list_is_missing(self):
        code, shown = run_script(self.folder, "core")
        self.assertEqual((code, shown), (2, ["tests.txt is missing: this script runs where it was unpacked, beside bin."]))


class RealPrograms(unittest.TestCase):
    def test_pass(self):
        # One of each ring, all quick.
        chosen = ["core.trust_rules_tests", "host.library_file_tests", "service.test_support_tests"]
        code, shown = run_script(BUILD, *chosen)
        self.assertEqual(shown[:4], [f"{name}: passed" for name in chosen] + [""])
        for line, ring in zip(shown[4:7], ("core", "service", "host")):
            self.assertRegex(line, rf"^{ring}: [1-9]\d* passed, 0 failed, 0 skipped$")
        self.assertEqual((code, shown[-1]), (0, "all passed"))

    def test_the_list_has_each_program_once_and_the_reason_for_each_left_out(self):
        listed = [line.split(maxsplit=2) for line in (BUILD / "tests.txt").read_text().splitlines()
                  if not line.startswith("#")]  # fmt: skip
        names = [row[1] for row in listed]
        self.assertEqual(sorted(set(names)), sorted(names))
        self.assertGreater(len(names), 60)
        for first, *rest in listed:
            self.assertIn((first, len(rest)), (("core", 1), ("service", 1), ("host", 1), ("left-out", 2)))
        self.assertIn(["left-out", "host_notebook_tests", "needs the simulated notebook"], listed)
        self.assertIn(["service", "trust_tests"], listed)


if __name__ == "__main__":
    unittest.main()
