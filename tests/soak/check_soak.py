"""Takes the shipped library through years of daily passes with sixteen clients, on the simulated notebook, and
compares the answers with the oracle's.

Days and zones: three zones with as many days as the environment variable WATTLEAF_SOAK_DAYS says; without it, a few days
in one zone. The notebook sleeps: some passes come late, and on some days there is none. Clients ask while a pass runs and at
seeded moments after it, among them the hour before and the hour after each change of the clocks. An answer given
while a pass runs is right if it is the one of before or of after the pass. Prints a line for each zone. The exit
status is 0 if each answer is right, no handle was added, and memory stayed within its limit.
"""

import datetime
import json
import os
import random
import shutil
import sys
import time
from pathlib import Path
from zoneinfo import ZoneInfo

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "oracle"))
from app_answers import AppEnergy  # noqa: E402
from commands import answers  # noqa: E402
from ledger import DataFolder, Ledger, run_pass  # noqa: E402
from local_calendar import LocalCalendar  # noqa: E402
from notebook import Notebook, options_of_the_command_line, windows_path  # noqa: E402

# Clocks that change in the north and in the south, by half an hour too, and never.
ZONES = ("Europe/Berlin", "Australia/Adelaide", "Asia/Kolkata")
FIRST_DATE = "2024-01-01"
DAY = 86400
RANKED_DAYS = 30
TOP_APPLICATIONS = 2
FIXED_ANSWERS = {7: "1", 8: "true", 9: "[]", 10: "true"}
ICON_FOLDER = "C:\\users\\Public\\Wattleaf soak"
A_FEW_DAYS = 12
SEED = 1
# The pass after which everything that is made once has been made.
SETTLED = 10
MOST_BYTES_LEFT = 64 * 1024
SECONDS = 3 * 3600


class Difference(Exception):
    pass


class Plan:
    """The instants of the passes, and of the questions after each."""

    def __init__(self, zone, days, seed):
        self._zone, self._random = ZoneInfo(zone), random.Random(seed)
        start = datetime.datetime.fromisoformat(f"{FIRST_DATE}T09:10:00").replace(tzinfo=self._zone)
        self.passes = self._passes(int(start.timestamp()), days)
        self.days = (self._date(self.passes[-1]) - self._date(self.passes[0])).days + 1
        end = self.passes[-1] + DAY
        self.questions = [self._questions(*pair) for pair in zip(self.passes, [*self.passes[1:], end])]
        self.with_files = {i for i in range(len(self.passes)) if i % 50 == 9} | {len(self.passes) - 1}
        self.days_without_pass = sum(
            max(0, (self._date(later) - self._date(earlier)).days - 1)
            for earlier, later in zip(self.passes, self.passes[1:])
        )  # fmt: skip

    def lines(self):
        for i, (one, questions) in enumerate(zip(self.passes, self.questions)):
            yield " ".join(map(str, [one, *questions, *(["files"] if i in self.with_files else [])]))

    def _passes(self, first, days):
        passes = [first]
        while passes[-1] < first + (days - 1) * DAY:
            # A day and the length of the pass; then perhaps the rest of a sleep.
            step = DAY + self._random.randint(5, 90)
            lot = self._random.random()
            if lot < 0.05:
                step += self._random.randint(1800, 10 * 3600)
            elif lot < 0.08:
                step += self._random.randint(1, 3) * DAY
            elif lot < 0.083:
                step += 14 * DAY + self._random.randint(0, DAY)
            passes.append(passes[-1] + step)
        return passes

    def _questions(self, one, following):
        questions = [self._random.randint(one + 1, following - 1)] if self._random.random() < 0.5 else []
        # From one hour to the next the offset changes at most once a day.
        for hour in range(one - one % 3600 + 3600, following, 3600):
            if self._offset(hour) != self._offset(hour - 3600):
                questions += [at for at in (hour - 1800, hour + 1800) if one < at < following]
        return sorted(questions)

    def _offset(self, instant):
        return datetime.datetime.fromtimestamp(instant, self._zone).utcoffset()

    def _date(self, instant):
        return datetime.datetime.fromtimestamp(instant, self._zone).date()


