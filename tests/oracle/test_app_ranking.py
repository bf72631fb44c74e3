"""Answers of command 2, computed by hand, and the differences that a comparison must find."""

import json
import unittest

from app_cases import APPS, APPS_WITH_URIS, NOTES, NOTES_PRO, NOW, NOW_TEXT, OAK, PREFIX, STAMPS, UTC
from app_ranking import Ranking, ranking, share
from float32 import single, single_of_integer

ELM = PREFIX + "\\Program Files\\Elm\\elm.exe"
SYNC = PREFIX + "\\Program Files\\Oak\\sync.exe"


def stored(name, display_name, energy, time=NOW_TEXT):
    return {"Name": name, "DisplayName": display_name, "TimeStamp": time, "TotalEnergy": energy}


def ranked(*rows, days=30, now=NOW, apps=APPS):
    return ranking(UTC, STAMPS, apps, json.dumps(rows), now, days, "C:\\i")


def entry(name, value, icon=True):
    path = f"C:\\\\i\\\\{name}.png" if icon else ""
    return f'{{"Name":"{name}","Icon":"{path}","Value":{value}}}'


def names(result):
    return [e["Name"] for e in json.loads(result.expected())]


class Answers(unittest.TestCase):
    def test_falling_order_members_and_icons(self):
        result = ranked(stored(NOTES, "Fir Notes", 25), stored(OAK, "Oak", 75))
        self.assertEqual(result.expected(), f'[{entry("Oak", "75.0")},{entry("Fir Notes", "25.0")}]')

    def test_an_empty_ranking_is_an_empty_array(self):
        self.assertEqual(ranked().expected(), "[]")

    def test_numbers_are_32_bit_floats_widened(self):
        result = ranked(stored(OAK, "Oak", 1234), stored("x", "", 8766))
        self.assertIn('"Value":12.34000015258789}', result.expected())

    def test_rows_without_a_name_or_a_registration_count_in_the_total_only(self):
        rows = stored(OAK, "Oak", 1), stored("x", "", 1), stored(ELM, "Elm", 2)
        self.assertEqual(ranked(*rows).expected(), f'[{entry("Oak", "25.0")}]')

    def test_two_programs_of_one_name_add_up(self):
        rows = stored(OAK, "Oak", 1), stored(SYNC, "Oak", 2), stored("x", "", 1)
        self.assertEqual(ranked(*rows).expected(), f'[{entry("Oak", "75.0")}]')

    def test_an_entry_without_a_matching_package_has_no_icon(self):
        result = ranked(stored("Gone_1", "Gone", 1), stored("Yew.Own_1", "Yew", 3))
        expected = f'[{entry("Yew", "75.0")},{entry("Gone", "25.0", icon=False)}]'
        self.assertEqual(result.expected(), expected)
        self.assertEqual([name for name, _ in result.icons()], ["Yew"])

    def test_a_row_at_the_cutoff_counts_and_one_a_second_earlier_does_not(self):
        rows = (stored(OAK, "Oak", 1, "2026-05-06:12:00:00"),
                stored(NOTES, "Fir Notes", 1, "2026-05-06:11:59:59"))  # fmt: skip
        self.assertEqual(names(ranked(*rows, days=7)), ["Oak"])
        self.assertEqual(names(ranked(*rows, days=8)), ["Fir Notes", "Oak"])

    def test_zero_days_begin_now(self):
        self.assertEqual(names(ranked(stored(OAK, "Oak", 1), days=0)), ["Oak"])
        self.assertEqual(ranked(stored(OAK, "Oak", 1), days=0, now=NOW + 1).expected(), "[]")

    def test_the_smallest_of_21_is_dropped(self):
        rows = [stored(NOTES, f"n{i:02}", i + 1) for i in range(21)]
        self.assertEqual(names(ranked(*rows)), [f"n{i:02}" for i in range(20, 0, -1)])

    def test_the_total_reads_32_bits_and_a_share_64(self):
        result = ranked(stored(OAK, "Oak", 4294967297))
        self.assertIn('"Value":429496729600.0}', result.expected())

    def test_a_total_of_zero_ends_the_text_before_the_first_value(self):
        start = '[{"Name":"Oak","Icon":"C:\\\\i\\\\Oak.png","Value":'
        self.assertEqual(ranked(stored(OAK, "Oak", 0)).expected(), start)
        # An infinite value precedes NaN.
        rows = stored(NOTES, "Fir Notes", 0), stored("x", "", -5), stored(OAK, "Oak", 5)
        self.assertEqual(ranked(*rows).expected(), start)


