#!/usr/bin/python3
"""tools/mutate chooses changes evenly, leaves the listed ones out, and fails below its goal or for a stale list.

mutate_test.py MUTATE"""

import contextlib
import importlib.machinery
import importlib.util
import io
import pathlib
import sys
import unittest

sys.dont_write_bytecode = True
TOOL = sys.argv.pop()
sys.path.insert(0, str(pathlib.Path(TOOL).parent))
loader = importlib.machinery.SourceFileLoader("mutate", TOOL)
mutate = importlib.util.module_from_spec(importlib.util.spec_from_loader("mutate", loader))
sys.modules["mutate"] = mutate
loader.exec_module(mutate)
from source_changes import Change  # noqa: E402

SHORT, LONG, OTHER = "src/ledger/short.cpp", "src/ledger/long.cpp", "src/reports/other.cpp"
TEXTS = {SHORT: "a\n" * 3, LONG: "a\n" * 30, OTHER: "a\n" * 3}


def changes_of(file):
    """One change for each line: "a" becomes "b"."""
    return [Change(file, place, place + 1, "b") for place in range(0, len(TEXTS[file]), 2)]


def choice(places, seed=1, equivalent=()):
    return mutate.Choice(places, TEXTS, seed, changes_of, dict.fromkeys(equivalent, "reason"))


class Choosing(unittest.TestCase):
    def test_takes_each_change_once(self):
        taken = list(choice(dict.fromkeys(TEXTS)))
        self.assertEqual(sorted(taken), sorted(change for file in TEXTS for change in changes_of(file)))

    def test_takes_the_folders_in_turns(self):
        folders = [mutate.folder_of(change.file) for change in choice(dict.fromkeys(TEXTS))]
        self.assertEqual(folders[:6], ["src/ledger", "src/reports"] * 3)

    def test_takes_the_same_changes_for_the_same_seed_and_others_for_another(self):
        first, again, other = (list(choice(dict.fromkeys(TEXTS), seed)) for seed in (1, 1, 2))
        self.assertEqual(first, again)
        self.assertNotEqual(first, other)

    def test_takes_only_the_lines_that_are_named(self):
        self.assertEqual(list(choice({SHORT: {2}})), [Change(SHORT, 2, 3, "b")])

    def test_leaves_out_what_is_listed_as_equivalent(self):
        chosen = choice({SHORT: None, OTHER: None}, equivalent=[(SHORT, "a", "b")])
        self.assertEqual({change.file for change in chosen}, {OTHER})
        self.assertEqual((chosen.left_out["src/ledger"], chosen.unmatched), (3, set()))

    def test_reports_an_entry_that_matches_no_change(self):
        stale = (SHORT, "a", "c")
        chosen = choice({SHORT: None, OTHER: None}, equivalent=[stale, (LONG, "x", "y")])
        list(chosen)
        self.assertEqual(chosen.unmatched, {stale})


class Listing(unittest.TestCase):
    def test_reads_file_lines_and_a_reason_of_several_lines(self):
        text = "# Comment.\n\nsrc/a.cpp\n- a <  b\n+ a <= b\n= They are\n= never equal.\n\nsrc/b.cpp\n- x\n+ y\n= Why.\n"
        self.assertEqual(mutate.read_equivalent(text), {("src/a.cpp", "a <  b", "a <= b"): "They are never equal.",
                                                        ("src/b.cpp", "x", "y"): "Why."})

    def test_refuses_an_entry_without_a_reason(self):
        with self.assertRaises(SystemExit):
            mutate.read_equivalent("src/a.cpp\n- a\n+ b\n")

    def test_reads_a_list_without_entries(self):
        self.assertEqual(mutate.read_equivalent("# Comment.\n"), {})


class Verdict(unittest.TestCase):
    def printed(self, noticed, not_noticed, unmatched=(), at_least=90.0):
        """The exit status and the output for so many changes."""
        chosen = choice({LONG: None})
        chosen.unmatched |= set(unmatched)
        results = {change: "" if place < not_noticed else "core.tests"
                   for place, change in enumerate(changes_of(LONG)[:noticed + not_noticed])}
        with contextlib.redirect_stdout(io.StringIO()) as output:
            status = mutate.print_results(results, chosen, TEXTS, at_least)
        return status, output.getvalue()

    def test_is_good_if_nine_of_ten_changes_are_noticed(self):
        status, output = self.printed(9, 1)
        self.assertEqual(status, 0)
        self.assertIn("| src/ledger | 10 | 9 | 1 | 0 |", output)
        self.assertIn(f"{LONG}:1\n- a\n+ b\n", output)

    def test_is_bad_if_fewer_are_noticed(self):
        self.assertEqual(self.printed(17, 2)[0], 1)

    def test_is_judged_by_another_share_if_one_is_given(self):
        self.assertEqual([self.printed(16, 4, at_least=share)[0] for share in (80.0, 81.0)], [0, 1])

    def test_is_bad_if_no_change_was_tried(self):
        self.assertEqual(self.printed(0, 0)[0], 1)

    def test_is_bad_if_an_entry_matches_no_change(self):
        status, output = self.printed(10, 0, [(LONG, "a", "c")])
        self.assertEqual(status, 1)
        self.assertIn(f"{LONG} has no such change any more\n- a\n+ c\n", output)


if __name__ == "__main__":
    unittest.main()
