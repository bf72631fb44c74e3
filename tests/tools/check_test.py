#!/usr/bin/env python3
"""tools/check finds one mistake of each kind in a small tree, and nothing in the tree without it. clang-tidy and
cppcheck are needed: .ci/run runs this, ./test does not.

check_test.py CHECK"""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECK = sys.argv.pop()
TOOLS = pathlib.Path(CHECK).resolve().parent

GOOD_CORE = "int Half(int number) { return number / 2; }\n"
# A header that only Windows has, and a small one.
GOOD_WINDOWS = "#include <basetsd.h>\n\nINT_PTR Third(INT_PTR number) { return number / 3; }\n"


class Check(unittest.TestCase):
    def run_check(self, name, changes):
        """The status and the output for a tree with a core source, a Windows source, and these files."""
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder).resolve()
            files = {"src/core.cpp": GOOD_CORE, "src/windows.cpp": GOOD_WINDOWS,
                     ".clang-tidy": (TOOLS.parent / ".clang-tidy").read_text(), **changes}
            for preset, source in (("native", "core"), ("windows-dev", "windows")):
                command = f"c++ -std=c++20 -I{root}/src -c {root}/src/{source}.cpp"
                files[f"build/{preset}/compile_commands.json"] = json.dumps(
                    [{"directory": str(root), "command": command, "file": f"{root}/src/{source}.cpp"}])
            for path, text in files.items():
                file = root / path
                file.parent.mkdir(parents=True, exist_ok=True)
                file.write_text(text)
            run = subprocess.run([CHECK, "--root", root, name], capture_output=True, text=True)
        return run.returncode, run.stdout + run.stderr

    def assert_finds(self, name, changes, finding):
        status, output = self.run_check(name, changes)
        self.assertIn(finding, output)
        self.assertEqual(status, 1)

    def test_finds_nothing_in_a_good_tree(self):
        for name, sources in (("alone", 1), ("tidy", 2), ("cppcheck", 2)):
            status, output = self.run_check(name, {})
            self.assertRegex(output, rf"^{name}: 0 findings, {sources} sources")
            self.assertEqual(status, 0)

    def test_alone_finds_a_missing_include(self):
        self.assert_finds("alone", {"src/windows.cpp": GOOD_WINDOWS + "std::size_t Size() { return 0; }\n"},
                          "src/windows.cpp:4:1: error: use of undeclared identifier 'std'")

    def test_alone_finds_a_warning(self):
        self.assert_finds("alone", {"src/windows.cpp": GOOD_WINDOWS + "int Low(INT_PTR number) { return number; }\n"},
                          "[-Werror,-Wshorten-64-to-32]")

    def test_tidy_reads_the_core_natively(self):
        self.assert_finds("tidy", {"src/core.cpp": "int* Nothing() { return 0; }\n"},
                          "src/core.cpp:1:25: error: use nullptr [modernize-use-nullptr")

    def test_tidy_reads_the_windows_half_with_its_headers(self):
        self.assert_finds("tidy", {"src/windows.cpp": GOOD_WINDOWS + "INT_PTR* Nothing() { return 0; }\n"},
                          "src/windows.cpp:4:29: error: use nullptr [modernize-use-nullptr")

    def test_tidy_reads_headers_of_ours(self):
        self.assert_finds("tidy", {"src/half.h": "#pragma once\ninline int* Nothing() { return 0; }\n",
                                   "src/core.cpp": '#include "half.h"\n' + GOOD_CORE},
                          "src/half.h:2:32: error: use nullptr [modernize-use-nullptr")

    def test_tidy_reports_a_source_that_does_not_compile(self):
        self.assert_finds("tidy", {"src/core.cpp": "int Half(int number) { return numbr; }\n"},
                          "[clang-diagnostic-error]")

    def test_cppcheck_reads_every_source(self):
        for source in ("src/core.cpp", "standins/other.cpp"):
            self.assert_finds("cppcheck", {source: "int Last() {\n  int numbers[2] = {1, 2};\n  return numbers[2];\n}\n"},
                              f"{source}:3: arrayIndexOutOfBounds:")

    def test_cppcheck_follows_the_paths_through_a_source(self):
        self.assert_finds("cppcheck", {"src/core.cpp": "int Read(bool is) {\n  const int* at = nullptr;\n"
                                                       "  if (is) return *at;\n  return 0;\n}\n"},
                          "src/core.cpp:3: nullPointer:")

    def test_structure_names_a_release_call_outside_an_owner(self):
        self.assert_finds("structure", {"src/windows.cpp": GOOD_WINDOWS + "void Shut(void* f) { CloseHandle(f); }\n"},
                          "src/windows.cpp:4: CloseHandle outside an owner")

    def test_structure_names_an_include_circle(self):
        self.assert_finds("structure", {"src/a.h": '#include "b.h"\n', "src/b.h": '#include "a.h"\n'},
                          "include circle: a.h -> b.h -> a.h")

    def test_refuses_a_tree_that_is_not_configured(self):
        status, output = self.run_check("tidy", {})
        self.assertEqual(status, 0, output)
        with tempfile.TemporaryDirectory() as folder:
            run = subprocess.run([CHECK, "--root", folder, "tidy"], capture_output=True, text=True)
        self.assertNotEqual(run.returncode, 0)
        self.assertIn("native is not configured", run.stderr)


if __name__ == "__main__":
    unittest.main()
