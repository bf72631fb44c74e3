"""Ends processes, and frees the library, in the middle of passes and commands of sixteen clients.

Runs: those of the environment variable WATTLEAF_STRESS_RUNS, otherwise a few. Half of them are processes that end, the
others lives of the library in one process. The seeds are 1, 2, 3, ... Each process must end in time with its status,
and a library that is detached after the service must say so: Wine can end a crashed process with any status. Wine's
server kills a process that needs more than a second after that to end, as on a busy machine; such a run is counted by
itself.
"""

import os
import subprocess
import sys
from collections import Counter

from notebook import Notebook, options_of_the_command_line, windows_path

A_FEW = 6
ENDED = 7
KILLED = -9
SECONDS_OF_A_PROCESS = 120
SECONDS_OF_A_LIFE = 30
WITNESS = "the witness is detached"
# The system detaches no library then.
WITHOUT_WITNESS = "TerminateProcess"
LIBRARIES = ["end_witness.dll", "WattleafServiceSteps.dll"]


def settings(log):
    return {
        "TZ": "Europe/Berlin",
        "WATTLEAF_LOG_FILE": windows_path(log),
        "WATTLEAF_COLLECTOR_STATUS": "1",
        "WATTLEAF_COLLECTOR_SEED": "7",
        "WATTLEAF_COLLECTOR_DAYS": "3",
        "WATTLEAF_COLLECTOR_PERIOD": "300",
        "WATTLEAF_COLLECTOR_NOW": "1774864800",
        "WATTLEAF_POWERCFG_SEED": "8",
        "WATTLEAF_POWERCFG_DAYS": "1",
        "WATTLEAF_POWERCFG_ONLY": "Meadow|Lantern|Orchard",
        "WATTLEAF_POWERCFG_NOW": "1774864800",
        "WATTLEAF_PACKAGES": "address:plain",
    }


def end_of_a_process(notebook, seed, log):
    """How the process ended: a way that it names itself, or what is wrong."""
    log.unlink(missing_ok=True)
    try:
        run = notebook.run(["end", seed], settings(log), SECONDS_OF_A_PROCESS)
    except subprocess.TimeoutExpired:
        return "HANGS"
    announced = [line.split(" answers, then ")[1] for line in run.stdout.splitlines() if " answers, then " in line]
    if run.returncode == KILLED and len(announced) == 1 and WITNESS in run.stdout:
        return f"{announced[0]}, then killed by Wine's server after the last library"
    if run.returncode != ENDED or len(announced) != 1:
        return f"FAILS with status {run.returncode}: {run.stdout[-300:]} {run.stderr[-300:]}"
    if (WITNESS in run.stdout) != (announced[0] != WITHOUT_WITNESS):
        return f"FAILS: {announced[0]}: {run.stdout[-300:]}"
    return announced[0]


def lives_of_the_library(notebook, count, log):
    """The line of the program; throws what is wrong."""
    log.unlink(missing_ok=True)
    run = notebook.run(["free", count, 1], settings(log), 60 + count * SECONDS_OF_A_LIFE)
    lines = [line for line in run.stdout.splitlines() if line.startswith(f"{count} cycles, ")]
    if run.returncode != ENDED or len(lines) != 1 or not lines[0].endswith(" +0 handles"):
        sys.exit(f"FAILS with status {run.returncode}: {run.stdout[-1000:]}{run.stderr[-1000:]}")
    return lines[0]


def main():
    options = options_of_the_command_line(__doc__)
    notebook = Notebook(options, LIBRARIES)
    notebook.empty_folders()
    runs, log = int(os.environ.get("WATTLEAF_STRESS_RUNS", A_FEW)), options.build / "stress.log"
    ends = Counter()
    for seed in range(1, runs - runs // 2 + 1):
        way = end_of_a_process(notebook, seed, log)
        if way.startswith(("FAILS", "HANGS")):
            sys.exit(f"seed {seed}: {way}")
        ends[way] += 1
    print("| end | runs |")
    for way, count in sorted(ends.items()):
        print(f"| {way} | {count} |")
    print(f"| FreeLibrary | {lives_of_the_library(notebook, runs // 2, log)} |")


if __name__ == "__main__":
    main()
