"""What the published schemas accept and refuse. The tests of the scenarios validate real answers."""

import json
import unittest

from jsonschema import Draft202012Validator
from schemas import (
    EXPORT_ROW,
    HOST_ANSWERS,
    LEDGER,
    STORE,
    is_cut_off_ranking,
    read_schema,
    schema_names,
    schema_of_command,
    violation,
)

APP = {"Name": "Meadow", "Icon": "C:\\Icons\\Meadow.png", "Value": 37.5}
DAY = {"Key": "2026-03-10", "Value": 12.5}
ROW = {"Name": "a", "DisplayName": "", "TimeStamp": "2026-11-14:02:10:46", "TotalEnergy": -5}

OUTPUT = {
    "formatVersion": 1, "host": "1.0.0", "time": "2026-11-22T19:29:57+01:00", "zone": "", "library": "a.dll",
    "simulatedCalls": [{"name": "Sleep", "reason": "none"}],
    "commands": [{"number": 1, "title": "Energy", "status": 0, "text": "1.0", "value": 1.0}],
    "dataFolder": "C:\\Data", "iconFolder": "C:\\Icons", "days": 30, "log": None,
}  # fmt: skip
EXPORTED = {
    "formatVersion": 1, "host": "1.0.0", "machine": "a", "time": "2026-11-22T19:29:57-03:30", "zone": "",
    "kind": "ledgerDay", "begin": "2026-11-22T00:00:00-03:30", "label": "2026-11-22", "name": None,
    "days": None, "value": 12.5, "unit": "Wh", "missing": None,
}  # fmt: skip


def series(label, texts):
    return {"Range": [0.0, 3.5], "Value": [{label: text, "Value": 0.0} for text in texts]}


HOURS = series("Time", [f"{hour}:00" for hour in range(12, 24)])
DAYS = series("Day", ["Wed", "Thu", "Fri", "Sat", "Sun", "Mon", "Tue"])
MONTHS = series("Month", ["Oct", "Nov", "Dec", "Jan", "Mar", "Mar"])


def changed(value, /, **members):
    return {**value, **members}


def without(value, member):
    return {key: one for key, one in value.items() if key != member}


