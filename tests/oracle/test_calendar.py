"""Instants computed by hand for Berlin, where standard time is UTC+1 and summer time UTC+2."""

import calendar as utc
import unittest

from local_calendar import LocalCalendar, LocalTime, day_name

BERLIN = LocalCalendar("Europe/Berlin")
NEW_YORK = LocalCalendar("America/New_York")


def at(*fields):
    """Seconds since 1970 of a time in UTC."""
    return utc.timegm((*fields, 0, 0, 0, 0)[:6] + (0, 0, 0))


class Instants(unittest.TestCase):
    def test_isdst_zero_means_standard_time_in_summer_too(self):
        self.assertEqual(BERLIN.instant(LocalTime(2023, 7, 1, 12)), at(2023, 7, 1, 11))
        self.assertEqual(BERLIN.instant(LocalTime(2023, 7, 1, 12, isdst=1)), at(2023, 7, 1, 10))

    def test_isdst_one_in_winter_is_an_hour_earlier(self):
        self.assertEqual(BERLIN.instant(LocalTime(2023, 1, 15, 12, isdst=1)), at(2023, 1, 15, 10))

    def test_the_repeated_hour_is_distinguished_by_isdst(self):
        self.assertEqual(BERLIN.instant(LocalTime(2023, 10, 29, 2, 30)), at(2023, 10, 29, 1, 30))
        self.assertEqual(
            BERLIN.instant(LocalTime(2023, 10, 29, 2, 30, isdst=1)), at(2023, 10, 29, 0, 30)
        )

    def test_fields_run_over(self):
        self.assertEqual(BERLIN.instant(LocalTime(2026, 2, 31)), at(2026, 3, 2, 23))
        self.assertEqual(NEW_YORK.instant(LocalTime(2025, 12, 32)), at(2026, 1, 1, 5))


class Readings(unittest.TestCase):
    def test_a_summer_time_keeps_its_hour_and_gets_summer_isdst(self):
        time, instant = BERLIN.parse_sample_time("2026-07-01T14:30:05")
        self.assertEqual(time, LocalTime(2026, 7, 1, 14, 30, 5, isdst=1))
        self.assertEqual(instant, at(2026, 7, 1, 12, 30, 5))

    def test_the_last_hour_of_a_summer_day_is_read_one_day_later(self):
        time, _ = BERLIN.parse_sample_time("2026-07-01T23:30:00")
        self.assertEqual(time, LocalTime(2026, 7, 2, 23, 30, isdst=1))
        time, _ = BERLIN.parse_sample_time("2026-01-01T23:30:00")
        self.assertEqual(time, LocalTime(2026, 1, 1, 23, 30))

    def test_the_key_of_today_on_a_day_of_change_differs_from_the_key_read_from_the_file(self):
        afternoon = at(2025, 10, 26, 13)
        self.assertEqual(BERLIN.instant(BERLIN.midnight(afternoon)), at(2025, 10, 25, 23))
        self.assertEqual(BERLIN.instant(BERLIN.parse_date("2025-10-26")), at(2025, 10, 25, 22))


class Steps(unittest.TestCase):
    def test_a_walk_backwards_skips_the_day_on_which_clocks_go_forward(self):
        day = BERLIN.shift(BERLIN.midnight(at(2026, 3, 30, 12)), -1)
        self.assertEqual(day.date_text(), "2026-03-28")

    def test_a_walk_forwards_repeats_a_day_of_25_hours(self):
        start = BERLIN.midnight(at(2025, 10, 25, 12))
        first = BERLIN.shift(start, 1)
        second = BERLIN.shift(LocalTime(2025, 10, 26, isdst=1), 1)
        self.assertEqual((first.date_text(), second.date_text()), ("2025-10-26", "2025-10-26"))

    def test_names_of_days(self):
        self.assertEqual(day_name(LocalTime(2026, 3, 29)), "Sun")
        self.assertEqual(day_name(LocalTime(2024, 2, 29)), "Thu")


if __name__ == "__main__":
    unittest.main()
