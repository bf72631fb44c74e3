"""The answer of command 2, computed from the text of the store."""

import math
from dataclasses import dataclass
from typing import Optional

from app_store import cutoff_instant, elements, low_32_bits
from float32 import single, single_of_integer
from written_numbers import written
from written_texts import quoted

MOST_ENTRIES = 20


def decoded(text):
    """The bytes that a client receives: invalid UTF-8 is replaced by U+FFFD."""
    return text.encode("latin-1").decode("utf-8", "replace").encode("utf-8").decode("latin-1")


@dataclass
class Entry:
    name: str
    icon: str = ""
    logo: Optional[str] = None  # the file that the icon is a copy of
    value: float = -0.0  # adding the first share to -0.0 does not change it

    def text(self):
        """The text of the entry. The writer stops before a value that is not finite."""
        start = decoded(f'{{"Name":{quoted(self.name)},"Icon":{quoted(self.icon)},"Value":')
        return start + written(self.value) + "}" if math.isfinite(self.value) else start


def share(energy, total):
    """A share in percent, each step rounded to a 32-bit float."""
    part = single(single_of_integer(energy) * 100.0)
    whole = single_of_integer(total)
    if whole != 0.0:
        return single(part / whole)
    return math.nan if part == 0.0 else math.copysign(math.inf, part)


class Ranking:
    def __init__(self, entries):
        """Sorts by descending value, NaN last."""
        self._entries = sorted(
            entries, key=lambda e: (math.isnan(e.value), -e.value if e.value == e.value else 0.0)
        )

    def icons(self):
        """Name and logo of all entries with an icon. Icons are made before the ranking is cut."""
        return [(entry.name, entry.logo) for entry in self._entries if entry.icon]

    def expected(self):
        """The answer, with equal shares in any order."""
        text = "["
        for number, entry in enumerate(self._entries[:MOST_ENTRIES]):
            text += ("," if number else "") + entry.text()
            if not math.isfinite(entry.value):
                return text
        return text + "]"

    def in_the_order_of(self, text):
        """The answer, with equal shares in the order of `text` if that is possible."""
        left, position = list(self._entries), 1
        ordered = []
        while left and len(ordered) < MOST_ENTRIES:
            equals = [e for e in left if e.value == left[0].value] or left
            position += 1 if ordered else 0
            found = next((e for e in equals if text.startswith(e.text(), position)), left[0])
            left.remove(found)
            ordered.append(found)
            position += len(found.text())
        return Ranking(ordered).expected()


def ranking(calendar, stamps, apps, store_text, now, days, directory):
    cutoff = cutoff_instant(calendar, now, days)
    rows = [e for e in elements(store_text) if _counts(stamps, e, cutoff)]
    # Deliberate: the total reads 32 bits of an energy, a share reads all of it.
    total = sum(low_32_bits(row["TotalEnergy"]) for row in rows)
    entries = {}
    for row in rows:
        app_id, name = row["Name"], row["DisplayName"]
        if not name or not apps.may_rank(app_id, name):
            continue
        entry = entries.setdefault(name, Entry(name))
        entry.value = single(entry.value + share(row["TotalEnergy"], total))
        if not entry.icon:
            entry.icon = apps.icon(app_id, name, directory)
            entry.logo = apps.logo(app_id, name) if entry.icon else None
    return Ranking(entries[name] for name in sorted(entries))


def _counts(stamps, element, cutoff):
    reading = stamps.read(element["TimeStamp"])
    return reading is not None and reading[1] >= cutoff
