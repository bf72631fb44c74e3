"""Runs the fault matrix on the simulated notebook and prints its table.

check_fault_matrix.py --build BUILD_FOLDER --program FAULT_MATRIX_EXE --expected FILE
                      [--positions N] [--only "SCENARIO [CALL [POSITION]]"] EMULATOR...

EMULATOR is the command that runs a Windows program in the notebook's prefix. Without --positions each call of
two scenarios fails at its first use; with the environment variable WATTLEAF_WHOLE_FAULT_MATRIX each call of all
scenarios at six. Each outcome is in BUILD_FOLDER/fault-matrix.txt. The exit status is 0 if there is no finding.
"""

import argparse
import os
import re
import shutil
import subprocess
import sys
from collections import Counter
from pathlib import Path

HOME = "Program Files/Wattleaf"
SECONDS = 1500
ROW = r"^(\w+) \| .* \| .* \| (\d+) uses, (\d+) positions$"


def options_of_the_command_line():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True, type=Path)
    parser.add_argument("--program", required=True, type=Path)
    parser.add_argument("--expected", required=True, type=Path)
    parser.add_argument("--positions", type=int)
    parser.add_argument("--only", default="")
    parser.add_argument("emulator", nargs="*")
    options = parser.parse_args()
    if options.positions is None:
        is_whole = "WATTLEAF_WHOLE_FAULT_MATRIX" in os.environ
        options.positions, options.only = (6, "") if is_whole else (1, "start,caller")
    return options


def windows_path(path):
    return "Z:" + str(path.resolve()).replace("/", "\\")


def environment():
    return {
        **os.environ,
        "TZ": "Europe/Berlin",
        "WATTLEAF_COLLECTOR_STATUS": "1",
        "WATTLEAF_COLLECTOR_SEED": "7",
        "WATTLEAF_COLLECTOR_DAYS": "5",
        "WATTLEAF_COLLECTOR_PERIOD": "300",
        "WATTLEAF_POWERCFG_SEED": "8",
        "WATTLEAF_POWERCFG_DAYS": "2",
        "WATTLEAF_POWERCFG_ONLY": "Meadow|Lantern|Thistle|hearthhost|Orchard|Finch|Ember",
        "WATTLEAF_PACKAGES": "address:plain",
        "WATTLEAF_POWERCFG_NOW": "1774864800",
        "WATTLEAF_COLLECTOR_NOW": "1774864800",
    }


def print_table(text):
    """Calls and positions of each scenario."""
    calls, uses, positions = Counter(), Counter(), Counter()
    for scenario, its_uses, its_positions in re.findall(ROW, text, re.MULTILINE):
        calls[scenario] += 1
        uses[scenario] += int(its_uses)
        positions[scenario] += int(its_positions)
    for scenario in calls:
        print(f"{scenario}: {calls[scenario]} failures x {positions[scenario]} positions of {uses[scenario]}")


def main():
    options = options_of_the_command_line()
    root = Path(__file__).resolve().parents[2]
    subprocess.run([root / "tools" / "prepare-notebook", options.build], check=True)
    home = options.build / "prefix" / "drive_c" / HOME
    shutil.copy(options.program, home)
    shutil.copy(options.program.with_name("WattleafServiceSteps.dll"), home)
    report = options.build / "fault-matrix.txt"
    report.unlink(missing_ok=True)
    command = [
        *options.emulator, f"C:\\{HOME}\\{options.program.name}".replace("/", "\\"),
        windows_path(report), windows_path(options.expected), str(options.positions), *options.only.split(),
    ]  # fmt: skip
    run = subprocess.run(
        command, env=environment(), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
        stderr=subprocess.PIPE, timeout=SECONDS, text=True, errors="replace",
    )  # fmt: skip
    text = report.read_text(errors="replace") if report.exists() else ""
    for line in text.splitlines():
        if line.startswith(("FINDING", "left out")) or " runs " in line:
            print(line)
    print_table(text)
    last = text.rstrip().rpartition("\n")[2]
    if run.returncode != 0 or not last.endswith(" 0 findings"):
        sys.exit(f"fault matrix: exit status {run.returncode}, last line: {last}\n{run.stderr[-2000:]}")


if __name__ == "__main__":
    main()
