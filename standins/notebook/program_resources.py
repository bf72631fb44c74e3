#!/usr/bin/env python3
"""program_resources.py LIST FOLDER: resources of the simulated notebook's desktop programs.

For each line of LIST, FOLDER gets an icon and a resource script that holds the icon and the
program's own description. A program without description gets a version without translations.
"""

import pathlib
import sys

from icon_file import write_icon

SCRIPT = """1 ICON "{icon}"
1 VERSIONINFO
FILEVERSION 1,0,0,0
PRODUCTVERSION 1,0,0,0
FILEOS 0x40004L
FILETYPE 1
BEGIN
{texts}END
"""

TEXTS = """  BLOCK "StringFileInfo"
  BEGIN
    BLOCK "040904B0"
    BEGIN
      VALUE "FileDescription", "{description}"
    END
  END
  BLOCK "VarFileInfo"
  BEGIN
    VALUE "Translation", 0x0409, 1200
  END
"""


def write_resources(folder, program, description):
    stem = program.rpartition("\\")[2].removesuffix(".exe")
    write_icon(folder / f"{stem}.ico", program)
    texts = TEXTS.format(description=description) if description else ""
    script = SCRIPT.format(icon=(folder / f"{stem}.ico").as_posix(), texts=texts)
    (folder / f"{stem}.rc").write_text(script, encoding="ascii")


def main(listed, folder):
    folder.mkdir(parents=True, exist_ok=True)
    for line in listed.read_text(encoding="utf-8").splitlines():
        if line and not line.startswith("#"):
            program, description = line.split("|")[:2]
            write_resources(folder, program, description)


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]))
