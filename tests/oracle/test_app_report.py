"""Reports, time stamps and strings, compared with texts written by hand."""

import unittest

from app_report import ReportRow, leading_integer, rows_of_report
from local_calendar import LocalCalendar, LocalTime
from time_stamps import TimeStamps, time_stamp
from written_texts import quoted

UTC = TimeStamps(LocalCalendar("UTC"))
BERLIN = TimeStamps(LocalCalendar("Europe/Berlin"))


def rows(body, encoding="utf-8", start=""):
    return rows_of_report((start + f"<r>{body}</r>").encode(encoding))


class Rows(unittest.TestCase):
    def test_every_child_of_the_root_is_a_row_with_any_name(self):
        self.assertEqual(
            rows('<a AppId="x" TimeStamp="t"/>text<b AppId="y"/>'),
            [ReportRow("x", "t", None), ReportRow("y", "", None)],
        )

    def test_the_first_energy_child_counts_and_deeper_ones_do_not(self):
        energy = '<TotalEnergyConsumption Value="%d"/>'
        body = f"<a><o>{energy % 9}</o>{energy % 5}{energy % 6}</a>"
        self.assertEqual(rows(body), [ReportRow("", "", 5)])

    def test_an_energy_element_without_a_value_gives_zero(self):
        self.assertEqual(rows("<a><TotalEnergyConsumption/></a>"), [ReportRow("", "", 0)])

    def test_both_encodings_give_the_bytes_of_utf_8(self):
        body = '<a AppId="\u00fcb\U0001f989"/>'
        expected = [ReportRow("\xc3\xbcb\xf0\x9f\xa6\x89", "", None)]
        self.assertEqual(rows(body), expected)
        first_line = '<?xml version="1.0" encoding="UTF-16"?>'
        self.assertEqual(rows(body, "utf-16", first_line), expected)

    def test_entities_are_resolved(self):
        self.assertEqual(rows('<a AppId="&amp;&lt;&quot;"/>'), [ReportRow('&<"', "", None)])

    def test_a_report_that_is_cut_off_has_no_rows(self):
        self.assertEqual(rows_of_report(b'<r><a AppId="x"/><a Ap'), [])
        self.assertEqual(rows_of_report(b""), [])

    def test_integers_end_at_the_first_other_character_and_stay_in_32_bits(self):
        texts = {"12": 12, " -7x": -7, "+3": 3, "x1": 0, "": 0, "1.9": 1, "99999999999": 2147483647}
        for text, number in texts.items():
            self.assertEqual(leading_integer(text), number, text)


class Times(unittest.TestCase):
    def test_a_time_is_read_and_written_alike(self):
        time, instant = UTC.read("2026-11-14:02:10:46")
        self.assertEqual(time, LocalTime(2026, 11, 14, 2, 10, 46))
        self.assertEqual(instant, 1794622246)
        self.assertEqual(time_stamp(time), "2026-11-14:02:10:46")

    def test_the_last_hour_of_a_summer_day_moves_to_the_next_day(self):
        time, _ = BERLIN.read("2026-07-01:23:10:00")
        self.assertEqual(time_stamp(time), "2026-07-02:23:10:00")
        time, _ = BERLIN.read("2026-01-01:23:10:00")
        self.assertEqual(time_stamp(time), "2026-01-01:23:10:00")

    def test_unread_fields_are_zero(self):
        self.assertEqual(time_stamp(UTC.read("2026-11-14")[0]), "2026-11-14:00:00:00")
        self.assertEqual(time_stamp(UTC.read("2026-11-14:02:61:00")[0]), "2026-11-14:02:00:00")
        # The day before the first of January.
        self.assertEqual(time_stamp(UTC.read("2026")[0]), "2025-12-31:00:00:00")

    def test_a_text_without_a_time_has_no_reading(self):
        for text in ("", "yesterday", "1969-12-31:23:59:59"):
            self.assertIsNone(UTC.read(text), text)


class Strings(unittest.TestCase):
    def test_only_the_required_characters_are_escaped(self):
        self.assertEqual(quoted("\\Device\\a/b"), '"\\\\Device\\\\a/b"')
        self.assertEqual(quoted('"\b\f\n\r\t'), '"\\"\\b\\f\\n\\r\\t"')
        self.assertEqual(quoted("\x00\x1f\x7f"), '"\\u0000\\u001F\x7f"')
        self.assertEqual(quoted("\xc3\xbc"), '"\xc3\xbc"')


if __name__ == "__main__":
    unittest.main()
