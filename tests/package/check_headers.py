#!/usr/bin/env python3
"""Compiles the installed headers without warnings: each alone, and all of them in both orders, for a
program whose own headers have common names."""

import argparse
import pathlib
import subprocess
import sys
import tempfile

# Names that a program may give its own headers, in a folder that the compiler searches first.
NAMES_OF_THE_PROGRAM = ("config.h", "export.h", "types.h", "version.h")
FLAGS = ["-std=c++20", "-Wall", "-Wextra", "-Wpedantic", "-Werror", "-fsyntax-only", "-x", "c++", "-"]


def compile_errors(compiler, folders, headers):
    """The compiler's messages for a source that includes these headers; empty if it compiles."""
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
                  if (fault := compile_errors(arguments.compiler, [own, arguments.folder], order))]
    if faults:
        sys.exit("\n".join(faults))
    print(f"{len(headers)} headers, each alone and all in both orders")


if __name__ == "__main__":
    main()
