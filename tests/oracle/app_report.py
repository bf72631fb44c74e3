"""The rows of an energy report. All texts of application energy hold one character per byte."""

import re
from dataclasses import dataclass
from typing import Optional
from xml.parsers import expat

ENERGY_ELEMENT = "TotalEnergyConsumption"
SMALLEST_32, LARGEST_32 = -(1 << 31), (1 << 31) - 1


@dataclass(frozen=True)
class ReportRow:
    app_id: str
    time_stamp: str
    energy: Optional[int]  # None where the element has no energy child


def byte_text(text):
    """The UTF-8 of a text, each byte as one character."""
    return text.encode("utf-8", "replace").decode("latin-1")


def leading_integer(text):
    """The integer at the start of a text, limited to 32 bits; 0 without an integer."""
    found = re.match(r"[ \t\n\v\f\r]*([+-]?[0-9]+)", text)
    return max(SMALLEST_32, min(LARGEST_32, int(found.group(1)))) if found else 0


class _RowCollector:
    """Collects the parser's events: rows are children of the root, energy is a child of a row."""

    def __init__(self):
        self.rows = []
        self._depth = 0
        self._attributes = {}
        self._energy = None

    def start(self, name, attributes):
        self._depth += 1
        if self._depth == 2:
            self._attributes, self._energy = attributes, None
        elif self._depth == 3 and name == ENERGY_ELEMENT and self._energy is None:
            self._energy = leading_integer(attributes.get("Value", ""))

    def end(self, _name):
        if self._depth == 2:
            app_id = byte_text(self._attributes.get("AppId", ""))
            time_stamp = self._attributes.get("TimeStamp", "")
            self.rows.append(ReportRow(app_id, time_stamp, self._energy))
        self._depth -= 1


def rows_of_report(data):
    """The rows in document order; no rows for malformed XML."""
    encoding = "utf-16" if data[:2] in (b"\xff\xfe", b"\xfe\xff") else "utf-8-sig"
    collector = _RowCollector()
    parser = expat.ParserCreate("utf-8")  # overrides the encoding that the document declares
    parser.StartElementHandler = collector.start
    parser.EndElementHandler = collector.end
    try:
        parser.Parse(data.decode(encoding).encode("utf-8"), True)
    except (expat.ExpatError, UnicodeError):
        return []
    return collector.rows
