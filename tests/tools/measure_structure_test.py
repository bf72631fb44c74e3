#!/usr/bin/env python3
"""measure-structure reports a tree that meets every goal as such, and names the one goal that a
planted mistake misses.

measure_structure_test.py MEASURE"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

MEASURE = sys.argv.pop()
PAIRS = 94


def header(number):
    """A header of 30 lines, 12 of them comments."""
    return ("#pragma once\n" + "/// A contract.\n" * 12 +
            f"[[nodiscard]] bool Is{number}(int value);\n" + "int padding;\n" * 16)


def source(number, lines=80):
    return f'#include "base/part{number}.h"\n' + "int padding;\n" * (lines - 1)


def good_tree():
    tree = {"src/base/CMakeLists.txt": "target_sources(wattleaf_core PRIVATE\n" +
                                       "".join(f"  part{n}.cpp\n" for n in range(PAIRS)) + ")\n",
            "src/service/CMakeLists.txt": "FILE_SET HEADERS FILES\n  ../base/part0.h\n"}
    for number in range(PAIRS):
        tree[f"src/base/part{number}.h"] = header(number)
        tree[f"src/base/part{number}.cpp"] = source(number)
    for folder in ("tests", "standins", "host"):
        tree[f"{folder}/main.cpp"] = "int main() {}\n" * 500
    return tree


class MeasureStructure(unittest.TestCase):
    def missed(self, changes):
        """The rows that miss their goal, as (measure, value)."""
        with tempfile.TemporaryDirectory() as folder:
            for name, text in {**good_tree(), **changes}.items():
                file = pathlib.Path(folder, name)
                file.parent.mkdir(parents=True, exist_ok=True)
                if text is not None:
                    file.write_text(text)
            run = subprocess.run([sys.executable, MEASURE, "--root", folder], capture_output=True, text=True)
        rows = [line for line in run.stdout.splitlines() if line.endswith("MISSED")]
        self.assertEqual(run.returncode, 1 if rows else 0, run.stderr)
        return [(row[:42].strip(), row[43:65].strip()) for row in rows]

    def test_a_tree_that_meets_every_goal(self):
        self.assertEqual(self.missed({}), [])

    def test_leaves_no_file_beside_the_script(self):
        with tempfile.TemporaryDirectory() as folder:
            for script in ("measure-structure", "check-structure"):
                shutil.copy(pathlib.Path(MEASURE).with_name(script), folder)
            writing = {k: v for k, v in os.environ.items() if k != "PYTHONDONTWRITEBYTECODE"}
            subprocess.run([sys.executable, f"{folder}/measure-structure", "--root", folder],
                           env=writing, capture_output=True)
            left = sorted(file.name for file in pathlib.Path(folder).iterdir())
        self.assertEqual(left, ["check-structure", "measure-structure"])

    def test_too_few_files(self):
        gone = {f"src/base/part{n}.{end}": None for n in range(5) for end in ("h", "cpp")}
        self.assertEqual(self.missed({**gone, "src/service/CMakeLists.txt": "  ../base/part9.h\n"}),
                         [("files in src/", "178")])

    def test_sources_that_are_too_short_or_too_long(self):
        short = {f"src/base/part{n}.cpp": source(n, lines=69) for n in range(PAIRS)}
        self.assertEqual(self.missed(short), [("source lines, median / 90th percentile", "69 / 69")])
        long = {f"src/base/part{n}.cpp": source(n, lines=301) for n in range(10)}
        self.assertEqual(self.missed(long), [("source lines, median / 90th percentile", "80 / 301")])

    def test_too_many_short_headers(self):
        text = "#pragma once\n" + "// A contract.\n" * 10 + "int padding;\n" * 8
        short = {f"src/base/part{n}.h": text for n in range(16)}
        self.assertEqual(self.missed(short), [("headers under 20 lines", "16")])

    def test_a_helper_with_one_user(self):
        changes = {"src/base/part1.cpp": source(1) + '#include "base/part2.h"\n',
                   "src/base/part2.cpp": source(2, lines=39)}
        self.assertEqual(self.missed(changes), [("headers with one includer", "1 (of 1 in all)")])

    def test_one_user_in_the_other_library_is_a_border(self):
        changes = {"src/base/part1.cpp": source(1) + '#include "base/part2.h"\n',
                   "src/base/part2.cpp": source(2, lines=39),
                   "src/base/CMakeLists.txt": "target_sources(wattleaf_core PRIVATE part2.cpp)\n"}
        self.assertEqual(self.missed(changes), [])

    def test_a_source_without_a_header_of_its_name(self):
        self.assertEqual(self.missed({"src/base/other.cpp": source(1)}),
                         [("sources without a header of their name", f"1 of {PAIRS + 1}")])
        self.assertEqual(self.missed({"src/base/part1_more.cpp": source(1)}), [])

    def test_too_few_comments(self):
        bare = {f"src/base/part{n}.h": header(n).replace("/// A contract.", "int padding;") for n in range(1, 40)}
        self.assertEqual(self.missed(bare), [("comments in headers, all / installed", "23% / 40%")])
        self.assertEqual(self.missed({"src/base/part0.h": bare["src/base/part1.h"].replace("Is1", "Is0")}),
                         [("comments in headers, all / installed", "40% / 0%")])

    def test_a_result_without_nodiscard(self):
        self.assertEqual(self.missed({"src/base/part1.h": header(1).replace("[[nodiscard]] ", "")}),
                         [("[[nodiscard]] on results", f"{PAIRS - 1} of {PAIRS}")])

    def test_an_own_header_that_comes_second(self):
        self.assertEqual(self.missed({"src/base/part1.cpp": "#include <string>\n" + source(1)}),
                         [("own header first", f"{PAIRS - 1} of {PAIRS}")])

    def test_a_release_outside_its_owner(self):
        self.assertEqual(self.missed({"src/base/part1.cpp": source(1, lines=79) + "void f() { LocalFree(block); }\n"}),
                         [("releases outside owners, src/", "0.10 in 1,000 lines")])

    def test_folders_that_include_each_other(self):
        self.assertEqual(self.missed({"src/base/part1.cpp": source(1) + '#include "ledger/day.h"\n',
                                      "src/ledger/day.h": header(1) + '#include "base/part1.h"\n'}),
                         [("folder circles", "2")])


unittest.main()
