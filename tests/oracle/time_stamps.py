"""The time stamps of application energy, "2026-11-14:02:10:46", as the service reads and writes them.
"""

_FIELDS = (("year", 4, 0, 9999, "-"), ("month", 2, 1, 12, "-"), ("day", 2, 1, 31, ":"),
           ("hour", 2, 0, 23, ":"), ("minute", 2, 0, 59, ":"), ("second", 2, 0, 60, ""))  # fmt: skip
# What the fields are that a reading does not reach.
_UNREACHED = {"year": 1900, "month": 1, "day": 0, "hour": 0, "minute": 0, "second": 0}


def _fields_reached(text):
    fields, rest = dict(_UNREACHED), text.lstrip(" \t\n\v\f\r")
    for name, width, least, most, behind in _FIELDS:
        digits = rest[:width]
        if len(digits) < width or not (digits.isascii() and digits.isdigit()):
            break
        if not least <= int(digits) <= most:
            break
        fields[name] = int(digits)
        rest = rest[width:]
        if not rest.startswith(behind):
            break
        rest = rest[len(behind):]  # fmt: skip
    return fields


class TimeStamps:
    """Readings are kept, since a report has each of its hours many times."""

    def __init__(self, calendar):
        self._calendar = calendar
        self._readings = {}

    def read(self, text):
        """The time, with the hour as it was read, and its instant; nothing for what is no time."""
        if text not in self._readings:
            self._readings[text] = self._read(text)
        return self._readings[text]

    def _read(self, text):
        fields = _fields_reached(text)
        if fields["year"] < 1970:
            return None
        time = self._calendar.parse(**fields)
        return time, self._calendar.instant(time)


def time_stamp(time):
    return f"{time.date_text()}:{time.hour:02}:{time.minute:02}:{time.second:02}"
