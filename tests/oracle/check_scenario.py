"""Takes the service through scenarios on the simulated notebook and compares all it shows with what
the oracle works out: ledger file, data folder and the texts of the commands, byte by byte.

check_scenario.py --zone ZONE --build BUILD_FOLDER --program ORACLE_SCENARIO_EXE
                  [--seed SEED] EMULATOR...

EMULATOR is the command that runs a Windows program in the notebook's prefix.
"""

import argparse
import json
import os
import shutil
import subprocess
import sys
import time
from pathlib import Path

from commands import answers
from ledger import DataFolder, Ledger, run_pass
from local_calendar import LocalCalendar
from samples_seen import SamplesSeen
from scenarios import scenarios_of

HOME = "Program Files/Wattleaf"
DATA_FOLDER = "ProgramData/ZQ/TelemetryDataCollector/PCMCollector"
SECONDS_FOR_ONE_PROCESS = 300


class Difference(Exception):
    pass


class Notebook:
    """The simulated notebook in the build's prefix."""

    def __init__(self, options):
        self._emulator = options.emulator
        self._zone = options.zone
        self._drive = options.build / "prefix" / "drive_c"
        self._work = options.build / "oracle" / options.zone.replace("/", "_")
        root = Path(__file__).resolve().parents[2]
        subprocess.run([root / "tools" / "prepare-notebook", options.build], check=True)
        shutil.copy(options.program, self._drive / HOME)
        self._program = f"C:\\{HOME}\\{options.program.name}".replace("/", "\\")

    def begin(self, scenario):
        """Empties the data folder; the new folder for what the scenario's processes write."""
        output = self._work / f"seed{scenario.seed}"
        shutil.rmtree(output, ignore_errors=True)
        output.mkdir(parents=True)
        shutil.rmtree(self._drive / DATA_FOLDER, ignore_errors=True)
        return output

    def run(self, scenario, process, output):
        """Runs one process of a scenario, which writes into the existing folder `output`."""
        passes = [",".join(map(str, [one.now, *one.queries])) for one in process.passes]
        command = [*self._emulator, self._program, windows_path(output), *passes]
        run = subprocess.run(
            command, env=self._environment(scenario, process, output), stdin=subprocess.DEVNULL,
            capture_output=True, text=True, errors="replace", timeout=SECONDS_FOR_ONE_PROCESS,
        )  # fmt: skip
        if run.returncode != 0:
            raise Difference(f"status {run.returncode}: {run.stderr}\n{log_end(output)}")

    def _environment(self, scenario, process, output):
        return {
            **os.environ,
            "TZ": self._zone,
            "WATTLEAF_LOG_FILE": windows_path(output / "service.log"),
            "WATTLEAF_COLLECTOR_STATUS": "1",
            "WATTLEAF_COLLECTOR_SEED": str(scenario.seed),
            "WATTLEAF_COLLECTOR_DAYS": str(process.days),
            "WATTLEAF_COLLECTOR_PERIOD": str(scenario.period),
            "WATTLEAF_COLLECTOR_NOW": str(process.passes[0].now),
            "WATTLEAF_COLLECTOR_TRUTH": windows_path(output / "truth.json"),
        }


def windows_path(path):
    return "Z:" + str(path.resolve()).replace("/", "\\")


def log_end(output):
    log = output / "service.log"
    return "".join(log.read_text(errors="replace").splitlines(True)[-15:]) if log.exists() else ""


def expect(what, expected, found):
    if expected == found:
        return
    at = next(
        (i for i, (one, other) in enumerate(zip(expected, found)) if one != other),
        min(len(expected), len(found)),
    )
    around = slice(max(at - 60, 0), at + 60)
    raise Difference(
        f"{what} differs at character {at}:\n"
        f"  the oracle: ...{expected[around]}...\n  the service: ...{found[around]}..."
    )


def written(output, name):
    return (output / name).read_bytes().decode("latin-1")


def names_in(folder):
    names = [f"PcmSampleData_{date}.json" for date in folder.dates()] + ["PowerConsumption.json"]
    return "".join(name + "\n" for name in sorted(names))


def check(zone, scenario, notebook, samples_seen):
    """Raises Difference at the first one; returns how many texts agree."""
    calendar, folder = LocalCalendar(zone), DataFolder()
    output = notebook.begin(scenario)
    texts = 0
    for number, process in enumerate(scenario.processes, start=1):
        place = output / f"process{number}"
        place.mkdir()
        notebook.run(scenario, process, place)
        texts += compare(calendar, folder, process, place, samples_seen)
    expect_something(folder)
    return texts


def compare(calendar, folder, process, output, samples_seen):
    """The passes of one process, which begins with an empty ledger in memory."""
    ledger = Ledger()
    texts = 0
    for number, one in enumerate(process.passes, start=1):
        start = f"pass{number}-"
        truth = json.loads((output / f"{start}truth.json").read_text())
        samples_seen.add(truth)
        folder.show_truth(truth)
        run_pass(calendar, folder, ledger, one.now)
        expect(f"{output.name}, pass {number}: ledger", folder.ledger_text,
               written(output, start + "ledger.json"))  # fmt: skip
        expect(f"{output.name}, pass {number}: names in the folder", names_in(folder),
               written(output, start + "names.txt"))  # fmt: skip
        texts += 2
        for now in [one.now, *one.queries]:
            for command, text in answers(calendar, folder, ledger, now).items():
                what = f"{output.name}, pass {number}, command {command} at {calendar.local(now)}"
                expect(what, text, written(output, f"{start}at{now}-command{command}.txt"))
                texts += 1
    return texts


def expect_something(folder):
    """A comparison of nothing but zeros would prove nothing."""
    booked = [row for row in json.loads(folder.ledger_text) if row["Value"] > 0]
    if len(booked) < 5:
        raise Difference(f"only {len(booked)} days have energy: the samples were not read")


def options_of_the_command_line():
    parser = argparse.ArgumentParser()
    parser.add_argument("--zone", required=True)
    parser.add_argument("--build", required=True, type=Path)
    parser.add_argument("--program", required=True, type=Path)
    parser.add_argument("--seed", type=int, help="only this one of the zone's scenarios")
    parser.add_argument("emulator", nargs="*")
    return parser.parse_args()


def main():
    options = options_of_the_command_line()
    notebook = Notebook(options)
    scenarios = [s for s in scenarios_of(options.zone) if options.seed in (None, s.seed)]
    samples_seen = SamplesSeen(options.zone)
    failures = 0
    for scenario in scenarios:
        begin = time.monotonic()
        try:
            texts = check(options.zone, scenario, notebook, samples_seen)
            outcome = f"{texts} texts agree"
        except Difference as difference:
            failures += 1
            outcome = f"FAILED: {difference}"
        seconds = time.monotonic() - begin
        print(f"seed {scenario.seed}, {scenario.title}: {outcome} ({seconds:.1f} s)", flush=True)
    if failures or not scenarios:
        sys.exit(f"{failures} of {len(scenarios)} scenarios differ")
    if options.seed is None and samples_seen.missing():
        sys.exit("the collector never wrote " + ", ".join(samples_seen.missing()))


if __name__ == "__main__":
    main()
