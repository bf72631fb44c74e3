"""The local calendar of the C library: broken-down time, mktime, localtime and steps of a day.

The rules of the zone come from the zone database. `isdst` works as in the C library of Windows: mktime
trusts it, so a time with isdst 0 is standard time even in summer and is normalised from there.
"""

import datetime
from dataclasses import dataclass, replace
from zoneinfo import ZoneInfo

SECONDS_PER_DAY = 86400
DAY_NAMES = "Mon Tue Wed Thu Fri Sat Sun".split()
MONTH_NAMES = "Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec".split()
EPOCH = datetime.datetime(1970, 1, 1)


@dataclass(frozen=True)
class LocalTime:
    """Year in full and month from 1, unlike in the C library."""

    year: int
    month: int
    day: int
    hour: int = 0
    minute: int = 0
    second: int = 0
    isdst: int = 0

    def date_text(self):
        return f"{self.year:04}-{self.month:02}-{self.day:02}"


class LocalCalendar:
    def __init__(self, zone_name):
        self._zone = ZoneInfo(zone_name)
        self._sample_times = {}

    def local(self, instant):
        """localtime: the broken-down local time of seconds since 1970."""
        moment = datetime.datetime.fromtimestamp(instant, self._zone)
        return LocalTime(
            moment.year, moment.month, moment.day, moment.hour, moment.minute, moment.second,
            int(bool(moment.dst())),
        )  # fmt: skip

    def instant(self, time):
        """mktime of a copy: seconds since 1970. Fields may run over; isdst is trusted."""
        months = time.year * 12 + time.month - 1
        first = datetime.datetime(months // 12, months % 12 + 1, 1)
        wall = first + datetime.timedelta(
            days=time.day - 1, hours=time.hour, minutes=time.minute, seconds=time.second
        )
        utc_as_if = int((wall - EPOCH).total_seconds())
        return utc_as_if - self._standard_offset(utc_as_if) - (3600 if time.isdst > 0 else 0)

    def parse(self, year, month, day, hour=0, minute=0, second=0):
        """The fields of a text, normalised with isdst 0, with the hour of the text restored."""
        given = LocalTime(year, month, day, hour, minute, second)
        return replace(self.local(self.instant(given)), hour=hour)

    def parse_date(self, text):
        return self.parse(*map(int, text.split("-")))

    def parse_sample_time(self, text):
        """The time as read, and its instant. Cached, since each text is read several times."""
        if text not in self._sample_times:
            date, clock = text.split("T")
            time = self.parse(*map(int, date.split("-")), *map(int, clock.split(":")))
            self._sample_times[text] = time, self.instant(time)
        return self._sample_times[text]

    def shift(self, time, days):
        """Moves by steps of 86400 seconds and restores the hour."""
        moved = self.local(self.instant(time) + days * SECONDS_PER_DAY)
        return replace(moved, hour=time.hour)

    def midnight(self, now):
        """Today at 00:00:00 with the isdst of the present time."""
        return replace(self.local(now), hour=0, minute=0, second=0)

    def _standard_offset(self, near):
        moment = datetime.datetime.fromtimestamp(near, self._zone)
        return int((moment.utcoffset() - moment.dst()).total_seconds())


def day_name(time):
    return DAY_NAMES[datetime.date(time.year, time.month, time.day).weekday()]


def month_name(time):
    return MONTH_NAMES[time.month - 1]
