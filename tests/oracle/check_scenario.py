"""Runs the service through scenarios on the simulated notebook and compares its results with those of
the oracle, byte by byte: the files of the data folder, the texts of the commands and the icons. The
stores and the texts must also keep the published schemas. Of the icon of a program it checks only that the file exists and is a PNG file.

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
from dataclasses import dataclass
from pathlib import Path

from app_answers import NO_ANSWER, AppEnergy
from commands import answers
from ledger import DataFolder, Ledger, run_pass
from local_calendar import LocalCalendar
from reports_seen import ReportsSeen
from samples_seen import SamplesSeen
from scenarios import scenarios_of
from schemas import (
    LEDGER,
    STORE,
    TOP_APPLICATIONS,
    is_cut_off_ranking,
    schema_of_command,
    violation,
)

HOME = "Program Files/Wattleaf"
DATA_FOLDER = "ProgramData/ZQ/TelemetryDataCollector/PCMCollector"
ICON_FOLDER = "users/Public/Wattleaf oracle"
PNG_START = b"\x89PNG\r\n\x1a\n"
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
        """Empties the data folder and returns a new folder for the output of the processes."""
        output = self._work / f"seed{scenario.seed}"
        shutil.rmtree(output, ignore_errors=True)
        output.mkdir(parents=True)
        for folder in (DATA_FOLDER, ICON_FOLDER):
            shutil.rmtree(self._drive / folder, ignore_errors=True)
        return output

    def icons(self):
        """The files in the icon folder by name."""
        folder = self._drive / ICON_FOLDER
        files = folder.iterdir() if folder.exists() else []
        return {file.name: file.read_bytes() for file in files}

    def read_file(self, path):
        """A file of drive C: by its Windows path."""
        return (self._drive / path.removeprefix("C:\\").replace("\\", "/")).read_bytes()

    def run(self, scenario, process, output):
        """Runs one process of a scenario, which writes into the existing folder `output`."""
        passes = [one.argument() for one in process.passes]
        command = [*self._emulator, self._program, windows_path(output), icon_folder(), *passes]
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
            "WATTLEAF_POWERCFG_SEED": str(scenario.seed),
            "WATTLEAF_PACKAGES": f"address:{scenario.address}",
        }


def icon_folder():
    return f"C:\\{ICON_FOLDER}".replace("/", "\\")


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


def names_in(folder, app_energy):
    names = [f"PcmSampleData_{date}.json" for date in folder.dates()] + ["PowerConsumption.json"]
    names += app_energy.files()
    return "".join(name + "\n" for name in sorted(names))


@dataclass
class Scene:
    """The oracle's state in one scenario, and the cases that occurred in all scenarios."""

    calendar: LocalCalendar
    folder: DataFolder
    app_energy: AppEnergy
    samples_seen: SamplesSeen
    reports_seen: ReportsSeen


def check(zone, scenario, notebook, samples_seen, reports_seen):
    """Returns the number of equal texts; throws Difference at the first other one."""
    calendar = LocalCalendar(zone)
    app_energy = AppEnergy(calendar, icon_folder(), scenario.address)
    scene = Scene(calendar, DataFolder(), app_energy, samples_seen, reports_seen)
    output = notebook.begin(scenario)
    texts = 0
    for number, process in enumerate(scenario.processes, start=1):
        place = output / f"process{number}"
        place.mkdir()
        notebook.run(scenario, process, place)
        texts += compare(scene, process, place)
    compare_icons(app_energy.icons(), notebook)
    expect_something(scene.folder)
    return texts


def compare_icons(expected, notebook):
    """`expected` maps the name of an icon to the logo that it is a copy of, or to None."""
    found = notebook.icons()
    expect("icons", sorted(expected), sorted(found))
    for name, logo in expected.items():
        if not found[name].startswith(PNG_START):
            raise Difference(f"{name} is not a PNG file")
        if logo is not None and found[name] != notebook.read_file(logo):
            raise Difference(f"{name} is not a copy of {logo}")


def compare(scene, process, output):
    """Compares the passes of one process, which starts with an empty ledger in memory."""
    ledger = Ledger()
    texts = 0
    scene.app_energy.begin_process(written(output, "device.txt"))
    for number, one in enumerate(process.passes, start=1):
        files = PassFiles(output, number)
        truth = json.loads(files.read("truth.json"))
        scene.samples_seen.add(truth)
        scene.folder.show_truth(truth)
        run_pass(scene.calendar, scene.folder, ledger, one.now)
        files.compare("ledger.json", scene.folder.ledger_text)
        files.validate("ledger.json", LEDGER)
        compare_app_energy(scene, one, files)
        files.compare("names.txt", names_in(scene.folder, scene.app_energy))
        for now in [one.now, *one.queries]:
            for command, text in answers(scene.calendar, scene.folder, ledger, now).items():
                name = f"at{now}-command{command}.txt"
                files.compare(name, text)
                files.validate(name, schema_of_command(command))
        texts += files.agreed
    return texts


def compare_app_energy(scene, one, files):
    """Compares the store after a pass, and the rankings of that store."""
    report = files.read_bytes("report.xml")
    scene.reports_seen.add_pass(one.tool, report, scene.app_energy.store_text())
    scene.app_energy.run_pass(one.now, report, int(one.tool.status))
    if scene.app_energy.store_text() is not None:
        files.compare("store.json", scene.app_energy.store_text())
        files.validate("store.json", STORE)
    for days, now in one.rankings:
        name = f"at{now}-days{days}.txt"
        answer = files.read(name)
        files.compare(name, scene.app_energy.answer(now, days, answer))
        if answer != NO_ANSWER and not is_cut_off_ranking(answer):
            files.validate(name, schema_of_command(TOP_APPLICATIONS))
        scene.reports_seen.add_answer(days, answer)


class PassFiles:
    """The files that the scenario program wrote about one pass."""

    def __init__(self, output, number):
        self.agreed = 0
        self._start = output / f"pass{number}-"

    def read_bytes(self, name):
        """The content of a file, or None if it does not exist."""
        path = self._path(name)
        return path.read_bytes() if path.exists() else None

    def read(self, name):
        data = self.read_bytes(name)
        if data is None:
            raise Difference(f"{self._path(name).name} is missing")
        return data.decode("latin-1")

    def compare(self, name, expected):
        expect(f"{self._start.parent.name}, {self._path(name).name}", expected, self.read(name))
        self.agreed += 1

    def validate(self, name, schema):
        """Bytes that are not UTF-8, which the store may have in its names, are replaced."""
        found = violation(schema, self.read_bytes(name).decode(errors="replace"))
        if found is not None:
            raise Difference(f"{self._path(name).name} violates the schema {schema}: {found}")

    def _path(self, name):
        return self._start.with_name(self._start.name + name)


def expect_something(folder):
    """Fails if almost all values are zero: their comparison would prove nothing."""
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
    samples_seen, reports_seen = SamplesSeen(options.zone), ReportsSeen()
    failures = 0
    for scenario in scenarios:
        begin = time.monotonic()
        try:
            texts = check(options.zone, scenario, notebook, samples_seen, reports_seen)
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
    if options.seed is None and reports_seen.missing():
        sys.exit("application energy never showed " + ", ".join(reports_seen.missing()))


if __name__ == "__main__":
    main()
