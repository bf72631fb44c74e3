"""Runs passes of the ledger on random data folders, with restarts and with processes that end in the
middle of a pass, and compares with the oracle byte by byte: the ledger file after each pass, the files
in the folder after each process, and the lines of the log.

check_passes.py --zone ZONE --work FOLDER --probe LEDGER_PASS_PROBE_EXE [--seed SEED] EMULATOR...

EMULATOR is the command that runs a Windows program. The samples are not encrypted.
"""

import argparse
import base64
import datetime
import json
import os
import random
import shutil
import subprocess
import sys
from pathlib import Path

from ledger import DataFolder, Ledger, run_pass, walk
from local_calendar import LocalCalendar
from scenarios import following, instant

SEEDS = range(8)
FIRST_DATES = ("2026-03-26", "2025-10-24", "2026-02-27", "2026-07-14", "2025-12-30")
ENDED = 9
PLAIN_COPY = "unencrypt-"


class Difference(Exception):
    pass


def expect(what, expected, found):
    if expected != found:
        raise Difference(f"{what} differs:\n  the oracle: {expected}\n  the library: {found}")


class Collector:
    """Random days with gaps, single samples, samples at midnight, other types and missing power."""

    def __init__(self, seed):
        self._random = random.Random(seed)
        self.days = {}

    def write_days(self, last, count):
        for back in range(count):
            if self._random.random() < 0.85:
                self._write_day(following(last, -back))

    def append_to(self, date):
        """Adds some samples at the end of a day."""
        old = self.days.get(date, [])
        start = old[-1]["SampleTime"][11:] if old else "08:00:00"
        seconds = sum(int(part) * unit for part, unit in zip(start.split(":"), (3600, 60, 1)))
        self.days[date] = old + self._samples(date, seconds + 300, self._random.randint(1, 6))

    def _write_day(self, date):
        count = self._random.choice([1, 2, 4, 9, 20, 30])
        first = self._random.choice([30, 120, 570, 28800, 36000])
        samples = self._samples(date, first, count)
        if self._random.random() < 0.6:
            samples += self._samples(date, 86400 - self._random.randint(1, 500), 1)
        self.days[date] = samples

    def _samples(self, date, seconds, count):
        samples = []
        for _ in range(count):
            seconds = min(seconds, 86399)
            time = datetime.timedelta(seconds=seconds)
            kind = self._random.choice(["PCM_SENSOR", "PCM_SENSOR", "PCM_CHARGER", "PCM_SCREEN"])
            power = self._random.choice(["12.5", "7", "33.3", "61.75", "0.1", "-4.5", "0", None])
            clock = str(datetime.datetime.min + time)[11:19]
            samples.append(
                {"TelemetryType": kind, "SampleTime": f"{date}T{clock}", "Power": power}
            )
            seconds += self._random.choice([1, 61, 300, 300, 599, 600, 601, 4000, 0, -10])
        return samples

    def truth(self):
        return {"days": [{"date": date, "samples": days} for date, days in self.days.items()]}


def file_name(date):
    return f"PcmSampleData_{date}.json"


def file_bytes(samples):
    elements = []
    for sample in samples:
        power = "" if sample["Power"] is None else f',"Power":{sample["Power"]}'
        elements.append(
            f'{{"TelemetryType":"{sample["TelemetryType"]}",'
            f'"SampleTime":"{sample["SampleTime"]}"{power}}}'
        )
    return base64.b64encode(("[" + ",".join(elements) + "]").encode("utf-16-le"))


class Library:
    """The folder on disk and the program that runs passes over it."""

    def __init__(self, options, seed):
        self._options = options
        self._work = options.work / f"seed{seed}"
        shutil.rmtree(self._work, ignore_errors=True)
        self.data = self._work / "data"
        self.data.mkdir(parents=True)

    def write_samples(self, collector, deleted):
        for date, samples in collector.days.items():
            if date not in deleted:
                (self.data / file_name(date)).write_bytes(file_bytes(samples))

    def names(self):
        return sorted(path.name for path in self.data.iterdir())

    def ledger_text(self):
        path = self.data / "PowerConsumption.json"
        return path.read_text() if path.exists() else None

    def run(self, steps):
        """The exit status of one process, and the report lines of its passes."""
        report = self._work / "report.txt"
        report.unlink(missing_ok=True)
        command = [*self._options.emulator, str(self._options.probe), windows_path(self.data)]
        command += ["unprotected", "report=" + windows_path(report), *steps]
        environment = {
            **os.environ, "TZ": self._options.zone, "WATTLEAF_TEST_ZONE": self._options.zone,
        }  # fmt: skip
        status = subprocess.run(
            command, env=environment, stdin=subprocess.DEVNULL, timeout=100
        ).returncode
        return status, report.read_text().splitlines() if report.exists() else []

    def copy_step(self, number):
        return "copy-ledger=" + windows_path(self._work / f"ledger{number}.json")

    def copied(self, number):
        return (self._work / f"ledger{number}.json").read_text()


def windows_path(path):
    return "Z:" + str(path.resolve()).replace("/", "\\")


