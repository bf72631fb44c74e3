"""The data folder and the ledger through the passes of one process."""

import json

from day_energy import Sample, energy_of_day
from float32 import booked, single
from local_calendar import SECONDS_PER_DAY
from written_numbers import written

RETENTION_SECONDS = 18144000


class DataFolder:
    """The sample files by date, the ledger file, and the dates that passes read and delete."""

    def __init__(self):
        self._days = {}
        self._deleted = set()
        self._discarded = []
        self.ledger_text = None
        self.dates_read = []

    def show_truth(self, truth):
        """Adds the samples that the collector has written so far; a deleted file stays deleted."""
        for entry in truth["days"]:
            if entry["date"] not in self._deleted:
                samples = [Sample.from_truth(element) for element in entry["samples"]]
                self._days[entry["date"]] = samples

    def samples(self, day):
        date = day.date_text()
        if date not in self._days or date in self._discarded:
            return []
        self.dates_read.append(date)
        return self._days[date]

    def discard(self, day):
        """Treats the file of the day as missing for the rest of the pass."""
        self._discarded.append(day.date_text())

    def discarded(self):
        """The dates whose files are to be deleted, in order; a discarded day may have no file."""
        return [date for date in self._discarded if date in self._days]

    def end_pass(self, deleted):
        """Deletes the files of these dates and restores all others that were discarded."""
        for date in deleted:
            self._deleted.add(date)
            self._days.pop(date)
        self._discarded = []

    def dates(self):
        return sorted(self._days)


class Ledger:
    """Entries by instant. An entry keeps the key that it was first entered with."""

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
    try:
        elements = json.loads(text)
    except ValueError:
        return
    for element in elements:
        key = calendar.parse_date(element["Key"])
        if calendar.instant(oldest) < calendar.instant(key):
            value = booked(single(float(element["Value"])))
            ledger.put(calendar.instant(key), key, value)


def run_pass(calendar, folder, ledger, now):
    """Runs one daily pass at the instant `now`, which changes the ledger and the folder."""
    walk(calendar, folder, ledger, now)
    folder.ledger_text = ledger.text()
    folder.end_pass(folder.discarded())


def walk(calendar, folder, ledger, now):
    """Runs a pass up to the point at which the ledger is saved."""
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
                folder.discard(day)
        day = calendar.shift(day, -1)