class Schemas(unittest.TestCase):
    def accepts(self, name, *values):
        for value in values:
            self.assertIsNone(violation(name, json.dumps(value)), value)

    def refuses(self, name, *values):
        for value in values:
            self.assertIsNotNone(violation(name, json.dumps(value)), value)

    def test_there_is_one_for_each_command_each_store_and_each_output_of_the_host(self):
        commands = {schema_of_command(number) for number in range(1, 11)}
        self.assertEqual(len(commands), 10)
        self.assertEqual(set(schema_names()), commands | {LEDGER, STORE, HOST_ANSWERS, EXPORT_ROW})

    def test_each_is_a_valid_schema_with_its_own_name(self):
        for name in schema_names():
            schema = read_schema(name)
            Draft202012Validator.check_schema(schema)
            self.assertEqual(schema["$schema"], "https://json-schema.org/draft/2020-12/schema")
            self.assertEqual(schema["$id"], f"urn:wattleaf:schema:{name}")

    def test_a_text_that_is_not_json_violates_each(self):
        for name in schema_names():
            for text in ("", "[", "NaN", "Infinity", '[{"Name":"a","Icon":"","Value":'):
                self.assertRegex(violation(name, text), "not JSON", name)

    def test_numbers(self):
        for number in (1, 3):
            self.accepts(schema_of_command(number), 209.891129, 0.0)
            self.refuses(schema_of_command(number), "209.891129", None, [])

    def test_the_ranking_has_at_most_twenty_applications(self):
        name = schema_of_command(2)
        self.accepts(name, [], [APP] * 20, [changed(APP, Icon="", Value=250.5)])
        self.refuses(name, [APP] * 21, APP)

    def test_an_application_has_three_members_of_their_types(self):
        self.refuses(
            schema_of_command(2),
            [without(APP, "Name")], [without(APP, "Icon")], [without(APP, "Value")],
            [changed(APP, Name="")], [changed(APP, Icon="C:\\Icons\\Meadow.gif")],
            [changed(APP, Icon=None)], [changed(APP, Value="37.5")], [changed(APP, Other=1)],
        )  # fmt: skip

    def test_a_series_has_its_count_of_entries(self):
        for number, answer in ((4, HOURS), (5, DAYS), (6, MONTHS)):
            name, entries = schema_of_command(number), answer["Value"]
            self.accepts(name, answer)
            self.refuses(
                name, changed(answer, Value=entries[1:]), changed(answer, Value=entries + entries[:1])
            )  # fmt: skip

    def test_a_series_has_its_labels(self):
        for number, answer, wrong in ((4, HOURS, "24:00"), (5, DAYS, "Day"), (6, MONTHS, "May ")):
            name, entries = schema_of_command(number), answer["Value"]
            label = next(iter(entries[0]))
            self.refuses(
                name,
                changed(answer, Value=[{label: wrong, "Value": 0.0}, *entries[1:]]),
                changed(answer, Value=[{"Label": entries[0][label], "Value": 0.0}, *entries[1:]]),
            )  # fmt: skip
        early = series("Time", [f"{hour}:00" for hour in range(12)])
        self.accepts(schema_of_command(4), early)
        self.refuses(schema_of_command(4), series("Time", ["02:00"] + ["2:00"] * 11))

    def test_a_series_has_a_range_of_two_numbers(self):
        for number, answer in ((4, HOURS), (5, DAYS), (6, MONTHS)):
            self.refuses(
                schema_of_command(number),
                without(answer, "Range"), without(answer, "Value"), changed(answer, Other=1),
                changed(answer, Range=[0.0]), changed(answer, Range=[0.0, 1.0, 2.0]),
                changed(answer, Range=[0.0, "1"]),
            )  # fmt: skip

    def test_the_entries_of_a_series_have_numbers(self):
        for number, answer in ((4, HOURS), (5, DAYS), (6, MONTHS)):
            entries = answer["Value"]
            bad = changed(entries[0], Value="0.0")
            self.refuses(
                schema_of_command(number),
                changed(answer, Value=[bad, *entries[1:]]),
                changed(answer, Value=[without(entries[0], "Value"), *entries[1:]]),
                changed(answer, Value=[changed(entries[0], Other=1), *entries[1:]]),
            )  # fmt: skip

    def test_states_and_flags(self):
        self.accepts(schema_of_command(7), 1, 0, -1)
        self.refuses(schema_of_command(7), 2, -2, "1", None)
        for number in (8, 10):
            self.accepts(schema_of_command(number), True, False)
            self.refuses(schema_of_command(number), 1, "true", None)
        self.accepts(schema_of_command(9), [])
        self.refuses(schema_of_command(9), [1], None, {})

    def test_the_ledger_has_a_date_and_a_number_for_each_day(self):
        self.accepts(LEDGER, [], [DAY, changed(DAY, Value=0.0)])
        self.refuses(
            LEDGER,
            DAY, [without(DAY, "Key")], [without(DAY, "Value")], [changed(DAY, Other=1)],
            [changed(DAY, Key="2026-3-10")], [changed(DAY, Key="2026-03-10T00:00:00")],
            [changed(DAY, Value="12.5")], [changed(DAY, Value=None)],
        )  # fmt: skip

    def test_the_store_has_four_members_in_each_row(self):
        self.accepts(STORE, [], [ROW, changed(ROW, TotalEnergy=2**63 - 1)])
        self.refuses(
            STORE,
            ROW, [without(ROW, "Name")], [without(ROW, "DisplayName")], [without(ROW, "TimeStamp")],
            [without(ROW, "TotalEnergy")], [changed(ROW, TotalEnergy=1.5)],
            [changed(ROW, TotalEnergy=2**63)], [changed(ROW, TotalEnergy=-(2**63) - 1)],
            [changed(ROW, TimeStamp="2026-11-14T02:10:46")], [changed(ROW, Other=1)],
        )  # fmt: skip

    def test_each_row_counts_also_after_others_that_were_valid_before(self):
        self.accepts(STORE, [ROW], [ROW, ROW])
        self.refuses(STORE, [ROW, changed(ROW, TotalEnergy="-5")], [ROW, changed(ROW, TotalEnergy=True), ROW])
        self.refuses(STORE, [changed(ROW, TotalEnergy="-5")])
        self.refuses(LEDGER, [ROW])

    def test_the_output_of_the_host_has_its_members(self):
        self.accepts(HOST_ANSWERS, OUTPUT, changed(OUTPUT, **{"pass": "completed", "later": 1}))
        for member in OUTPUT:
            self.refuses(HOST_ANSWERS, without(OUTPUT, member))
        self.refuses(
            HOST_ANSWERS,
            changed(OUTPUT, formatVersion=2), changed(OUTPUT, time="2026-11-22T19:29:57Z"),
            changed(OUTPUT, **{"pass": "done"}), changed(OUTPUT, days="30"),
            changed(OUTPUT, simulatedCalls=[{"name": "Sleep"}]),
        )  # fmt: skip

    def test_an_answer_of_the_host_has_a_text_only_with_status_0(self):
        answer = OUTPUT["commands"][0]
        failed = changed(answer, status=0x20000002, text=None, value=None)
        self.accepts(HOST_ANSWERS, changed(OUTPUT, commands=[answer, failed]))
        for wrong in (
            changed(answer, text=None), changed(failed, text="1"), changed(failed, value=1),
            without(answer, "value"), without(answer, "title"), changed(answer, number="1"),
            changed(answer, everythingElsePercent="1"),
        ):  # fmt: skip
            self.refuses(HOST_ANSWERS, changed(OUTPUT, commands=[wrong]))

    def test_a_row_of_the_export_has_a_value_or_says_why_not(self):
        missing = changed(EXPORTED, value=None, missing="not booked")
        self.accepts(EXPORT_ROW, EXPORTED, missing, changed(EXPORTED, begin=None, label=None))
        for member in EXPORTED:
            self.refuses(EXPORT_ROW, without(EXPORTED, member))
        self.refuses(
            EXPORT_ROW,
            changed(EXPORTED, missing="not booked"), changed(missing, missing=None),
            changed(missing, missing=""), changed(EXPORTED, kind="week"),
            changed(EXPORTED, unit="kWh"), changed(EXPORTED, begin="2026-11-22"),
            changed(EXPORTED, value="1"), changed(EXPORTED, formatVersion=2),
        )  # fmt: skip

    def test_a_ranking_without_energy_is_recognised_by_its_end(self):
        self.assertTrue(is_cut_off_ranking('[{"Name":"a","Icon":"","Value":'))
        for text in ('[{"Name":"a","Icon":"","Value":1}]', '[{"Name":"a"', "[]", ""):
            self.assertFalse(is_cut_off_ranking(text), text)


if __name__ == "__main__":
    unittest.main()
