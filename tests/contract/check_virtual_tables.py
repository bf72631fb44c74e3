#!/usr/bin/env python3
"""Compares the tables of virtual operations, as laid out for MSVC, with a golden list.

The production host is built by MSVC and calls by slot; clang lays out tables in the same way and prints
them. Only the order and the names of the slots are compared.
"""

import argparse
import difflib
import re
import shlex
import subprocess
import sys


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--clang", required=True)
    parser.add_argument("--include", required=True, help="folder of the contract headers")
    parser.add_argument("--standard", required=True, help="folder of the standard headers")
    parser.add_argument("--source", required=True)
    parser.add_argument("--golden", required=True)
    parser.add_argument("--print", action="store_true", help="print the new list and stop")
    return parser.parse_args()


def dump_layouts(arguments):
    command = [arguments.clang, "--target=x86_64-pc-windows-msvc", "-std=c++20", "-nostdinc",
               "-isystem", arguments.standard, "-I", arguments.include, "-Wall", "-Wextra",
               "-Werror", "-Xclang", "-fdump-vtable-layouts", "-S", "-emit-llvm", "-o", "-",
               arguments.source]
    run = subprocess.run(command, capture_output=True, text=True)
    if run.returncode != 0:
        sys.exit("The contract headers do not compile with standard types that are only declared:\n"
                 f"{run.stderr}\nThe command was: {shlex.join(command)}")
    return run.stdout + run.stderr


def operation_name(entry):
    """The name in 'int Space::Class::Name(int, Space::Type *) [pure]'."""
    text = re.sub(r"<[^<>]*>", "", entry)
    return re.search(r"([~\w]+)\(", text).group(1)


def normalise(dump):
    """A paragraph for each class, sorted by name: the class, then number and name of each slot."""
    classes = {}
    current = None
    for line in dump.splitlines():
        heading = re.match(r"VFTable indices for '(.+)' \(\d+ entr(?:y|ies)\)\.", line)
        entry = re.match(r"\s*(\d+) \| (.+)", line)
        if heading:
            current = classes.setdefault(heading.group(1), [])
        elif current is not None and entry:
            current.append(f"  {entry.group(1)} {operation_name(entry.group(2))}")
        else:
            current = None
    paragraphs = ["\n".join([name, *slots]) + "\n" for name, slots in sorted(classes.items())]
    return "\n".join(paragraphs)


def main():
    arguments = parse_arguments()
    found = normalise(dump_layouts(arguments))
    if arguments.print:
        print(found, end="")
        return
    with open(arguments.golden, encoding="utf-8") as golden:
        expected = golden.read()
    if found == expected:
        return
    diff = difflib.unified_diff(expected.splitlines(), found.splitlines(), arguments.golden,
                                "the headers as they are", lineterm="", n=100)
    print("\n".join(diff))
    sys.exit("\nThe order of virtual operations is a contract with a host that calls by slot. If the\n"
             "change is intended, this prints the new list:\n  "
             + shlex.join([sys.executable, *sys.argv, "--print"]))


if __name__ == "__main__":
    main()
