#!/usr/bin/env python3
"""program_resources.py LIST FOLDER: resources of the simulated notebook's desktop programs.

For the n-th program of LIST that is on disk, writes to FOLDER the icon n.ico and the resource script
n.rc with the icon, the program's version and its description. A program without a description gets a
version resource without translations.
"""

import pathlib
import sys

from icon_file import write_icon

SCRIPT = """1 ICON "{icon}"
1 VERSIONINFO
FILEVERSION {version}
PRODUCTVERSION {version}
FILEOS 0x40004L
FILETYPE 1
BEGIN
{texts}END
"""

TEXTS = """  BLOCK "StringFileInfo"
  BEGIN
    BLOCK "040904B0"
    BEGIN
      VALUE "FileDescription", L"{description}"
    END
  END
  BLOCK "VarFileInfo"
  BEGIN
    VALUE "Translation", 0x0409, 1200
  END
"""


def escaped(text):
    """Characters outside ASCII by their numbers, so that no code page matters."""
    return "".join(c if c.isascii() else f"\\x{ord(c):04X}" for c in text)


def write_resources(folder, number, program, description, version):
    icon = folder / f"{number}.ico"
    write_icon(icon, program)
    texts = TEXTS.format(description=escaped(description)) if description else ""
    version = version.replace(".", ",")
    script = SCRIPT.format(icon=icon.as_posix(), version=version, texts=texts)
    (folder / f"{number}.rc").write_text(script, encoding="ascii")


def main(listed, folder):
    folder.mkdir(parents=True, exist_ok=True)
    lines = listed.read_text(encoding="utf-8").splitlines()
    rows = [line.split("|") for line in lines if line and not line.startswith("#")]
    here = [row for row in rows if row[5] == "here"]
    for number, (program, description, version, *_) in enumerate(here, start=1):
        write_resources(folder, number, program, description, version)


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]))
