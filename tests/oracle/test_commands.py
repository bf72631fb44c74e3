"""The texts of commands 1, 3, 4, 5 and 6, computed by hand."""

import calendar as utc
import json
import unittest

from commands import answers
from ledger import DataFolder, Ledger
from local_calendar import LocalCalendar

UTC = LocalCalendar("UTC")


def texts(now, entries=(), days=(), calendar=UTC):
    """`now` and each entry's date as fields; the entry's value follows its date."""
    ledger, folder = Ledger(), DataFolder()
    for date, value in entries:
        key = calendar.parse(*date)
        ledger.put(calendar.instant(key), key, value)
    folder.show_truth({"days": list(days)})
    return answers(calendar, folder, ledger, utc.timegm((*now, 0, 0, 0)))


def labels(text, member):
    return [row[member] for row in json.loads(text)["Value"]]


class Figures(unittest.TestCase):
    def test_an_empty_ledger_gives_zero(self):
        result = texts((2026, 5, 13, 12, 0, 0))
        self.assertEqual((result[1], result[3]), ("0.000000", "0.000000"))

    def test_the_average_divides_by_seven_and_reaches_back_six_days(self):
        result = texts((2026, 5, 13, 12, 0, 0), [((2026, 5, 13), 7.0), ((2026, 5, 6), 70.0)])
        self.assertEqual((result[1], result[3]), ("1.000000", "0.003650"))

    def test_trees(self):
        entries = [((2026, 5, day), 300.0) for day in range(7, 14)]
        self.assertEqual(texts((2026, 5, 13, 12, 0, 0), entries)[3], "1.095000")


class Hours(unittest.TestCase):
    def test_labels_of_the_afternoon_and_of_the_night(self):
        afternoon = labels(texts((2026, 5, 13, 14, 30, 0))[4], "Time")
        self.assertEqual((afternoon[0], afternoon[-1]), ("2:00", "13:00"))
        night = labels(texts((2026, 5, 13, 5, 10, 0))[4], "Time")
        self.assertEqual(night[6:8], ["23:00", "0:00"])

    def test_text_of_twelve_zeros(self):
        rows = ",".join(f'{{"Time":"{hour}:00","Value":0.0}}' for hour in range(12, 24))
        expected = f'{{"Range":[0.0,0.0],"Value":[{rows}]}}'
        self.assertEqual(texts((2026, 5, 13, 0, 10, 0))[4], expected)

    def test_yesterdays_hours_precede_todays(self):
        def day(date, hour):
            return {
                "date": date,
                "samples": [
                    {"TelemetryType": "PCM_CHARGER", "SampleTime": f"{date}T{hour}:{m}:00",
                     "Power": "0.88"}
                    for m in ("10", "11", "21")
                ],
            }  # fmt: skip

        days = [day("2026-05-12", "22"), day("2026-05-13", "03")]
        rows = json.loads(texts((2026, 5, 13, 5, 10, 0), days=days)[4])["Value"]
        booked = [row["Time"] for row in rows if row["Value"] > 0]
        self.assertEqual(booked, ["22:00", "3:00"])


class Days(unittest.TestCase):
    def test_a_wednesday_begins_with_wednesday_and_ends_with_yesterday(self):
        text = texts((2026, 5, 13, 12, 0, 0), [((2026, 5, 12), 2.5), ((2026, 5, 13), 9.0)])[5]
        self.assertEqual(labels(text, "Day"), "Wed Thu Fri Sat Sun Mon Tue".split())
        self.assertEqual(json.loads(text)["Range"], [0.0, 2.5])


class Months(unittest.TestCase):
    def test_the_year_changes_and_a_year_earlier_does_not_count(self):
        entries = [((2025, 12, 5), 1.0), ((2024, 12, 5), 8.0), ((2026, 2, 1), 0.5)]
        text = texts((2026, 2, 10, 12, 0, 0), entries)[6]
        self.assertEqual(labels(text, "Month"), "Sep Oct Nov Dec Jan Feb".split())
        values = [row["Value"] for row in json.loads(text)["Value"]]
        self.assertEqual(values, [0.0, 0.0, 0.0, 1.0, 0.0, 0.5])

    def test_short_months_run_over_on_the_31st(self):
        text = texts((2026, 3, 31, 12, 0, 0))[6]
        self.assertEqual(labels(text, "Month"), "Oct Dec Dec Jan Mar Mar".split())

    def test_the_first_of_a_summer_month_mislabels_winter_months(self):
        berlin = LocalCalendar("Europe/Berlin")
        text = texts((2026, 5, 1, 12, 0, 0), calendar=berlin)[6]
        self.assertEqual(labels(text, "Month"), "Nov Dec Jan Feb Apr May".split())


if __name__ == "__main__":
    unittest.main()
