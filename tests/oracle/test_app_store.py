"""The store, computed by hand. The zone is UTC and the time noon unless a test says otherwise."""

import json
import unittest

from app_cases import APPS, NOTES, NOTES_PRO, NOW, NOW_TEXT, OAK, PREFIX, STAMPS, UTC, instant
from app_store import AppStore
from local_calendar import LocalCalendar
from time_stamps import TimeStamps


def row(app_id=OAK, time=NOW_TEXT, energy="5"):
    app = "" if app_id is None else f' AppId="{app_id}"'
    total = "" if energy is None else f'<TotalEnergyConsumption Value="{energy}"/>'
    return f'<a{app} TimeStamp="{time}">{total}</a>'


def report(*rows):
    return ("<r>" + "".join(rows) + "</r>").encode("utf-8")


def store_after(*reports, text=None):
    """One pass for each report, all at the same moment."""
    store = AppStore(UTC, STAMPS)
    store.text = text
    for one in reports:
        store.run_pass(APPS, NOW, one, 0)
    return store


def energies(store):
    return [element["TotalEnergy"] for element in json.loads(store.text)]


def names(*app_ids):
    store = store_after(report(*map(row, app_ids)))
    return [element["DisplayName"] for element in json.loads(store.text)]


class Text(unittest.TestCase):
    def test_members_order_and_escapes(self):
        expected = (
            '[{"Name":"\\\\Device\\\\HarddiskVolume1\\\\Program Files\\\\Oak\\\\oak.exe",'
            '"DisplayName":"Oak","TimeStamp":"2026-05-13:12:00:00","TotalEnergy":5}]'
        )
        self.assertEqual(store_after(report(row())).text, expected)

    def test_no_rows_are_an_empty_array(self):
        self.assertEqual(store_after(None).text, "[]")
        self.assertEqual(store_after(report()).text, "[]")


class Rows(unittest.TestCase):
    def test_one_identity_adds_up(self):
        self.assertEqual(energies(store_after(report(row(), row(energy="3")))), [8])

    def test_the_first_row_of_an_identity_takes_the_energy_before_it_and_a_later_one_adds_none(self):
        first = row(NOTES, energy="7")
        without = row(energy=None)
        self.assertEqual(energies(store_after(report(first, without))), [7, 7])
        self.assertEqual(energies(store_after(report(without))), [0])
        self.assertEqual(energies(store_after(report(row(), without))), [5])

    def test_a_merged_row_sets_the_energy_that_is_carried_and_a_skipped_one_does_not(self):
        rows = row(), row(energy="9"), row("Unknown", energy="100"), row(NOTES, energy=None)
        self.assertEqual(energies(store_after(report(*rows))), [14, 9])

    def test_unknown_and_system_interrupts_are_left_out_exactly(self):
        kept = [None, "unknown", "Unknown ", "System Interrupts!"]
        self.assertEqual(names("Unknown", "System Interrupts", *kept), [""] * 4)

    def test_a_row_30_days_old_stays_and_one_a_second_older_does_not(self):
        rows = row(time="2026-04-13:12:00:00"), row(time="2026-04-13:11:59:59", energy="1")
        self.assertEqual(energies(store_after(report(*rows))), [5])

    def test_an_unreadable_time_never_counts(self):
        self.assertEqual(store_after(report(row(time="yesterday"), row(time=""))).text, "[]")