class Scene:
    """One seed: the oracle and the library with the same data."""

    def __init__(self, options, seed):
        self._random = random.Random(f"passes {seed} {options.zone}")
        self._calendar = LocalCalendar(options.zone)
        self._zone = options.zone
        self._collector = Collector(f"samples {seed} {options.zone}")
        self._library = Library(options, seed)
        self._folder = DataFolder()
        self._deleted = set()
        self._date = FIRST_DATES[seed % len(FIRST_DATES)]
        self._collector.write_days(self._date, 30)
        self._calls = 1000
        self._texts = []
        self._most_booked = 0
        self.ended = {"before the save": 0, "within the save": 0, "after the save": 0}

    def run(self):
        self._whole_process(passes=1 + self._random.randrange(2), first=True)
        for _ in range(3):
            self._ended_process()
            self._whole_process(passes=1 + self._random.randrange(3))
        # The most at any time, since a ledger that was cut while it was saved loses old days.
        if self._most_booked < 5:
            raise Difference(f"only {self._most_booked} days had energy: no samples were read")

    def _show_samples(self):
        self._folder.show_truth(self._collector.truth())
        self._library.write_samples(self._collector, self._deleted)

    def _next_day(self):
        """The next date, sometimes a week later or a day earlier. Old days may get late samples."""
        self._date = following(self._date, self._random.choice([0, 1, 1, 2, 7, -1]))
        self._collector.append_to(self._date)
        if self._random.random() < 0.5:
            late = following(self._date, -self._random.randint(2, 40))
            if late not in self._deleted:
                self._collector.append_to(late)

    def _moment(self):
        clock = self._random.choice(["05:10:00", "12:00:00", "14:30:07", "23:40:12"])
        return f"{self._date}T{clock}", instant(self._zone, self._date, clock)

    def _whole_process(self, passes, first=False):
        """Several passes with the same samples, on one day and the days after it."""
        if not first:
            self._next_day()
        self._show_samples()
        ledger, steps, lines = Ledger(), [], []
        self._texts = []
        for number in range(passes):
            text, now = self._moment()
            steps += ["pass=" + text, self._library.copy_step(number)]
            lines += self._oracle_pass(ledger, now)
            self._date = following(self._date, 1)
        status, report = self._library.run(steps)
        expect("the exit status", 0, status)
        calls = [line for line in report if line[0].isdigit()]
        self._calls = int(calls[-1].split()[0])
        expect("the log", lines, [line for line in report if not line[0].isdigit()])
        for number in range(passes):
            expect(f"the ledger of pass {number}", self._texts[number], self._library.copied(number))
        self._expect_names(self._folder.dates())

    def _oracle_pass(self, ledger, now):
        before = set(self._folder.dates())
        self._folder.dates_read = []
        run_pass(self._calendar, self._folder, ledger, now)
        self._deleted |= before - set(self._folder.dates())
        booked = [row for row in json.loads(self._folder.ledger_text) if row["Value"] != 0.0]
        self._most_booked = max(self._most_booked, len(booked))
        self._texts.append(self._folder.ledger_text)
        return self._log_lines(now)

    def _log_lines(self, now):
        start = f"Decrypting file :{windows_path(self._library.data)}\\"
        date = self._calendar.midnight(now).date_text()
        return [f"Date:{date}"] + [start + file_name(read) for read in self._folder.dates_read]

    def _ended_process(self):
        """A process that ends at a random call of its only pass, or right after the pass."""
        self._next_day()
        self._show_samples()
        text, now = self._moment()
        old_text, old_names = self._folder.ledger_text, self._folder.dates()
        ledger = Ledger()
        walk(self._calendar, self._folder, ledger, now)
        to_delete = self._folder.discarded()
        status, _ = self._library.run([self._end_step(), "pass=" + text])
        if status not in (0, ENDED):
            raise Difference(f"status {status}")
        deleted = self._deleted_of(to_delete)
        self._folder.end_pass(deleted)
        self._deleted |= set(deleted)
        self._folder.ledger_text = self._ledger_left(old_text, ledger.text(), deleted)
        if status == 0:
            expect("the deleted files", to_delete, deleted)
        expect("dates without a file", sorted(set(old_names) - set(deleted)), self._folder.dates())

    def _end_step(self):
        if self._random.random() < 0.4:
            return f"end-at={self._random.randint(1, self._calls)}"
        return f"end-after-save={self._random.choice([0, 1, 2, 3, 4, 6, 9, 12, 20])}"

    def _deleted_of(self, to_delete):
        """The dates whose files were deleted, which must be the first ones of `to_delete`."""
        names = set(self._library.names())
        deleted = [date for date in to_delete if file_name(date) not in names]
        expect("the order of deletion", to_delete[: len(deleted)], deleted)
        return deleted

    def _ledger_left(self, old, new, deleted):
        """The ledger that the ended process left: the old one, a truncated one or the new one."""
        found = self._library.ledger_text()
        if found == new:
            self.ended["after the save"] += 1
            return new
        expect("files deleted without a saved ledger", [], deleted)
        if found == old:
            self.ended["before the save"] += 1
        else:
            expect("a truncated ledger", new[: len(found)], found)
            self.ended["within the save"] += 1
        return found

    def _expect_names(self, dates):
        names = sorted([file_name(date) for date in dates] + ["PowerConsumption.json"])
        expect("the folder", names, self._library.names())


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--zone", required=True)
    parser.add_argument("--work", required=True, type=Path)
    parser.add_argument("--probe", required=True, type=Path)
    parser.add_argument("--seed", type=int, help="only this one")
    parser.add_argument("emulator", nargs="*")
    options = parser.parse_args()
    failures, ended = 0, {}
    for seed in SEEDS if options.seed is None else [options.seed]:
        scene = Scene(options, seed)
        try:
            scene.run()
            print(f"seed {seed}: agrees; ended {scene.ended}", flush=True)
        except Difference as difference:
            failures += 1
            print(f"seed {seed}: FAILED: {difference}", flush=True)
        for moment, count in scene.ended.items():
            ended[moment] = ended.get(moment, 0) + count
    if failures:
        sys.exit(f"{failures} seeds differ")
    if options.seed is None and not all(ended.values()):
        sys.exit(f"the processes ended only {ended}")


if __name__ == "__main__":
    main()
