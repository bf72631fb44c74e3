#!/usr/bin/env python3
"""Builds the library twice in two folders of different names and compares its bytes, those of its debug symbols and those
of its import library.

Two sources are compiled in a copy of src/ in each folder; all other objects are those of the build, so that this takes
seconds. tools/check-reproducible compiles everything twice.
"""

import argparse
import hashlib
import json
import pathlib
import shlex
import shutil
import subprocess
import sys

SOURCES = ("service/wattleaf_service.cpp", "service/zq_service.cpp")
FOLDERS = ("first", "second-folder-with-a-longer-name")
LIBRARY = "WattleafService.dll"


def replaced(text, old, new):
    if old not in text:
        sys.exit(f"the command has no {old}: {text}")
    return text.replace(old, new)


def compile_source(entry, source, folder, options, tree):
    """Compiles the folder's copy of a source as the build does, but with the options of what is shipped and without the
    precompiled header. Returns the object of the build, which the new one replaces, and the new one."""
    words = shlex.split(entry["command"])
    if "-include" in words:
        at = words.index("-include")
        del words[at:at + 2]
    at = words.index("-o")
    old, new = words[at + 1], str(folder / f"{pathlib.Path(source).stem}.obj")
    words[at + 1] = new
    words = [word.replace(str(tree / "src"), str(folder / "sources")) for word in words]
    subprocess.run([*words, *options], cwd=folder, check=True)
    return old, new


def build(arguments, folder, link, entries):
    shutil.copytree(arguments.tree / "src", folder / "sources")
    # The linker chooses the address of the library by its path as it is given, so the link runs in this folder.
    (folder / "bin").mkdir()
    for name in ("lib", "src"):
        (folder / name).symlink_to(arguments.build / name)
    options = [option.replace("<folder>", str(folder)) for option in arguments.options]
    command = link["command"]
    command = replaced(command, f"{arguments.build}/bin/{LIBRARY}", f"{folder}/bin/{LIBRARY}")
    command = replaced(command, f"--out-implib,lib/{LIBRARY}.a", f"--out-implib,bin/{LIBRARY}.a")
    for source in SOURCES:
        old, new = compile_source(entries[source], source, folder, options, arguments.tree)
        command = replaced(command, f" {old} ", f" {new} ")
    subprocess.run(command, shell=True, cwd=folder, check=True)


def time_of_link(library):
    data = library.read_bytes()
    header = int.from_bytes(data[0x3C:0x40], "little")
    return int.from_bytes(data[header + 8:header + 12], "little")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--tree", type=pathlib.Path, required=True)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--config", required=True)
    parser.add_argument("--ninja", required=True)
    parser.add_argument("work", type=pathlib.Path)
    parser.add_argument("options", nargs="*", help="of the compiler; <folder> stands for the folder that is built in")
    arguments = parser.parse_args()

    rule = f"CXX_SHARED_LIBRARY_LINKER__WattleafService_{arguments.config}"
    link, = json.loads(subprocess.check_output(
        [arguments.ninja, "-C", arguments.build, "-t", "compdb", "-x", rule], text=True))
    commands = json.loads((arguments.build / "compile_commands.json").read_text(encoding="utf-8"))
    entries = {pathlib.Path(entry["file"]).relative_to(arguments.tree / "src").as_posix(): entry for entry in commands
               if entry["file"].startswith(f"{arguments.tree}/src/") and "wattleaf_windows.dir" in entry["command"]}

    shutil.rmtree(arguments.work, ignore_errors=True)
    for name in FOLDERS:
        build(arguments, arguments.work / name, link, entries)

    differ = False
    for name in (LIBRARY, f"{LIBRARY}.debug", f"{LIBRARY}.a"):
        digests = [hashlib.sha256((arguments.work / folder / "bin" / name).read_bytes()).hexdigest() for folder in FOLDERS]
        print(f"{name}: {' '.join(digests)}")
        differ = differ or len(set(digests)) != 1
    time = time_of_link(arguments.work / FOLDERS[0] / "bin" / LIBRARY)
    if differ or time != 0:
        sys.exit(f"The two builds differ, or the library has the time of its link ({time}).")


if __name__ == "__main__":
    main()
