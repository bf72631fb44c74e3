#!/usr/bin/python3
"""source_changes makes the small changes that tools/mutate tries: of operators, constants, conditions, returned values,
statements and arguments, and none of what only looks like one.

source_changes_test.py SOURCE_CHANGES"""

import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
MODULE = pathlib.Path(sys.argv.pop())
sys.path.insert(0, str(MODULE.parent))
import source_changes  # noqa: E402


def changed(text):
    """Each line that differs from its source, in the order of the changes."""
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder, "sample.cpp")
        file.write_text(text)
        changes = source_changes.changes_of(file, ["-std=c++20"], {"src/sample.cpp": file})["src/sample.cpp"]
    return [change.diff(text)[1] for change in changes]


def changed_body(body):
    """The same for a body of `int f(int a, int b, bool c)`, without what is around it."""
    before, after = "int f(int a, int b, bool c) { ", " }"
    lines = changed(before + body + after + "\n")
    return [line.removeprefix(before).removesuffix(after.strip()).strip() for line in lines]


class SourceChanges(unittest.TestCase):
    def test_a_comparison_becomes_its_neighbour(self):
        for operator, neighbour in (("<", "<="), ("<=", "<"), (">", ">="), (">=", ">"), ("==", "!="), ("!=", "==")):
            self.assertEqual(changed_body(f"c = a {operator} b;"), [";", f"c = a {neighbour} b;"])

    def test_arithmetic_and_logic_become_their_opposites(self):
        for operator, other in (("+", "-"), ("-", "+"), ("*", "/"), ("/", "*"), ("&", "|"), ("<<", ">>"), ("&&", "||"),
                                ("||", "&&")):
            self.assertEqual(changed_body(f"a = a {operator} b;"), [";", f"a = a {other} b;"])

    def test_assignments_and_steps_turn_round(self):
        self.assertEqual(changed_body("a += b;"), [";", "a -= b;"])
        self.assertEqual(changed_body("++a;"), ["--a;", ";"])

    def test_a_constant_becomes_each_neighbour(self):
        self.assertEqual(changed("int a = 7;\n"), ["int a = 6;", "int a = 8;"])
        self.assertEqual(changed("unsigned a = 0x1FU;\n"), ["unsigned a = 30U;", "unsigned a = 32U;"])
        self.assertEqual(changed("int a = 0;\n"), ["int a = 1;"])
        self.assertEqual(changed("float a = 2.5F;\n"), ["float a = 3.5F;"])
        self.assertEqual(changed("bool a = true;\n"), ["bool a = false;"])

    def test_a_condition_is_negated(self):
        self.assertEqual(changed_body("if (c) ++a;"), ["if (!(c)) ++a;", "if (c) --a;", "if (c) ;"])
        self.assertEqual(changed_body("while (!c) a = b;"), ["while (c) a = b;", "while (!c) ;"])

    def test_a_returned_value_is_dropped_or_negated(self):
        self.assertEqual(changed("int f(int a) { return a; }\n"), ["int f(int a) { return {}; }"])
        self.assertEqual(changed("bool f(bool a) { return a; }\n"), ["bool f(bool a) { return !(a); }"])
        self.assertEqual(changed("int f() { return {}; }\n"), [])

    def test_the_values_of_a_choice_change_places(self):
        self.assertIn("return c ? b : a;", changed_body("return c ? a : b;"))

    def test_neighbouring_arguments_of_one_type_change_places(self):
        call = "int g(int a, int b, long c);\nint h(int a, int b) { g(a, b, 1L); return 0; }\n"
        self.assertIn("int h(int a, int b) { g(b, a, 1L); return 0; }", changed(call))
        self.assertEqual([line for line in changed(call) if line.startswith("int g")], [])
        self.assertFalse(any("1L, b" in line for line in changed(call)))

    def test_a_call_is_deleted_unless_it_only_marks_a_value_as_used(self):
        self.assertEqual(changed("void g();\nvoid f() { g(); }\n"), ["void f() { ; }"])
        self.assertEqual(changed("void f(int a) { static_cast<void>(a); }\n"), [])

    def test_continue_and_break_change_places(self):
        self.assertIn("while (c) { continue; }", changed_body("while (c) { break; }"))
        self.assertIn("while (c) { break; }", changed_body("while (c) { continue; }"))

    def test_brackets_of_templates_references_and_comments_stay(self):
        text = ("template <typename T> struct S { S(S&&) = delete; bool operator==(const S&) const; };\n"
                "using I = S<int>;  // 1 < 2 && true\n"
                "#pragma once\n")
        self.assertEqual(changed(text), [])

    def test_what_a_macro_makes_stays(self):
        self.assertEqual(changed("#define BOTH(a, b) ((a) && (b))\nbool f(bool a, bool b) { return BOTH(a, b); }\n"),
                         ["bool f(bool a, bool b) { return !(BOTH(a, b)); }"])

    def test_places_count_characters_and_not_bytes(self):
        self.assertEqual(changed("// \u00e4\u00f6\u00fc\nint a = 7;\n"), ["int a = 6;", "int a = 8;"])

    def test_a_source_that_does_not_compile_is_refused(self):
        with self.assertRaises(RuntimeError):
            changed("int a = ;\n")


if __name__ == "__main__":
    unittest.main()
