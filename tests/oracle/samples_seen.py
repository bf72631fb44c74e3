"""Records which of the important cases occurred in the collector's samples.

A comparison proves a rule only if the samples contain the cases of that rule.
"""

import datetime
from zoneinfo import ZoneInfo

LONGEST_INTERVAL_SECONDS = 600


class SamplesSeen:
    def __init__(self, zone):
        self._zone = ZoneInfo(zone)
        self._seen = dict.fromkeys(
            ["a day with one sample", "a day off", "samples across midnight", "other types",
             "PCM_CHARGER", "PCM_SENSOR", "whole power", "real power", "no power",
             "an interval of 600 seconds", "an interval of 601 seconds", "a sleep of an hour",
             "two samples at one moment", "a day without samples", "a week of sleep",
             "a gap across midnight", "a clock put back", "a time that comes back"],
            False,
        )  # fmt: skip
        if zone != "UTC":
            self._seen["the repeated hour"] = self._seen["the skipped hour left out"] = False

    def missing(self):
        return [case for case, seen in self._seen.items() if not seen]

    def add(self, truth):
        days = [(entry["date"], entry["samples"]) for entry in truth["days"]]
        for date, samples in days:
            self._add_day(date, samples)
        for (date, samples), (next_date, next_samples) in zip(days, days[1:]):
            self._see("a day off", following(date) != next_date)
            self._see("a week of sleep", days_between(date, next_date) > 7)
            if samples and next_samples and following(date) == next_date:
                self._add_midnight(samples[-1], next_samples[0])

    def _see(self, case, condition=True):
        if condition:
            self._seen[case] = True

    def _add_midnight(self, last, first):
        seconds = seconds_between(last, first)
        self._see("samples across midnight", seconds <= LONGEST_INTERVAL_SECONDS)
        is_awake_around = last["SampleTime"] > last["SampleTime"][:10] + "T23:00:00"
        self._see("a gap across midnight", is_awake_around and LONGEST_INTERVAL_SECONDS < seconds < 7200)

    def _add_day(self, date, samples):
        self._see("a day without samples", not samples)
        self._see("a day with one sample", len(samples) == 1)
        for sample in samples:
            self._add_sample(sample)
        for first, last in zip(samples, samples[1:]):
            seconds = seconds_between(first, last)
            self._see("an interval of 600 seconds", seconds == 600)
            self._see("an interval of 601 seconds", seconds == 601)
            self._see("a sleep of an hour", seconds >= 3600)
            self._see("two samples at one moment", seconds == 0)
            self._add_backward_step(date, seconds)
        later = {sample["SampleTime"] for sample, before in zip(samples[1:], samples)
                 if seconds_between(before, sample) != 0}  # fmt: skip
        steps = sum(seconds_between(a, b) != 0 for a, b in zip(samples, samples[1:]))
        self._see("a time that comes back", not self._changes(date) and len(later) < steps)
        self._add_forward_change(date, samples)

    def _add_backward_step(self, date, seconds):
        if not self._changes(date):
            self._see("a clock put back", seconds < 0)
        elif "the repeated hour" in self._seen:
            self._see("the repeated hour", seconds < 0)

    def _changes(self, date):
        """Whether the clocks change on a date."""
        midnight = datetime.datetime.fromisoformat(date).replace(tzinfo=self._zone)
        return midnight.utcoffset() != (midnight + datetime.timedelta(days=1)).utcoffset()

    def _add_sample(self, sample):
        kind, power = sample["TelemetryType"], sample["Power"]
        self._see(kind if kind in self._seen else "other types")
        self._see("no power", power is None)
        self._see("real power" if "." in (power or "") else "whole power", power is not None)

    def _add_forward_change(self, date, samples):
        """A notebook that is awake during the change, without samples in the skipped hour."""
        midnight = datetime.datetime.fromisoformat(date)
        hours = [
            hour for hour in range(24)
            if not self._exists(midnight + datetime.timedelta(hours=hour))
        ]  # fmt: skip
        if not hours:
            return
        times = {int(sample["SampleTime"][11:13]) for sample in samples}
        around = {hours[0] - 1, hours[0] + 1} <= times
        self._see("the skipped hour left out", around and hours[0] not in times)

    def _exists(self, wall):
        there = wall.replace(tzinfo=self._zone).astimezone(datetime.timezone.utc)
        return there.astimezone(self._zone).replace(tzinfo=None) == wall


def days_between(first, last):
    return (datetime.date.fromisoformat(last) - datetime.date.fromisoformat(first)).days


def following(date):
    return str(datetime.date.fromisoformat(date) + datetime.timedelta(days=1))


def seconds_between(first, last):
    """The difference of the local times."""
    times = [datetime.datetime.fromisoformat(sample["SampleTime"]) for sample in (first, last)]
    return (times[1] - times[0]).total_seconds()
