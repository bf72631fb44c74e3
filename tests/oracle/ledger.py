"""The data folder and the ledger through the passes of one process."""

import json

from day_energy import Sample, energy_of_day
from float32 import booked, single
from local_calendar import SECONDS_PER_DAY
from written_numbers import written

RETENTION_SECONDS = 18144000


class DataFolder:
    """Sample files by date, the ledger file, and what the passes delete."""

    def __init__(self):
        self._days = {}
        self._deleted = set()
        self.ledger_text = None

    def show_truth(self, truth):
        """Takes over what the collector has written so far; a deleted file stays deleted."""
        for entry in truth["days"]:
            if entry["date"] not in self._deleted:
                samples = [Sample.from_truth(element) for element in entry["samples"]]
                self._days[entry["date"]] = samples

    def samples(self, day):
        return self._days.get(day.date_text(), [])

    def delete(self, day):
        self._deleted.add(day.date_text())
        self._days.pop(day.date_text(), None)

    def dates(self):
        return sorted(self._days)


class Ledger:
    """Entries by instant, each with the key that was entered first: keys never change."""

    def __init__(self):
        self._entries = {}

    def get(self, instant, default=0.0):
        return self._entries[instant][1] if instant in self._entries else default

    def put(self, instant, key, value):
        first_key = self._entries[instant][0] if instant in self._entries else key
        self._entries[instant] = (first_key, value)

    def in_order(self):
        return [self._entries[instant] for instant in sorted(self._entries)]

    def __contains__(self, instant):
        return instant in self._entries

    def text(self):
        rows = [
            f'{{"Key":"{key.date_text()}","Value":{written(value)}}}'
            for key, value in self.in_order()
        ]
        return "[" + ",".join(rows) + "]"


def _load(calendar, ledger, text, oldest):
    for element in json.loads(text):
        key = calendar.parse_date(element["Key"])
        if calendar.instant(oldest) < calendar.instant(key):
            value = booked(single(float(element["Value"])))
            ledger.put(calendar.instant(key), key, value)


def run_pass(calendar, folder, ledger, now):
    """One daily pass at the instant `now`: changes the ledger and the folder."""
    instant = calendar.instant
    today = calendar.midnight(now)
    oldest = calendar.shift(today, -(RETENTION_SECONDS // SECONDS_PER_DAY))
    if folder.ledger_text is not None:
        _load(calendar, ledger, folder.ledger_text, oldest)

    kept = {instant(today), instant(calendar.shift(today, -1)), instant(calendar.shift(today, 1))}
    day = today
    while instant(day) >= instant(oldest):
        at = instant(day)
        if at not in ledger:
            ledger.put(at, day, 0.0)
        if at == instant(today) or ledger.get(at) == 0.0:
            energy = energy_of_day(calendar, folder, day)
            ledger.put(at, day, energy)
            if energy != 0.0 and at not in kept:
                folder.delete(day)
        day = calendar.shift(day, -1)
    folder.ledger_text = ledger.text()
