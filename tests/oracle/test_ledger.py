"""Energies and passes, computed by hand. The zone is UTC unless a test says otherwise."""

import calendar as utc
import json
import unittest

from day_energy import Sample, energy_by_hour, energy_of_day
from float32 import single
from ledger import DataFolder, Ledger, run_pass, walk
from local_calendar import LocalCalendar, LocalTime

UTC = LocalCalendar("UTC")
DAY = LocalTime(2026, 5, 13)
DAY_AFTER = LocalTime(2026, 5, 14)
SIX = single(6.0 / single(0.88))  # ten minutes at 36 watts


def noon(year, month, day):
    return utc.timegm((year, month, day, 12, 0, 0))


def element(time, power="36", kind="PCM_SENSOR"):
    return {"TelemetryType": kind, "SampleTime": time, "Power": power}


def quarter_hours(date, hour="10", power="36"):
    return [element(f"{date}T{hour}:{minute}:00", power) for minute in ("00", "05", "10", "15")]


def folder_of(*days):
    """`days` are pairs of a date and the elements of that day."""
    folder = DataFolder()
    folder.show_truth({"days": [{"date": date, "samples": samples} for date, samples in days]})
    return folder


def energy(*days, day=DAY):
    return energy_of_day(UTC, folder_of(*days), day)


class DayEnergy(unittest.TestCase):
    def test_the_first_interval_is_not_booked(self):
        self.assertEqual(energy(("2026-05-13", quarter_hours("2026-05-13"))), SIX)

    def test_gaps_beyond_600_seconds_and_equal_times_book_nothing(self):
        def day(last):
            first = element("2026-05-13T09:00:00")
            times = [element("2026-05-13T10:00:00"), element(last), element("2026-05-13T23:00:00")]
            return "2026-05-13", [first, *times]

        self.assertEqual(energy(day("2026-05-13T10:10:00")), SIX)
        self.assertEqual(energy(day("2026-05-13T10:10:01")), 0.0)
        self.assertEqual(energy(day("2026-05-13T10:00:00")), 0.0)

    def test_a_sample_of_another_type_ends_an_interval_and_starts_none(self):
        samples = quarter_hours("2026-05-13")
        samples[2] = element("2026-05-13T10:10:00", "900", "PCM_SCREEN")
        self.assertEqual(energy(("2026-05-13", samples)), single(3.0 / single(0.88)))

    def test_a_gap_across_midnight_counts_on_both_days_with_different_powers(self):
        late = element("2026-05-13T23:58:00", "30")
        early = element("2026-05-14T00:02:00", "60")
        days = ("2026-05-13", [element("2026-05-13T01:00:00"), late]), ("2026-05-14", [early])
        self.assertEqual(energy(*days, day=DAY), single(4.0 / single(0.88)))
        self.assertEqual(energy(*days, day=DAY_AFTER), single(2.0 / single(0.88)))

    def test_a_single_sample_links_backwards_only(self):
        days = [
            ("2026-05-12", [element("2026-05-12T23:55:00", "12")]),
            ("2026-05-13", [element("2026-05-13T00:00:00", "36")]),
            ("2026-05-14", [element("2026-05-14T00:00:00", "36")]),
        ]
        self.assertEqual(energy(*days), single(1.0 / single(0.88)))


class HourEnergy(unittest.TestCase):
    def hours(self, samples):
        return energy_by_hour(UTC, folder_of(("2026-05-13", samples)), DAY)

    def test_two_elements_book_nothing(self):
        self.assertEqual(self.hours(quarter_hours("2026-05-13")[:2]), {})

    def test_three_elements_book_the_second_interval(self):
        self.assertEqual(
            self.hours(quarter_hours("2026-05-13")[:3]), {10: single(3.0 / single(0.88))}
        )

    def test_an_hour_belongs_to_the_start_of_the_interval_that_leaves_it(self):
        times = ["10:50:00", "10:55:00", "11:05:00", "11:10:00"]
        samples = [element(f"2026-05-13T{time}") for time in times]
        three = single(3.0 / single(0.88))
        self.assertEqual(self.hours(samples), {10: SIX, 11: three})

    def test_the_old_value_of_a_repeated_hour_stays(self):
        times = ["10:00:00", "10:05:00", "10:10:00", "11:00:00", "10:20:00", "10:30:00"]
        samples = [element(f"2026-05-13T{time}") for time in times]
        self.assertEqual(self.hours(samples)[10], single(3.0 / single(0.88)))


