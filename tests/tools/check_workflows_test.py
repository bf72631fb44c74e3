#!/usr/bin/env python3
"""The check of the workflows accepts those of this repository and finds each mistake planted in one.

check_workflows_test.py SOURCE"""

import contextlib
import io
import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
SOURCE = pathlib.Path(sys.argv.pop())

import check_workflows  # noqa: E402

GOOD = """
on: push
jobs:
  one:
    runs-on: debian
    timeout-minutes: 9
    steps:
      - uses: actions/checkout@v4
      - run: |
          .ci/run && ./test
          tools/setup ci
          cmake --preset windows-msvc || exit /b 1
          cmake --build --preset windows-msvc
          ctest --preset windows-dev
"""


class Baseline(unittest.TestCase):
    def test_of_vcpkg_is_a_commit(self):
        check_workflows.sys.argv = ["check_workflows.py", str(SOURCE)]
        with contextlib.redirect_stdout(io.StringIO()) as shown:
            check_workflows.main()
        self.assertEqual(shown.getvalue(), "1 workflows are in order\n")

    def test_of_another_form_is_a_mistake(self):
        with tempfile.TemporaryDirectory() as folder:
            source = pathlib.Path(folder)
            (source / "vcpkg.json").write_text('{"builtin-baseline": "2025.03.19"}')
            check_workflows.sys.argv = ["check_workflows.py", folder]
            with self.assertRaises(SystemExit) as ended:
                check_workflows.main()
        self.assertIn("vcpkg.json: its baseline is '2025.03.19', but must be a commit", ended.exception.code)
        self.assertIn("there is no workflow", ended.exception.code)


class Workflows(unittest.TestCase):
    def assert_mistake(self, old, new, mistake):
        self.assertIn(old, GOOD)
        self.assertEqual(check_workflows.mistakes(GOOD.replace(old, new), SOURCE), [mistake])

    def test_of_this_repository_are_in_order(self):
        files = sorted((SOURCE / ".github/workflows").glob("*.yml"))
        self.assertEqual([file.name for file in files], ["tests.yml"])
        self.assertEqual(check_workflows.mistakes(files[0].read_text(), SOURCE), [])

    def test_run_on_linux_and_windows_what_they_should(self):
        text = (SOURCE / ".github/workflows/tests.yml").read_text()
        jobs = check_workflows.yaml.safe_load(text)["jobs"]
        scripts = {name: "\n".join(step.get("run", "") for step in job["steps"]) for name, job in jobs.items()}
        self.assertEqual(jobs["linux"]["container"], "debian:bookworm")
        self.assertIn(".ci/run", scripts["linux"])
        for part in ("cmake --preset windows-msvc", "cmake --build --preset windows-msvc", "ctest --test-dir build/windows-msvc -C RelWithDebInfo",
                     "cpack -C RelWithDebInfo |", "CPACK_COMPONENTS_ALL=tests"):  # fmt: skip
            self.assertIn(part, scripts["windows"])

    def test_that_are_in_order_have_no_mistake(self):
        self.assertEqual(check_workflows.mistakes(GOOD, SOURCE), [])

    def test_with_an_unknown_preset(self):
        of_presets = "of CMakePresets.json"
        self.assert_mistake("cmake --preset windows-msvc", "cmake --preset windows",
                            f"one, step 2 names windows, which is not among the configurePresets {of_presets}")  # fmt: skip
        self.assert_mistake("--build --preset windows-msvc", "--build --preset base",
                            f"one, step 2 names base, which is not among the buildPresets {of_presets}")  # fmt: skip
        self.assert_mistake("ctest --preset windows-dev", "ctest --preset base",
                            f"one, step 2 names base, which is not among the testPresets {of_presets}")  # fmt: skip

    def test_with_a_command_that_does_not_exist(self):
        for old, new in ((".ci/run", ".ci/walk"), ("./test", "./rest"), ("tools/setup", "tools/run.txt")):
            self.assert_mistake(old, new, f"one, step 2 runs {new}, which is not an executable file here")

    def test_with_a_step_of_another_form(self):
        self.assert_mistake("- uses: actions/checkout@v4", "- name: nothing", "one, step 1 has not exactly one of uses and run")
        self.assert_mistake("checkout@v4", "checkout", "one, step 1 uses actions/checkout, which names no version")

    def test_without_a_necessary_part(self):
        for part in ("runs-on: debian", "timeout-minutes: 9"):
            self.assert_mistake(part, "env: {}", "one: lacks runs-on, timeout-minutes or steps")
        self.assert_mistake("on: push", "at: push", "has no jobs, or nothing that starts them")
        self.assertEqual(check_workflows.mistakes("on: push\n", SOURCE), ["has no jobs, or nothing that starts them"])
        [mistake] = check_workflows.mistakes("on: [", SOURCE)
        self.assertTrue(mistake.startswith("is not YAML: "))


if __name__ == "__main__":
    unittest.main()
