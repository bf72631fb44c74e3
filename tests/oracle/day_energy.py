"""Watt-hours of one day and of its hours, from the samples as the collector wrote them."""

from dataclasses import dataclass

from float32 import booked, single

COUNTED_TYPES = ("PCM_CHARGER", "PCM_SENSOR")
LONGEST_INTERVAL_SECONDS = 600
SECONDS_PER_HOUR = 3600.0
DIVISOR = single(0.88)


@dataclass(frozen=True)
class Sample:
    kind: str
    time: str
    power: float  # watts as 32-bit float; 0 where the sample has none

    @staticmethod
    def from_truth(element):
        text = element.get("Power")
        power = 0.0 if text is None else booked(single(float(text)))
        return Sample(element["TelemetryType"], element["SampleTime"], power)


def _seconds_between(calendar, first, last):
    return calendar.parse_sample_time(last)[1] - calendar.parse_sample_time(first)[1]


def _contribution(seconds, power):
    """An interval's watt-hours; nothing for one that is empty, backwards or a gap."""
    if not 1 <= seconds <= LONGEST_INTERVAL_SECONDS:
        return 0.0
    return single(single(float(seconds) * power) / SECONDS_PER_HOUR)


def energy_of_day(calendar, folder, day):
    """`folder.samples(day)` gives a day's samples, none where there is no file."""
    samples = folder.samples(day)
    total = 0.0

    def add(first, last, power):
        nonlocal total
        seconds = _seconds_between(calendar, first, last)
        total = single(total + booked(_contribution(seconds, power)))

    last_index = len(samples) - 1
    for i, sample in enumerate(samples):
        if sample.kind not in COUNTED_TYPES:
            continue
        if i == 0:
            before = folder.samples(calendar.shift(day, -1))
            if before:
                add(before[-1].time, sample.time, before[-1].power)
        elif i < last_index:
            add(sample.time, samples[i + 1].time, sample.power)
        else:
            after = folder.samples(calendar.shift(day, 1))
            if after:
                # Deliberate: the link forwards takes the power of the later sample.
                add(sample.time, after[0].time, after[0].power)
    return booked(single(total / DIVISOR))


def energy_by_hour(calendar, folder, day):
    """No links to other days; an hour ends with the interval that leaves it."""
    samples = folder.samples(day)
    hours, total = {}, 0.0
    last_start = len(samples) - 2
    for i in range(1, last_start + 1):
        sample, following = samples[i], samples[i + 1]
        if sample.kind not in COUNTED_TYPES:
            continue
        seconds = _seconds_between(calendar, sample.time, following.time)
        total = single(total + booked(_contribution(seconds, sample.power)))
        start, _ = calendar.parse_sample_time(sample.time)
        end, _ = calendar.parse_sample_time(following.time)
        if start.hour == end.hour and i != last_start:
            continue
        hours.setdefault(start.hour, booked(single(total / DIVISOR)))
        total = 0.0
    return hours
