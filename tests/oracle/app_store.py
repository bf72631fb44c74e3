"""The 30-day store of application energy through the passes."""

import json
from dataclasses import dataclass

from app_report import rows_of_report
from local_calendar import LocalTime
from time_stamps import time_stamp
from written_texts import quoted

STORE_DAYS = 30
NEVER_NAMED = ("Unknown", "System Interrupts")
MEMBERS = ("Name", "DisplayName", "TimeStamp", "TotalEnergy")


@dataclass
class Record:
    name: str
    display_name: str
    time: LocalTime
    energy: int

    def text(self):
        values = (quoted(self.name), quoted(self.display_name), quoted(time_stamp(self.time)),
                  str(self.energy))  # fmt: skip
        return "{" + ",".join(f'"{key}":{value}' for key, value in zip(MEMBERS, values)) + "}"


def low_32_bits(number):
    low = number & 0xFFFFFFFF
    return low - (1 << 32) if low >= 1 << 31 else low


def cutoff_instant(calendar, now, days):
    return calendar.instant(calendar.shift(calendar.local(now), -days))


class AppStore:
    """The store and the tool's report in the data folder; None for a file that does not exist."""

    def __init__(self, calendar, stamps):
        self._calendar = calendar
        self._stamps = stamps
        self.report = None
        self.text = None

    def run_pass(self, apps, now, report, status):
        """`report` is the file that the tool wrote in this pass, or None; `status` its exit status."""
        if report is not None:
            self.report = report
        if status != 0:
            return
        cutoff = cutoff_instant(self._calendar, now, STORE_DAYS)
        records = {}
        if self.report is not None:
            self._add_report(apps, records, cutoff)
            self.report = None
        self._add_stored(records, cutoff)
        self.text = "[" + ",".join(record.text() for record in records.values()) + "]"

    def _add_report(self, apps, records, cutoff):
        carried = 0
        for row in rows_of_report(self.report):
            reading = self._stamps.read(row.time_stamp)
            if row.app_id in NEVER_NAMED or reading is None or reading[1] < cutoff:
                continue
            time, instant = reading
            if row.energy is not None:
                carried = row.energy
            if (row.app_id, instant) not in records:
                # Deliberate: a row without an energy repeats that of the preceding row.
                name = apps.display_name(row.app_id)
                records[row.app_id, instant] = Record(row.app_id, name, time, carried)
            elif row.energy is not None:
                records[row.app_id, instant].energy += row.energy

    def _add_stored(self, records, cutoff):
        for element in elements(self.text):
            reading = self._stamps.read(element["TimeStamp"])
            if reading is None or reading[1] < cutoff:
                continue
            identity = element["Name"], reading[1]
            if identity not in records:
                energy = low_32_bits(element["TotalEnergy"])
                names = element["Name"], element["DisplayName"]
                records[identity] = Record(*names, reading[0], energy)


def elements(text):
    return json.loads(text) if text is not None else []
