"""The differences that a comparison with the service's files must find."""

import tempfile
import unittest
from pathlib import Path

from app_answers import NO_ANSWER, AppEnergy
from app_cases import NOW, UTC
from check_scenario import Difference, PassFiles, compare_icons, expect, icon_folder
from reports_seen import ReportsSeen
from scenarios import ZONES, Tool, scenarios_of

MEADOW = "\\Device\\HarddiskVolume1\\Program Files\\Meadow\\meadow.exe"
REPORT = (
    f'<r><a AppId="{MEADOW}" TimeStamp="2026-05-13:12:00:00">'
    '<TotalEnergyConsumption Value="5"/></a></r>'
).encode("utf-8")


class FakeNotebook:
    def __init__(self, icons, files):
        self._icons = icons
        self.files = files

    def icons(self):
        return self._icons

    def read_file(self, path):
        return self.files[path]


class Files(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.path = Path(folder.name) / "pass1-store.json"
        self.files = PassFiles(Path(folder.name), 1)

    def test_equal_bytes_are_counted(self):
        self.path.write_bytes(b'["\xc3\xbc"]')
        self.files.compare("store.json", '["\xc3\xbc"]')
        self.assertEqual(self.files.agreed, 1)

    def test_one_other_byte_is_a_difference_and_is_reported(self):
        self.path.write_bytes(b"[1,2]\n")
        for expected in ("[1,2]", "[1,3]\n", "[1,2]\r\n", ""):
            with self.assertRaises(Difference):
                self.files.compare("store.json", expected)
        with self.assertRaisesRegex(Difference, "pass1-store.json differs at character 3"):
            self.files.compare("store.json", "[1,3]\n")

    def test_a_file_that_violates_its_schema_is_a_difference(self):
        self.path.write_bytes(b'[{"Key":"2026-03-10","Value":0.5}]')
        self.files.validate("store.json", "power-consumption")
        self.path.write_bytes(b'[{"Key":"2026-03-10","Value":"0.5"}]')
        with self.assertRaisesRegex(Difference, "pass1-store.json violates .* power-consumption"):
            self.files.validate("store.json", "power-consumption")

    def test_bytes_that_are_not_utf8_do_not_violate_a_schema(self):
        self.path.write_bytes(
            b'[{"Name":"\xff","DisplayName":"\xfc","TimeStamp":"2026-11-14:02:10:46","TotalEnergy":1}]'
        )
        self.files.validate("store.json", "powerlog")

    def test_a_missing_file_is_a_difference(self):
        self.assertIsNone(self.files.read_bytes("report.xml"))
        with self.assertRaisesRegex(Difference, "pass1-store.json is missing"):
            self.files.compare("store.json", "[]")

    def test_a_missing_or_additional_icon_is_a_difference(self):
        with self.assertRaises(Difference):
            expect("icons", ["a.png"], [])
        with self.assertRaises(Difference):
            expect("icons", ["a.png"], ["a.png", "b.png"])

    def test_an_icon_that_is_a_copy_of_another_logo_is_a_difference(self):
        notebook = FakeNotebook({"a.png": b"\x89PNG\r\n\x1a\n1"}, {"C:\\one": b"\x89PNG\r\n\x1a\n1"})
        compare_icons({"a.png": "C:\\one"}, notebook)
        compare_icons({"a.png": None}, notebook)
        notebook.files["C:\\one"] = b"\x89PNG\r\n\x1a\n2"
        with self.assertRaisesRegex(Difference, "a.png is not a copy of C:"):
            compare_icons({"a.png": "C:\\one"}, notebook)


class Energy(unittest.TestCase):
    def setUp(self):
        self.energy = AppEnergy(UTC, icon_folder())
        self.energy.begin_process("\\Device\\HarddiskVolume1")

    def test_without_a_store_there_is_no_answer_and_no_file(self):
        self.energy.run_pass(NOW, None, 1)
        self.assertEqual(self.energy.answer(NOW, 30, "[]"), NO_ANSWER)
        self.assertEqual(self.energy.files(), [])

    def test_the_notebooks_own_list_names_and_ranks(self):
        self.energy.run_pass(NOW, REPORT, 0)
        icon = "C:\\\\users\\\\Public\\\\Wattleaf oracle\\\\Meadow Office.png"
        expected = f'[{{"Name":"Meadow Office","Icon":"{icon}","Value":100.0}}]'
        self.assertEqual(self.energy.answer(NOW, 30, expected), expected)
        self.assertEqual(self.energy.icons(), {"Meadow Office.png": None})
        self.assertEqual(self.energy.files(), ["Powerlog.json"])

    def test_a_report_stays_until_a_pass_converts_it(self):
        self.energy.run_pass(NOW, REPORT, 5)
        self.assertEqual(self.energy.files(), ["Powerlog.xml"])
        self.energy.run_pass(NOW, None, 0)
        self.assertEqual(self.energy.files(), ["Powerlog.json"])


class Coverage(unittest.TestCase):
    def test_a_case_that_was_not_shown_is_missing(self):
        seen = ReportsSeen()
        everything = len(seen.missing())
        seen.add_pass(Tool(8, "0", "report"), REPORT, None)
        self.assertNotIn("UTF-8", seen.missing())
        self.assertIn("UTF-16", seen.missing())
        seen.add_answer(30, "[]")
        self.assertNotIn("an empty ranking", seen.missing())
        self.assertLess(len(seen.missing()), everything)
        self.assertIn("a program elsewhere", seen.missing())

    def test_the_scenarios_have_at_least_20_seeds_and_three_consecutive_days_each(self):
        scenarios = [scenario for zone in ZONES for scenario in scenarios_of(zone)]
        self.assertGreaterEqual(len({scenario.seed for scenario in scenarios}), 20)
        for scenario in scenarios:
            passes = [one for process in scenario.processes for one in process.passes]
            self.assertEqual(len(passes), 3)
            for one in passes:
                days_ranked = {days for days, now in one.rankings if now == one.now}
                self.assertEqual(days_ranked, {0, 1, 7, 30, 365})

    def test_both_forms_of_a_logos_address_occur_in_every_zone(self):
        for zone in ZONES:
            addresses = {scenario.address for scenario in scenarios_of(zone)}
            self.assertEqual(addresses, {"uri", "plain"})

    def test_the_argument_of_a_pass_has_three_lists(self):
        one = scenarios_of("UTC")[0].processes[0].passes[0]
        instants, rankings, settings = one.argument().split(";")
        self.assertEqual(instants.split(",")[0], str(one.now))
        self.assertEqual(rankings.split(",")[1], f"1@{one.now}")
        self.assertEqual(settings, "DAYS=33,STATUS=0,OUTPUT=report")


if __name__ == "__main__":
    unittest.main()
