#!/usr/bin/env python3
"""check-structure finds each kind of mistake in a small tree, and nothing in a correct tree.

check_structure_test.py CHECK"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECK = sys.argv.pop()

GOOD_TREE = {
    "src/base/text.h": "#pragma once\n",
    "src/base/text.cpp": '#include "base/text.h"\n// free() in a comment; "LocalFree(" in a text\n',
    "src/base/clock.h": "#pragma once\n",
    "src/base/clock_win.cpp": '#include "base/clock.h"\n\n#include <windows.h>\n',
    "src/base/clock_native.cpp": '#include "base/clock.h"\n',
    "src/ledger/day.cpp": '#include "ledger/day.h"\n#include "platform/win32/owners.h"\n',
    "src/ledger/day.h": '#include "base/text.h"\n// Kept on purpose (test Day.IsLong).\n',
    "src/platform/winrt/mingw/abi/shapes.h": "#pragma once\n",
    "src/platform/winrt/calls.cpp": '#include "platform/winrt/calls.h"\n',
    "src/platform/winrt/calls.h": '#include "platform/winrt/mingw/abi/shapes.h"\n',
    "src/platform/win32/owners.h": "void Release() { CloseHandle(handle); }\n",
    "tests/ledger/day_test.cpp": "TEST(Day, IsLong) {\n  const ImportPatch free(fake);\n  ULONG Release() override;\n",
    "docs/ledger.md": "`Day.IsLong`, `Day.*` in `src/ledger/day.h`; `a.exe`; `[a](b)`; [here](ledger.md)\n",
    "ARCHITECTURE.md": "In `text.h` of `base/text.cpp` and `day.h`:\n| days | `ledger/day.h`, `day.cpp`, `docs/ledger.md` |\n",
    "test": "grep -vE 'Day\\.IsLong|Share/Day\\..*'\n",
    "tests/ledger/CMakeLists.txt": "wattleaf_tests(NAME day_tests RING core\n  SOURCES day_test.cpp)\n",
    ".ci/run": "ctest -R '^(host\\.Day|core\\.day_tests|contract\\.library-file)'\n",
    ".clang-tidy": "#   cert-a: why\nChecks: >\n  -*,\n  cert-*,\n  -cert-a\n",
    "CMakeLists.txt": "project(Example VERSION 1.2.3 LANGUAGES CXX)\n",
    "CHANGELOG.md": "# Changelog\n\n## [Unreleased]\n\n## [1.2.3] - 2026-01-02\n\n## [1.2.2] - 2026-01-01\n",
}


class CheckStructure(unittest.TestCase):
    def findings(self, changes):
        with tempfile.TemporaryDirectory() as folder:
            for name, text in {**GOOD_TREE, **changes}.items():
                if text is None:
                    continue
                file = pathlib.Path(folder, name)
                file.parent.mkdir(parents=True, exist_ok=True)
                file.write_text(text)
            run = subprocess.run([sys.executable, CHECK, "--root", folder], capture_output=True, text=True)
        lines = run.stdout.splitlines()
        clean = len(lines) == 1 and lines[0].startswith("check-structure: ")
        self.assertEqual(run.returncode, 0 if clean else 1, run.stderr)
        return [] if clean else lines

    def test_finds_nothing_in_a_good_tree(self):
        self.assertEqual(self.findings({}), [])

    def test_names_an_include_that_goes_upwards(self):
        self.assertEqual(self.findings({"src/base/text.h": '\n#include "ledger/day.h"\n'})[0],
                         "src/base/text.h:2: base may not include ledger")

    def test_names_an_include_between_rooms_of_the_host_that_the_table_lacks(self):
        self.assertEqual(self.findings({"host/text/a.h": '#include "report/page.h"\n', "host/report/page.h": "",
                                        "host/main.cpp": '#include "text/a.h"\n'}),
                         ["host/main.cpp:1: host may not include text",
                          "host/text/a.h:1: text may not include report"])

    def test_allows_a_room_of_the_host_to_include_those_of_its_row_and_the_library(self):
        self.assertEqual(self.findings({"host/report/page.h": '#include "text/a.h"\n#include "ledger/day.h"\n',
                                        "host/text/a.h": "", "host/main.cpp": '#include "report/page.h"\n'}), [])

    def test_names_a_circle_in_the_host(self):
        self.assertEqual(self.findings({"host/text/a.h": '#include "text/b.h"\n',
                                        "host/text/b.h": '#include "text/a.h"\n'}),
                         ["host/text/a.h:1: include circle: text/a.h -> text/b.h -> text/a.h"])

    def test_names_an_include_that_is_written_from_the_folder_of_the_file(self):
        self.assertEqual(self.findings({"host/text/a.cpp": '\n#include "a.h"\n', "host/text/a.h": "",
                                        "src/ledger/day.h": '#include "../base/text.h"\n'}),
                         ["src/ledger/day.h:1: ../base/text.h is not written from src/",
                          "host/text/a.cpp:2: a.h is not written from host/"])

    def test_names_a_folder_without_a_row(self):
        self.assertEqual(self.findings({"src/utils/misc.cpp": ""}),
                         ["src/utils/misc.cpp:1: the folder utils has no row in tools/check-structure"])

    def test_names_a_circle(self):
        self.assertEqual(self.findings({"src/ledger/day.h": '#include "ledger/year.h"\n',
                                        "src/ledger/year.h": '#include "ledger/day.h"\n'}),
                         ["src/ledger/day.h:1: include circle: "
                          "ledger/day.h -> ledger/year.h -> ledger/day.h"])

    def test_names_a_release_outside_an_owner(self):
        self.assertEqual(self.findings({"src/ledger/night.cpp": "\nvoid f() { ::LocalFree(block); }\n"}),
                         ["src/ledger/night.cpp:2: LocalFree outside an owner"])

    def test_allows_the_releases_that_a_contract_forces_and_no_others_there(self):
        self.assertEqual(self.findings({"src/service/zq_service.cpp": "free(a); fclose(b);\n"}),
                         ["src/service/zq_service.cpp:1: fclose outside an owner"])

    def test_names_a_release_call_in_each_folder_of_sources(self):
        for folder in ("host/text", "standins", "examples", "tests", "fuzz", "bench"):
            self.assertEqual(self.findings({f"{folder}/a.cpp": "void f() { std::free(a); }\n"}),
                             [f"{folder}/a.cpp:1: free outside an owner"])

    def test_allows_the_release_of_an_owners_policy_and_of_a_deleter_and_none_after_them(self):
        policy = "struct P {\n  static void Release(H file) { fclose(file); }\n};\n"
        deleter = "struct D {\n  void operator()(void* block) const { free(block); }\n};\n"
        replaced = "void operator delete(void* block) noexcept { std::free(block); }\n"
        self.assertEqual(self.findings({"tests/a.cpp": policy + deleter + replaced}), [])
        self.assertEqual(self.findings({"tests/a.cpp": policy + "void f() { fclose(file); }\n"}),
                         ["tests/a.cpp:4: fclose outside an owner"])

    def test_names_a_release_of_a_com_object(self):
        self.assertEqual(self.findings({"tests/a.cpp": "void f() {\n  if (a) a->Release();\n  return b.Release();\n}\n"}),
                         ["tests/a.cpp:2: Release outside an owner", "tests/a.cpp:3: Release outside an owner"])

    def test_names_a_delete_expression_outside_a_deleter(self):
        self.assertEqual(self.findings({"tests/a.cpp": "void f() { delete a; }\nvoid g() { if (b) delete[] b; }\n"
                                                       "void h() { delete (c); delete ::d; }\n"}),
                         ["tests/a.cpp:1: delete outside an owner", "tests/a.cpp:2: delete outside an owner",
                          "tests/a.cpp:3: delete outside an owner", "tests/a.cpp:3: delete outside an owner"])
        kept = ("struct A {\n  A(const A&) = delete;\n  void End() { delete this; }\n"
                "  void operator()(A* a) const { delete a; }\n};\nvoid operator delete(void* block);\n")
        self.assertEqual(self.findings({"tests/a.cpp": kept}), [])

    def test_names_a_release_after_return_and_after_else(self):
        self.assertEqual(self.findings({"tests/a.cpp": "return CloseHandle(a);\nif (a) b(); else fclose(a);\n"}),
                         ["tests/a.cpp:1: CloseHandle outside an owner", "tests/a.cpp:2: fclose outside an owner"])

    def test_names_a_source_that_does_not_include_its_own_header_first(self):
        self.assertEqual(self.findings({"src/base/text.cpp": '\n#include <vector>\n#include "base/text.h"\n'}),
                         ["src/base/text.cpp:2: does not include text.h first"])

    def test_names_a_body_that_does_not_include_its_header_first(self):
        for body in ("clock_win.cpp", "clock_native.cpp"):
            self.assertEqual(self.findings({f"src/base/{body}": '#include <windows.h>\n#include "base/clock.h"\n'}),
                             [f"src/base/{body}:1: does not include clock.h first"])

    def test_names_a_header_with_the_suffix_of_a_body(self):
        self.assertEqual(self.findings({"src/base/clock_win.h": "", "tests/a.cpp": '#include "base/clock_win.h"\n'}),
                         ["src/base/clock_win.cpp:1: does not include clock_win.h first",
                          "src/base/clock_win.h:1: _win is only for one of two bodies of a header"])

    def test_names_a_body_without_a_twin_or_without_a_header(self):
        self.assertEqual(self.findings({"src/base/text_win.cpp": '#include "base/text.h"\n',
                                        "src/base/day_native.cpp": "", "src/base/day_win.cpp": ""}),
                         ["src/base/day_native.cpp:1: _native is only for one of two bodies of a header",
                          "src/base/day_win.cpp:1: _win is only for one of two bodies of a header",
                          "src/base/text_win.cpp:1: _win is only for one of two bodies of a header"])

    def test_names_a_header_that_no_file_includes(self):
        self.assertEqual(self.findings({"tests/ledger/lonely.h": "#pragma once\n"}),
                         ["tests/ledger/lonely.h:1: no file includes this header"])

    def test_takes_the_header_beside_a_file_for_the_included_one(self):
        self.assertEqual(self.findings({"standins/a/words.h": "", "standins/a/a.cpp": '#include "words.h"\n',
                                        "standins/b/words.h": ""}),
                         ["standins/b/words.h:1: no file includes this header"])

    def test_names_a_test_or_suite_of_a_regular_expression_that_does_not_exist(self):
        self.assertEqual(self.findings({"test": "grep -vE 'Day\\.IsGone'\nctest -E 'Share/Night\\..*'\n",
                                        ".ci/run": "ctest -R 'host\\.Evening'\n"}),
                         ["test:1: there is no test Day.IsGone", "test:2: there is no suite Night",
                          ".ci/run:1: there is no suite Evening"])

    def test_names_a_program_of_a_regular_expression_that_does_not_exist(self):
        self.assertEqual(self.findings({"test": "ctest -R 'service\\.day_tests'\nctest -R '^core\\.night_tests$'\n"}),
                         ["test:2: there is no test program night_tests"])

    def test_names_a_file_of_the_overview_that_does_not_exist(self):
        rows = "| days | `ledger/day.h`, `text.cpp` |\n| all | `base/gone.h`, `docs/ledger.md` |\nIn `gone.cpp`\n"
        self.assertEqual(self.findings({"ARCHITECTURE.md": rows}),
                         ["ARCHITECTURE.md:1: there is no text.cpp", "ARCHITECTURE.md:2: there is no base/gone.h",
                          "ARCHITECTURE.md:3: there is no gone.cpp"])

    def test_names_a_changelog_of_another_version(self):
        self.assertEqual(self.findings({"CMakeLists.txt": "project(Example VERSION 1.3.0)\n"}),
                         ["CHANGELOG.md:5: the newest version is 1.2.3, CMakeLists.txt has 1.3.0"])

    def test_names_a_changelog_without_a_version(self):
        self.assertEqual(self.findings({"CHANGELOG.md": "## [Unreleased]\n"}),
                         ["CHANGELOG.md:1: the newest version is missing, CMakeLists.txt has 1.2.3"])

    def test_names_a_test_of_the_overview_or_of_a_test_comment_that_does_not_exist(self):
        self.assertEqual(self.findings({"README.md": "`Day.IsShort`\n", "tests/a.cpp": "// (test Day.IsShort)\n"}),
                         ["README.md:1: there is no test Day.IsShort",
                          "tests/a.cpp:1: there is no test Day.IsShort"])

    def test_names_a_test_that_runs_python_as_a_target(self):
        text = ('add_custom_command(COMMAND Python3::Interpreter a.py)\nadd_test(NAME a\n  COMMAND "${Python3_EXECUTABLE}" a.py)\n'
                "add_test(NAME b\n  COMMAND Python3::Interpreter b.py)\n")
        self.assertEqual(self.findings({"tests/a/CMakeLists.txt": text}),
                         ["tests/a/CMakeLists.txt:5: this test would not fail under Wine: use ${Python3_EXECUTABLE}"])

    def test_names_a_missing_list_of_checks(self):
        self.assertEqual(self.findings({".clang-tidy": None}), [".clang-tidy:1: is missing"])

    def test_names_a_check_that_is_off_without_a_reason_and_a_reason_without_its_check(self):
        self.assertEqual(self.findings({".clang-tidy": "#   cert-a: why\nChecks: >\n  -*,\n  cert-*,\n  -cert-b,\n  -misc-*\n"}),
                         [".clang-tidy:5: cert-b is off without a reason",
                          ".clang-tidy:6: misc-* is off without a reason",
                          ".clang-tidy:1: cert-a has a reason but is not off"])

    def test_names_a_test_of_a_document_or_comment_that_does_not_exist(self):
        self.assertEqual(self.findings({"docs/ledger.md": "`Day.IsShort` `Night.*`\n",
                                        "src/ledger/day.h": "// (test Day.IsShort)\n"}),
                         ["docs/ledger.md:1: there is no test Day.IsShort",
                          "docs/ledger.md:1: there is no test Night.*, nor that suite",
                          "src/ledger/day.h:1: there is no test Day.IsShort"])

    def test_names_each_test_of_a_parenthesis_also_on_later_lines_and_in_short_form(self):
        comment = "// Kept on purpose: so (tests\n// Day.IsLong, Day.IsGone and\n// .IsShort).\n"
        self.assertEqual(self.findings({"src/ledger/day.h": '#include "base/text.h"\n' + comment}),
                         ["src/ledger/day.h:3: there is no test Day.IsGone",
                          "src/ledger/day.h:4: there is no test .IsShort, nor that suite"])

    def test_names_a_link_and_a_file_that_do_not_exist(self):
        self.assertEqual(self.findings({"docs/ledger.md": "[gone](gone.md)\n`src/ledger/gone.cpp`\n"}),
                         ["docs/ledger.md:1: the link gone.md leads nowhere",
                          "docs/ledger.md:2: there is no src/ledger/gone.cpp"])


unittest.main()
