"""The simulated notebook in a build's prefix, for the programs of this folder."""

import argparse
import os
import shutil
import subprocess
import tempfile
from pathlib import Path

HOME = "Program Files/Wattleaf"
DATA_FOLDER = "ProgramData/ZQ/TelemetryDataCollector/PCMCollector"
ICON_FOLDERS = "users/Public/Wattleaf *"


def options_of_the_command_line(description):
    parser = argparse.ArgumentParser(description=description)
    parser.add_argument("--build", required=True, type=Path)
    parser.add_argument("--program", required=True, type=Path)
    parser.add_argument("emulator", nargs="*", help="the command that runs a Windows program in the prefix")
    return parser.parse_args()


def windows_path(path):
    return "Z:" + str(path.resolve()).replace("/", "\\")


class Notebook:
    """A prepared notebook, on which a program of the build is installed with libraries beside it."""

    def __init__(self, options, libraries=()):
        self._options = options
        self.drive = options.build / "prefix" / "drive_c"
        for file in [options.program, *(options.program.with_name(name) for name in libraries)]:
            shutil.copy(file, self.drive / HOME)

    def empty_folders(self):
        """Removes what an earlier run left in the data folder and the folders of icons."""
        for folder in [self.drive / DATA_FOLDER, *self.drive.glob(ICON_FOLDERS)]:
            shutil.rmtree(folder, ignore_errors=True)

    def run(self, arguments, settings, seconds):
        """Runs the program. Throws subprocess.TimeoutExpired after so many seconds. Its output goes to files: an
        interpreter of the energy tool that outlives the program would keep a pipe open."""
        program = f"C:\\{HOME}\\{self._options.program.name}".replace("/", "\\")
        with tempfile.TemporaryFile("w+", errors="replace") as output, tempfile.TemporaryFile("w+", errors="replace") as errors:
            run = subprocess.run(
                [*self._options.emulator, program, *map(str, arguments)], env={**os.environ, **settings},
                stdin=subprocess.DEVNULL, stdout=output, stderr=errors, timeout=seconds,
            )  # fmt: skip
            for stream in (output, errors):
                stream.seek(0)
            run.stdout, run.stderr = output.read(), errors.read()
        return run
