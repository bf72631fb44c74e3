#!/usr/bin/env python3
"""Compiles the installed headers without a word: each alone, and all of them in both orders."""

import argparse
import pathlib
import subprocess
import sys

FLAGS = ["-std=c++20", "-Wall", "-Wextra", "-Wpedantic", "-Werror", "-fsyntax-only", "-x", "c++", "-"]


def complaint(compiler, folder, headers):
    """What the compiler says of a source that includes these headers; nothing where it is content."""
    source = "".join(f'#include "{header}"\n' for header in headers)
    command = [compiler, "-I", str(folder), "-DWATTLEAF_IMPORTS", *FLAGS]
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
    faults = [fault for order in orders
              if (fault := complaint(arguments.compiler, arguments.folder, order))]
    if faults:
        sys.exit("\n".join(faults))
    print(f"{len(headers)} headers, each alone and all in both orders")


if __name__ == "__main__":
    main()