class Names(unittest.TestCase):
    def test_programs_are_named_by_their_own_description(self):
        sync, ash = (PREFIX + "\\Program Files\\" + end for end in ("OAK\\Sync.exe", "Ash\\ash.exe"))
        self.assertEqual(names(OAK, sync, ash), ["Oak", "Oak", ""])

    def test_the_last_matching_package_wins(self):
        self.assertEqual(names(NOTES, NOTES_PRO), ["Fir Notes", "Fir Notes Pro"])

    def test_a_package_outside_the_catalogue_has_no_name(self):
        self.assertEqual(names("Yew.None_1", "Bay.Runtime_1", "Other", "fir.notes_1"), [""] * 4)

    def test_a_program_of_one_user_has_a_name_and_a_removed_one_has_none(self):
        ends = "\\users\\wren\\ivy.exe", "\\Program Files\\Gone\\gone.exe"
        self.assertEqual(names(*(PREFIX + end for end in ends)), ["Ivy", ""])

    def test_descriptions_are_in_code_page_1252_and_packages_names_in_low_bytes(self):
        ends = "Reed\\reed.exe", "Rue\\rue.exe"
        programs = [PREFIX + "\\Program Files\\" + end for end in ends]
        self.assertEqual(names(*programs, "Pea.Books_1"), ["Reed ??", "Ru\xe9", "Pea \x1a="])

    def test_a_path_outside_ascii_finds_no_program(self):
        self.assertEqual(names(PREFIX + "\\Program Files\\\u00dclm\\ulm.exe"), [""])

    def test_services_and_windows_itself_have_no_name(self):
        service = PREFIX + "\\windows\\system32\\svchost.exe [Tide]"
        self.assertEqual(names(service, "System"), ["", ""])

    def test_two_versions_of_a_package_have_the_last_ones_name(self):
        self.assertEqual(names("Tea.Leaf_1.0_x64__s", "Tea.Leaf_2.0_x64__s"), ["New Tea"] * 2)

    def test_other_drives_and_mangled_paths_have_no_name(self):
        self.assertEqual(names("\\Device\\HarddiskVolume9\\a.exe", f"\\Device\\Mup{OAK}"), [""] * 2)


class Passes(unittest.TestCase):
    def test_a_fresh_row_wins_and_stored_ones_follow_in_their_order(self):
        first = report(row(time="2026-05-12:10:00:00", energy="1"), row(energy="2"), row(NOTES))
        again = report(row(energy="20"))
        self.assertEqual(energies(store_after(first, again)), [20, 1, 5])

    def test_stored_energy_is_cut_to_its_low_32_bits(self):
        most = row(energy="2147483647")
        first = store_after(report(most, most, most))
        self.assertEqual(energies(first), [6442450941])
        self.assertEqual(energies(store_after(None, text=first.text)), [2147483645])
        text = '[{"Name":"x","DisplayName":"","TimeStamp":"%s","TotalEnergy":2147483648}]' % NOW_TEXT
        self.assertEqual(energies(store_after(None, text=text)), [-2147483648])

    def test_a_stored_row_ages_out_with_an_empty_report(self):
        store = AppStore(UTC, STAMPS)
        store.run_pass(APPS, NOW, report(row()), 0)
        store.run_pass(APPS, NOW + 30 * 86400, None, 0)
        self.assertEqual(energies(store), [5])
        store.run_pass(APPS, NOW + 30 * 86400 + 1, None, 0)
        self.assertEqual(store.text, "[]")

    def test_a_tool_that_failed_changes_nothing(self):
        store = store_after(report(row()))
        before = store.text
        store.run_pass(APPS, NOW + 90 * 86400, None, 5)
        self.assertEqual(store.text, before)

    def test_a_broken_report_prunes_the_store_and_is_removed(self):
        store = store_after(report(row()), b"<r><a")
        self.assertEqual((energies(store), store.report), ([5], None))

    def test_the_last_hour_of_a_summer_day_moves_on_with_every_pass(self):
        berlin = LocalCalendar("Europe/Berlin")
        store = AppStore(berlin, TimeStamps(berlin))
        for day, one in ((2, report(row(time="2026-07-01:23:10:00"))), (3, None), (4, None)):
            store.run_pass(APPS, instant(2026, 7, day, 9), one, 0)
        self.assertEqual(json.loads(store.text)[0]["TimeStamp"], "2026-07-04:23:10:00")


if __name__ == "__main__":
    unittest.main()