class Icons(unittest.TestCase):
    ASSETS = "C:\\Program Files\\WindowsApps\\%s_%s_x64__s\\Assets\\%s"

    def icons(self, name, display_name, apps=APPS):
        return ranked(stored(name, display_name, 1), apps=apps).icons()

    def test_a_programs_icon_is_not_a_copy_and_a_packages_icon_is_one(self):
        self.assertEqual(self.icons(OAK, "Oak"), [("Oak", None)])
        logo = self.ASSETS % ("Fir.NotesPro", "1.0", "Square44x44Logo.targetsize-44.png")
        self.assertEqual(self.icons(NOTES_PRO, "Fir Notes Pro"), [("Fir Notes Pro", logo)])

    def test_a_packages_own_logo_is_found_by_a_plain_address_and_not_by_that_of_a_uri(self):
        logo = self.ASSETS % ("Yew.Large", "1.0", "StoreLogo.png")
        self.assertEqual(self.icons("Yew.Large_1", "Large Yew"), [("Large Yew", logo)])
        self.assertEqual(self.icons("Yew.Large_1", "Large Yew", APPS_WITH_URIS), [])
        expected = f'[{entry("Yew", "100.0", icon=False)}]'
        result = ranked(stored("Yew.Own_1", "Yew", 1), apps=APPS_WITH_URIS)
        self.assertEqual(result.expected(), expected)

    def test_the_logo_of_the_last_of_two_versions_is_used(self):
        logo = self.ASSETS % ("Tea.Leaf", "2.0", "Square44x44Logo.targetsize-44.png")
        self.assertEqual(self.icons("Tea.Leaf_1.0", "New Tea"), [("New Tea", logo)])

    def test_an_unresolved_resource_name_has_no_icon_and_merges(self):
        rows = [stored(f"Box.{one}_1", "ms-resource:AppName", 1) for one in ("One", "Two")]
        expected = f'[{entry("ms-resource:AppName", "100.0", icon=False)}]'
        self.assertEqual(ranked(*rows).expected(), expected)

    def test_a_name_that_cannot_be_a_file_has_no_icon(self):
        self.assertEqual(self.icons("Pea.Books_1", "Pea \x1a="), [])

    def test_invalid_utf_8_is_replaced(self):
        replaced = "Ruh\xef\xbf\xbd"
        expected = f'[{entry(replaced, "100.0")}]'
        self.assertEqual(ranked(stored("Pea.Menu_1", "Ruh\xe9", 1)).expected(), expected)


class Shares(unittest.TestCase):
    def test_each_step_is_in_32_bits(self):
        self.assertEqual(share(1, 3), single(100.0 / 3.0))
        # 16777217 is not a 32-bit float.
        self.assertEqual(share(16777217, 16777216), 100.0)

    def test_integers_become_floats_in_one_step(self):
        self.assertEqual(single_of_integer(16777219), 16777220.0)
        self.assertEqual(single_of_integer(-16777217), -16777216.0)
        # A conversion to double first would lose the last bit and round the tie to even.
        number = (1 << 62) + (1 << 38) + 1
        self.assertEqual(single_of_integer(number), float((1 << 62) + (1 << 39)))
        self.assertEqual(single(number), float(1 << 62))


class EqualShares(unittest.TestCase):
    ROWS = (stored(OAK, "Oak", 2), stored(NOTES, "Fir Notes", 1), stored(NOTES_PRO, "Fir Notes Pro", 1))
    OAK, NOTES, PRO = entry("Oak", "50.0"), entry("Fir Notes", "25.0"), entry("Fir Notes Pro", "25.0")

    def accepts(self, *entries):
        text = "[" + ",".join(entries) + "]"
        return ranked(*self.ROWS).in_the_order_of(text) == text

    def test_equal_shares_may_be_in_any_order(self):
        self.assertTrue(self.accepts(self.OAK, self.NOTES, self.PRO))
        self.assertTrue(self.accepts(self.OAK, self.PRO, self.NOTES))

    def test_any_of_equal_shares_may_be_cut(self):
        rows = [stored(NOTES, f"n{i:02}", 1) for i in range(21)]
        entries = [entry(f"n{i:02}", "4.76190471649169922", icon=True) for i in range(21)]
        value = json.loads(ranked(*rows).expected())[0]["Value"]
        entries = [text.replace("4.76190471649169922", repr(value)) for text in entries]
        for lost in (0, 7, 20):
            text = "[" + ",".join(entries[:lost] + entries[lost + 1 :]) + "]"
            self.assertEqual(ranked(*rows).in_the_order_of(text), text)

    def test_unequal_shares_must_be_in_order(self):
        self.assertFalse(self.accepts(self.NOTES, self.OAK, self.PRO))

    def test_no_entry_may_be_repeated_or_missing(self):
        self.assertFalse(self.accepts(self.OAK, self.NOTES, self.NOTES))
        self.assertFalse(self.accepts(self.OAK, self.NOTES))
        self.assertFalse(self.accepts(self.OAK, self.NOTES, self.PRO, self.PRO))

    def test_another_digit_or_icon_differs(self):
        self.assertFalse(self.accepts(entry("Oak", "50.00000000000001"), self.NOTES, self.PRO))
        self.assertFalse(self.accepts(entry("Oak", "50"), self.NOTES, self.PRO))
        self.assertFalse(self.accepts(entry("Oak", "50.0", icon=False), self.NOTES, self.PRO))

    def test_a_text_of_another_shape_differs(self):
        result = ranked(*self.ROWS)
        for text in ("", "[", "[]", "no answer", result.expected()[:-1], result.expected() + " "):
            self.assertNotEqual(result.in_the_order_of(text), text)

    def test_no_entries_equal_only_an_empty_array(self):
        self.assertEqual(Ranking([]).in_the_order_of("no answer"), "[]")


if __name__ == "__main__":
    unittest.main()