class SoakedNotebook:
    """The notebook in one zone, with a folder for what is written about it."""

    def __init__(self, notebook, build, zone):
        self._notebook, self._zone = notebook, zone
        self.folder = build / "soak" / zone.replace("/", "_")
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir(parents=True)
        notebook.empty_folders()

    def run(self, mode):
        """Runs the program with the plan."""
        self._run([mode, windows_path(self.folder / "plan.txt"), windows_path(self.folder), SEED])

    def grow_ledger(self, days):
        """Returns the output of the program that only has a ledger."""
        return self._run(["ledger", days, windows_path(self.folder / "ledger.json"), SEED])

    def _run(self, arguments):
        run = self._notebook.run(arguments, self._settings(), SECONDS)
        # Some crashes end a program under Wine with status 0.
        if run.returncode != 0 or "soak: complete" not in run.stdout:
            raise Difference(f"{arguments[0]}: status {run.returncode}: {run.stderr[-2000:]}")
        return run.stdout

    def _settings(self):
        return {
            "TZ": self._zone,
            "WATTLEAF_LOG_FILE": windows_path(self.folder / "service.log"),
            "WATTLEAF_COLLECTOR_STATUS": "1",
            "WATTLEAF_COLLECTOR_DAYS": "0",
            "WATTLEAF_COLLECTOR_TRUTH": windows_path(self.folder / "no-truth.json"),
            "WATTLEAF_POWERCFG_SEED": str(SEED),
            "WATTLEAF_POWERCFG_DAYS": "2",
            "WATTLEAF_POWERCFG_ONLY": "Meadow|Lantern|Thistle|hearthhost|Orchard|Finch|Ember",
            "WATTLEAF_PACKAGES": "address:plain",
        }


class Expected:
    """The oracle's state, pass after pass."""

    def __init__(self, zone, folder):
        self._folder = folder
        self._calendar = LocalCalendar(zone)
        self._data, self.ledger = DataFolder(), Ledger()
        self._app_energy = AppEnergy(self._calendar, ICON_FOLDER, "plain")
        self._app_energy.begin_process((folder / "device.txt").read_text())

    def show_samples(self, number):
        self._data.show_truth(json.loads((self._folder / f"pass{number}" / "truth.json").read_text()))

    def run_pass(self, number, now):
        run_pass(self._calendar, self._data, self.ledger, now)
        report = self._folder / f"report{number}.xml"
        self._app_energy.run_pass(now, report.read_bytes() if report.exists() else None, 0)

    def files(self):
        return {"PowerConsumption.json": self._data.ledger_text, "Powerlog.json": self._app_energy.store_text()}

    def texts(self, now):
        """The texts of the commands that depend on time and files only."""
        return {**FIXED_ANSWERS, **answers(self._calendar, self._data, self.ledger, now)}

    def ranking(self, now, found):
        return self._app_energy.answer(now, RANKED_DAYS, found)


class Answers:
    """What the clients received, by pass."""

    def __init__(self, path):
        self._by_pass, self.count = {}, 0
        for line in path.read_bytes().decode("latin-1").split("\n")[:-1]:
            number, instant, command, count, text = line.split(" ", 4)
            self._by_pass.setdefault(int(number), []).append((int(instant), int(command), text))
            self.count += int(count)

    def of(self, number):
        return self._by_pass.get(number, [])


