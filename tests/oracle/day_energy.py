"""The energy of a day and of its hours in watt-hours, from the samples that the collector wrote."""

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
    power: float  # watts as 32-bit float; 0 for a sample without a power

    @staticmethod
    def from_truth(element):
        text = element.get("Power")
        power = 0.0 if text is None else booked(single(float(text)))
        return Sample(element["TelemetryType"], element["SampleTime"], power)


def _seconds_between(calendar, first, last):
    return calendar.parse_sample_time(last)[1] - calendar.parse_sample_time(first)[1]


def _contribution(seconds, power):
    """The watt-hours of an interval; 0 for an empty or negative interval and for a gap."""
    if not 1 <= seconds <= LONGEST_INTERVAL_SECONDS:
        return 0.0
    return single(single(float(seconds) * power) / SECONDS_PER_HOUR)


def energy_of_day(calendar, folder, day):
    """`folder.samples(day)` returns the samples of a day, an empty list without a file."""
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
                # Deliberate: the link to the day after uses the power of the later sample.
                add(sample.time, after[0].time, after[0].power)
    return booked(single(total / DIVISOR))


def energy_by_hour(calendar, folder, day):
    """The energy by hour, without links to other days. An interval across the full hour belongs to
    the hour in which it starts."""
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
