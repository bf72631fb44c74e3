"""Records which of the important cases occurred in the energy tool's reports and in the answers."""

import json

from app_report import rows_of_report
from app_store import NEVER_NAMED
from installed_apps import DEVICE_START

FEWEST_ROWS_THAT_FILL_A_RANKING = 20
REPLACEMENT = "\xef\xbf\xbd"
PARTS_OF_IDENTITIES = {
    "a service": "\\svchost.exe [",
    "a program of Windows": "\\windows\\system32\\hearthhost.exe",
    "a program of 32 bits": "\\Program Files (x86)\\",
    "a program of one user": "\\AppData\\Local\\Programs\\",
    "a removed program": "\\Bilberry\\bilberry.exe",
    "a removed package": "Plum.Sketch_",
}
PAIRS_OF_IDENTITIES = {
    "two versions of a program": ("\\Plover\\1.4\\", "\\Plover\\2.0\\"),
    "two versions of a package": ("Finch.Music_3.1", "Finch.Music_3.2"),
    "two applications of a package": ("!Writer", "!Sheets"),
}


class ReportsSeen:
    def __init__(self):
        self._seen = dict.fromkeys(
            ["UTF-16", "UTF-8", "Unknown", "System Interrupts", "no identity", "no energy element",
             "an energy without a value", "no time", "one moment twice", "a program of C:",
             "a program elsewhere", "a package", "letters outside ASCII", "a report of 33 days",
             "System", "a service", "a program of Windows", "a program of 32 bits",
             "a program of one user", "a removed program", "a removed package",
             "two versions of a program", "two versions of a package", "two applications of a package",
             "a failure", "a failure without a store", "no report", "a broken report",
             "a full ranking", "an empty ranking", "a ranking of 0 days", "an entry without an icon",
             "a name left as a resource", "a name with a control character",
             "a name that is no UTF-8"],
            False,
        )  # fmt: skip
        self._halves_seen = {case: set() for case in PAIRS_OF_IDENTITIES}

    def missing(self):
        return [case for case, seen in self._seen.items() if not seen]

    def add_pass(self, tool, report, store_before):
        self._see("a failure", tool.status != "0")
        self._see("a failure without a store", tool.status != "0" and store_before is None)
        if report is None:
            self._see("no report", tool.status == "0")
            return
        self._see("UTF-16" if report.startswith(b"\xff\xfe") else "UTF-8")
        rows = rows_of_report(report)
        self._see("a broken report", not rows)
        self._see("a report of 33 days", rows and tool.days == 33)
        self._see("one moment twice", len({(r.app_id, r.time_stamp) for r in rows}) < len(rows))
        self._see("an energy without a value", b"<TotalEnergyConsumption/>" in report.replace(b"\0", b""))
        for row in rows:
            self._add_row(row)

    def add_answer(self, days, text):
        self._see("an empty ranking", text == "[]")
        if not text.endswith("]"):
            return
        entries = json.loads(text)
        self._see("a full ranking", len(entries) == FEWEST_ROWS_THAT_FILL_A_RANKING)
        self._see("a ranking of 0 days", days == 0 and entries)
        for entry in entries:
            name = entry["Name"]
            self._see("an entry without an icon", not entry["Icon"])
            self._see("a name left as a resource", name.startswith("ms-resource:"))
            self._see("a name with a control character", "\x1a" in name)
            self._see("a name that is no UTF-8", REPLACEMENT in name)

    def _see(self, case, condition=True):
        if condition:
            self._seen[case] = True

    def _add_row(self, row):
        self._see(row.app_id, row.app_id in (*NEVER_NAMED, "System"))
        for case, part in PARTS_OF_IDENTITIES.items():
            self._see(case, part in row.app_id)
        self._see("no identity", not row.app_id)
        self._see("no energy element", row.energy is None)
        self._see("no time", not row.time_stamp[:1].isdigit())
        self._see("letters outside ASCII", not row.app_id.isascii())
        self._see("a program of C:", "\\Program Files\\" in row.app_id)
        self._see("a program elsewhere", "\\Toolbox\\" in row.app_id)
        self._see("a package", "_x64__" in row.app_id and not row.app_id.startswith(DEVICE_START))
        for case, pair in PAIRS_OF_IDENTITIES.items():
            self._halves_seen[case] |= {part for part in pair if part in row.app_id}
            self._see(case, len(self._halves_seen[case]) == len(pair))