class Passes(unittest.TestCase):
    def test_a_pass_books_deletes_old_files_and_keeps_those_of_today_and_yesterday(self):
        dates = ["2026-05-10", "2026-05-12", "2026-05-13"]
        folder = folder_of(*[(date, quarter_hours(date)) for date in dates])
        run_pass(UTC, folder, Ledger(), noon(2026, 5, 13))
        self.assertEqual(folder.dates(), ["2026-05-12", "2026-05-13"])
        rows = {row["Key"]: row["Value"] for row in json.loads(folder.ledger_text)}
        self.assertEqual(len(rows), 211)
        self.assertEqual({key for key, value in rows.items() if value}, set(dates))

    def test_a_value_that_is_not_zero_is_final(self):
        folder, ledger = folder_of(("2026-05-13", quarter_hours("2026-05-13"))), Ledger()
        run_pass(UTC, folder, ledger, noon(2026, 5, 13))
        more = quarter_hours("2026-05-13") + quarter_hours("2026-05-13", hour="13")
        folder.show_truth({"days": [{"date": "2026-05-13", "samples": more}]})
        run_pass(UTC, folder, ledger, noon(2026, 5, 14))
        self.assertEqual(ledger.get(UTC.instant(DAY)), SIX)

    def test_a_deleted_file_does_not_come_back_with_the_collectors_truth(self):
        folder = folder_of(("2026-05-10", quarter_hours("2026-05-10")))
        run_pass(UTC, folder, Ledger(), noon(2026, 5, 13))
        truth = {"days": [{"date": "2026-05-10", "samples": quarter_hours("2026-05-10")}]}
        folder.show_truth(truth)
        self.assertEqual(folder.dates(), [])

    def test_a_discarded_day_is_missing_for_the_day_before_it_within_the_pass(self):
        def day(date):
            times = ("00:02:00", "12:00:00", "12:05:00", "23:58:00")
            return date, [element(f"{date}T{time}") for time in times]

        folder, ledger = folder_of(day("2026-05-09"), day("2026-05-10")), Ledger()
        run_pass(UTC, folder, ledger, noon(2026, 5, 13))
        five_minutes, link = 3.0, single(2.4)
        self.assertEqual(
            ledger.get(UTC.instant(LocalTime(2026, 5, 10))),
            single(single(link + five_minutes) / single(0.88)),
        )
        self.assertEqual(
            ledger.get(UTC.instant(LocalTime(2026, 5, 9))), single(five_minutes / single(0.88))
        )
        self.assertEqual(folder.dates(), [])
        self.assertEqual(
            folder.dates_read, ["2026-05-10", "2026-05-09", "2026-05-09"]
        )

    def test_an_ended_pass_that_deleted_one_file_leaves_the_others(self):
        days = [(date, quarter_hours(date)) for date in ("2026-05-09", "2026-05-10")]
        folder, ledger = folder_of(*days), Ledger()
        walk(UTC, folder, ledger, noon(2026, 5, 13))
        self.assertEqual(folder.discarded(), ["2026-05-10", "2026-05-09"])
        folder.end_pass(["2026-05-10"])
        self.assertEqual(folder.dates(), ["2026-05-09"])
        self.assertEqual(len(folder.samples(LocalTime(2026, 5, 9))), 4)

    def test_a_truncated_ledger_file_is_not_read(self):
        folder, ledger = DataFolder(), Ledger()
        folder.ledger_text = '[{"Key":"2026-05-10","Value":12.5},{"Key":"2026-05'
        run_pass(UTC, folder, ledger, noon(2026, 5, 13))
        self.assertEqual(ledger.get(UTC.instant(LocalTime(2026, 5, 10))), 0.0)

    def test_entries_before_the_oldest_day_stay_until_the_process_restarts(self):
        folder, ledger = DataFolder(), Ledger()
        run_pass(UTC, folder, ledger, noon(2026, 5, 13))
        run_pass(UTC, folder, ledger, noon(2026, 5, 14))
        self.assertEqual(len(json.loads(folder.ledger_text)), 212)
        fresh = Ledger()
        run_pass(UTC, folder, fresh, noon(2026, 5, 15))
        self.assertEqual(len(json.loads(folder.ledger_text)), 211)

    def test_a_day_of_25_hours_appears_twice_after_the_second_pass(self):
        berlin, folder, ledger = LocalCalendar("Europe/Berlin"), DataFolder(), Ledger()
        run_pass(berlin, folder, ledger, noon(2025, 10, 26))
        run_pass(berlin, folder, ledger, noon(2025, 10, 27))
        keys = [row["Key"] for row in json.loads(folder.ledger_text)]
        self.assertEqual(keys.count("2025-10-26"), 2)

    def test_element_values(self):
        self.assertEqual(Sample.from_truth(element("2026-05-13T10:00:00", "0.1")).power, single(0.1))
        self.assertEqual(Sample.from_truth(element("2026-05-13T10:00:00", None)).power, 0.0)
        self.assertEqual(Sample.from_truth(element("2026-05-13T10:00:00", "1e39")).power, 0.0)


if __name__ == "__main__":
    unittest.main()
