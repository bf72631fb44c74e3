"""The time stamps of application energy, such as "2026-11-14:02:10:46"."""

_FIELDS = (("year", 4, 0, 9999, "-"), ("month", 2, 1, 12, "-"), ("day", 2, 1, 31, ":"),
           ("hour", 2, 0, 23, ":"), ("minute", 2, 0, 59, ":"), ("second", 2, 0, 60, ""))  # fmt: skip
# The values of fields that are not read.
_UNREAD = {"year": 1900, "month": 1, "day": 0, "hour": 0, "minute": 0, "second": 0}


def _read_fields(text):
    fields, rest = dict(_UNREAD), text.lstrip(" \t\n\v\f\r")
    for name, width, least, most, separator in _FIELDS:
        digits = rest[:width]
        if len(digits) < width or not (digits.isascii() and digits.isdigit()):
            break
        if not least <= int(digits) <= most:
            break
        fields[name] = int(digits)
        rest = rest[width:]
        if not rest.startswith(separator):
            break
        rest = rest[len(separator):]  # fmt: skip
    return fields


class TimeStamps:
    """Readings are cached, since a report contains each of its hours many times."""

    def __init__(self, calendar):
        self._calendar = calendar
        self._readings = {}

    def read(self, text):
        """The time, with the hour as read, and its instant; None for a text that is not a time."""
        if text not in self._readings:
            self._readings[text] = self._read(text)
        return self._readings[text]

    def _read(self, text):
        fields = _read_fields(text)
        if fields["year"] < 1970:
            return None
        time = self._calendar.parse(**fields)
        return time, self._calendar.instant(time)


def time_stamp(time):
    return f"{time.date_text()}:{time.hour:02}:{time.minute:02}:{time.second:02}"
