"""The scenarios: seeds, dates and moments, the same at every run, whatever the day."""

import datetime
from dataclasses import dataclass, field
from zoneinfo import ZoneInfo

ALL_DAYS = 211
USUAL_DAYS = 25
PERIOD_SECONDS = 300
ZONES = ("UTC", "Europe/Berlin", "America/New_York")

# Titles, and the local date of the first pass.
CHANGES = {
    "Europe/Berlin": [
        ("clocks forward on the second day", "2026-03-28"),
        ("clocks forward on the first day", "2026-03-29"),
        ("the day after clocks forward", "2026-03-30"),
        ("clocks back on the second day", "2025-10-25"),
        ("clocks back on the first day", "2025-10-26"),
        ("the day after clocks back", "2025-10-27"),
    ],
    "America/New_York": [
        ("clocks forward on the second day", "2026-03-07"),
        ("clocks forward on the first day", "2026-03-08"),
        ("clocks back on the second day", "2025-11-01"),
        ("clocks back on the first day", "2025-11-02"),
        ("the day after clocks back", "2025-11-03"),
    ],
    "UTC": [
        ("the date of a change elsewhere", "2026-03-28"),
        ("the end of January", "2026-01-30"),
    ],
}
EVERYWHERE = [
    ("year change", "2025-12-31"),
    ("the end of a short February", "2026-02-27"),
    ("the 31st of March", "2026-03-30"),
    ("the first of a summer month", "2026-05-31"),
    ("summer", "2026-07-14"),
]
# Local times of day of the passes, taken in turn.
MOMENTS = ["14:31:07", "05:10:00", "23:40:12", "00:10:30", "09:59:59", "01:30:00", "02:45:10"]


@dataclass
class Pass:
    now: int
    queries: list = field(default_factory=list)


@dataclass
class Process:
    """One life of the service. The collector writes `days` days when it starts."""

    days: int
    passes: list


@dataclass
class Scenario:
    seed: int
    title: str
    period: int
    processes: list


def instant(zone, date, clock, fold=0):
    moment = datetime.datetime.fromisoformat(f"{date}T{clock}")
    return int(moment.replace(tzinfo=ZoneInfo(zone), fold=fold).timestamp())


def following(date, days):
    return str(datetime.date.fromisoformat(date) + datetime.timedelta(days=days))


def _passes(zone, first, moment, count):
    passes = []
    for day in range(count):
        date = following(first, day)
        now = instant(zone, date, moment)
        # A little later, before the next midnight, and in the small hours of the next day.
        queries = [
            now + 3600,
            instant(zone, date, "23:59:59"),
            instant(zone, following(date, 1), "00:10:00"),
            instant(zone, following(date, 1), "03:20:00"),
        ]
        passes.append(Pass(now, queries))
    return passes


def _processes(zone, date, moment, days):
    """Three days; where all days are asked for, the service starts anew for the third.

    A collector that starts anew appends to today and yesterday and leaves older days alone.
    """
    passes = _passes(zone, date, moment, 3)
    if days < ALL_DAYS:
        return [Process(days, passes)]
    return [Process(days, passes[:2]), Process(2, passes[2:])]


def scenarios_of(zone):
    base = 100 * (ZONES.index(zone) + 1)
    rows = [(title, date, USUAL_DAYS) for title, date in CHANGES[zone] + EVERYWHERE]
    rows.append(("all the days that a ledger holds", "2026-04-20", ALL_DAYS))
    scenarios = []
    for i, (title, date, days) in enumerate(rows):
        moment = MOMENTS[i % len(MOMENTS)]
        processes = _processes(zone, date, moment, days)
        title = f"{title}, from {date} {moment}"
        scenarios.append(Scenario(base + i, title, PERIOD_SECONDS, processes))
    return scenarios
