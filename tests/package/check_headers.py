#!/usr/bin/env python3
"""Compiles the installed headers without a word: each alone, and all of them in both orders, for a
program that has headers of common names of its own."""

import argparse
import pathlib
import subprocess
import sys
import tempfile

# What a program may well call a header of its own, in a folder that the compiler looks into first.
NAMES_OF_THE_PROGRAM = ("config.h", "export.h", "types.h", "version.h")
FLAGS = ["-std=c++20", "-Wall", "-Wextra", "-Wpedantic", "-Werror", "-fsyntax-only", "-x", "c++", "-"]


def complaint(compiler, folders, headers):
    """What the compiler says of a source that includes these headers; nothing where it is content."""
    source = "".join(f'#include "{header}"\n' for header in headers)
    command = [compiler, *(f"-I{folder}" for folder in folders), "-DWATTLEAF_IMPORTS", *FLAGS]
    run = subprocess.run(command, input=source, capture_output=True, text=True)
    return run.stderr if run.returncode != 0 else ""


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--compiler", required=True)
    parser.add_argument("folder", type=pathlib.Path)
    arguments = parser.parse_args()
    headers = sorted(path.relative_to(arguments.folder).as_posix()
                     for path in arguments.folder.rglob("*.h"))
    if not headers:
        sys.exit(f"{arguments.folder} holds no header")

    orders = [[header] for header in headers] + [headers, headers[::-1]]
    with tempfile.TemporaryDirectory() as own:
        for name in NAMES_OF_THE_PROGRAM:
            (pathlib.Path(own) / name).write_text("#error This is the program's own header.\n")
        faults = [fault for order in orders
                  if (fault := complaint(arguments.compiler, [own, arguments.folder], order))]
    if faults:
        sys.exit("\n".join(faults))
    print(f"{len(headers)} headers, each alone and all in both orders")


if __name__ == "__main__":
    main()
