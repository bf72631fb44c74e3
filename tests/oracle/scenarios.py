"""The scenarios: fixed seeds, dates and times, which do not depend on the present date."""

import datetime
from dataclasses import dataclass, field
from zoneinfo import ZoneInfo

ALL_DAYS = 211
DEFAULT_DAYS = 25
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
# The local times of the passes, used in turn.
MOMENTS = ["14:31:07", "05:10:00", "23:40:12", "00:10:30", "09:59:59", "01:30:00", "02:45:10"]


# The number of days in the energy tool's reports, used in turn. With fewer days than in the pass before,
# older rows come from the store; with more than 30 days, the oldest rows never enter the store.
REPORT_DAYS = [(33, 2, 3), (8, 1, 4), (4, 3, 1), (12, 6, 2)]
# The exit status of the tool in a pass, and what it writes.
WELL = ("0", "report")
TOOL_WORK = [
    (WELL, WELL, WELL),
    (WELL, ("5", "report"), WELL),
    (WELL, WELL, ("0", "broken")),
    (("1", "report"), WELL, WELL),
    (WELL, ("0", "nothing"), WELL),
]
RANKED_DAYS = (0, 1, 7, 30, 365)
SECONDS_AN_EVENING = 4 * 3600


@dataclass
class Tool:
    """The settings of the energy tool for one pass."""

    days: int
    status: str
    output: str

    def settings(self):
        return {"DAYS": str(self.days), "STATUS": self.status, "OUTPUT": self.output}


@dataclass
class Pass:
    now: int
    tool: Tool
    queries: list = field(default_factory=list)
    rankings: list = field(default_factory=list)  # of days and instant

    def argument(self):
        """The three lists in the format of the scenario program."""
        lists = (
            [str(instant) for instant in [self.now, *self.queries]],
            [f"{days}@{instant}" for days, instant in self.rankings],
            [f"{name}={value}" for name, value in self.tool.settings().items()],
        )
        return ";".join(map(",".join, lists))


@dataclass
class Process:
    """One process of the service. The collector writes `days` days when it starts."""

    days: int
    passes: list


@dataclass
class Scenario:
    seed: int
    title: str
    period: int
    processes: list
    address: str = "uri"  # the form of the packages' own logos


def instant(zone, date, clock, fold=0):
    moment = datetime.datetime.fromisoformat(f"{date}T{clock}")
    return int(moment.replace(tzinfo=ZoneInfo(zone), fold=fold).timestamp())


def following(date, days):
    return str(datetime.date.fromisoformat(date) + datetime.timedelta(days=days))


def _tools(number):
    """The tools of the three passes of scenario `number` of a zone."""
    days, work = REPORT_DAYS[number % len(REPORT_DAYS)], TOOL_WORK[number % len(TOOL_WORK)]
    return [Tool(days[i], *work[i]) for i in range(len(work))]


def _rankings(now):
    """Rankings at the pass, and one of 0 days some hours earlier, when the store holds later rows."""
    return [(days, now) for days in RANKED_DAYS] + [(0, now - SECONDS_AN_EVENING)]


def _passes(zone, first, moment, tools):
    passes = []
    for day, tool in enumerate(tools):
        date = following(first, day)
        now = instant(zone, date, moment)
        # An hour later, just before midnight, and twice in the night after it.
        queries = [
            now + 3600,
            instant(zone, date, "23:59:59"),
            instant(zone, following(date, 1), "00:10:00"),
            instant(zone, following(date, 1), "03:20:00"),
        ]
        passes.append(Pass(now, tool, queries, _rankings(now)))
    return passes


def _processes(zone, date, moment, days, tools):
    """Three days. A scenario with all days restarts the service for the third.

    A restarted collector appends to today and yesterday and does not change older days.
    """
    passes = _passes(zone, date, moment, tools)
    if days < ALL_DAYS:
        return [Process(days, passes)]
    return [Process(days, passes[:2]), Process(2, passes[2:])]


def scenarios_of(zone):
    base = 100 * (ZONES.index(zone) + 1)
    rows = [(title, date, DEFAULT_DAYS) for title, date in CHANGES[zone] + EVERYWHERE]
    rows.append(("all the days that a ledger holds", "2026-04-20", ALL_DAYS))
    scenarios = []
    for i, (title, date, days) in enumerate(rows):
        moment = MOMENTS[i % len(MOMENTS)]
        processes = _processes(zone, date, moment, days, _tools(i))
        title = f"{title}, from {date} {moment}"
        address = ("uri", "plain")[i % 2]
        scenarios.append(Scenario(base + i, title, PERIOD_SECONDS, processes, address))
    return scenarios