def check_answers(plan, expected, found, folder):
    for number, now in enumerate(plan.passes):
        expected.show_samples(number)
        during = [(command, text) for instant, command, text in found.of(number) if instant == 0]
        before = expected.texts(now) if during else {}
        rankings = {text: expected.ranking(now, text) for command, text in during if command == TOP_APPLICATIONS}
        expected.run_pass(number, now)
        after = expected.texts(now) if during else {}
        for command, text in during:
            if command == TOP_APPLICATIONS:
                right = (rankings[text], expected.ranking(now, text))
            else:
                right = (before[command], after[command])
            if text not in right:
                raise Difference(f"pass {number}, command {command}: {text}\n  the oracle: {right}")
        check_later_answers(number, expected, found)
        if number in plan.with_files:
            check_files(number, expected, folder)


def check_later_answers(number, expected, found):
    texts = {}
    for instant, command, text in found.of(number):
        if instant == 0:
            continue
        if instant not in texts:
            texts[instant] = expected.texts(instant)
        right = expected.ranking(instant, text) if command == TOP_APPLICATIONS else texts[instant][command]
        if text != right:
            raise Difference(f"after pass {number} at {instant}, command {command}: {text}\n  the oracle: {right}")


def check_files(number, expected, folder):
    for name, right in expected.files().items():
        if (folder / f"pass{number}" / name).read_bytes().decode("latin-1") != right:
            raise Difference(f"{name} after pass {number} is not that of the oracle")


class Use:
    """Handles and bytes after each pass, from the program's own measurements, and the bytes that a ledger which grows by
    as many days takes in a program that has nothing else."""

    def __init__(self, path, ledger_output):
        names = ("pass", "answers", "handles", "private", "committed", "used", "free")
        self._rows = [dict(zip(names, map(int, line.split()))) for line in path.read_text().splitlines()]
        self.ledger = int(ledger_output.split()[0])

    def growth(self, name):
        return self._rows[-1][name] - self._rows[min(SETTLED, len(self._rows)) - 1][name]

    def held(self):
        """The growth of committed bytes without that of the heaps' free blocks, which the next allocation can have."""
        return self.growth("committed") - self.growth("free")


def check_zone(notebook, build, zone, days):
    """Prints the row of a zone; throws Difference."""
    begin = time.monotonic()
    plan, soaked = Plan(zone, days, SEED), SoakedNotebook(notebook, build, zone)
    (soaked.folder / "plan.txt").write_text("".join(line + "\n" for line in plan.lines()))
    soaked.run("samples")
    soaked.run("run")
    expected, found = Expected(zone, soaked.folder), Answers(soaked.folder / "answers.txt")
    check_answers(plan, expected, found, soaked.folder)
    use = Use(soaked.folder / "use.txt", soaked.grow_ledger(plan.days))
    growth = (use.growth("private"), use.growth("committed"), use.held(), use.growth("used"), use.ledger)
    kibibytes = " | ".join(f"{number / 1024:.1f}" for number in growth)
    print(
        f"| {zone} | {len(plan.passes)} | {plan.days_without_pass} | {found.count} | {use.growth('handles'):+} | "
        f"{kibibytes} | {time.monotonic() - begin:.0f} |", flush=True,
    )  # fmt: skip
    check_use(use)


def check_use(use):
    if use.growth("handles") != 0:
        raise Difference(f"{use.growth('handles'):+} handles")
    for name, growth in (("held", use.held()), ("in use", use.growth("used"))):
        if growth - use.ledger > MOST_BYTES_LEFT:
            raise Difference(f"{growth - use.ledger} bytes {name} that the ledger does not account for")


def main():
    options = options_of_the_command_line(__doc__)
    notebook = Notebook(options)
    days = os.environ.get("WATTLEAF_SOAK_DAYS")
    print("| zone | passes | days without | answers | handles | private KiB | committed | held | in use | ledger | s |")
    failures = 0
    for zone in ZONES if days else ZONES[:1]:
        try:
            check_zone(notebook, options.build, zone, int(days or A_FEW_DAYS))
        except Difference as difference:
            failures += 1
            print(f"FAILED: {zone}: {difference}", flush=True)
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
