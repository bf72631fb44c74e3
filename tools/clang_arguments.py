"""What clang needs to read a source of a build as GCC does; for tools/check and tools/mutate."""

import pathlib
import shlex
import subprocess


def mingw_arguments():
    """The target and its headers."""
    # clang does not find libstdc++ by itself, because it does not accept Debian's "12-posix" as a version.
    library = subprocess.check_output(
        ["x86_64-w64-mingw32-g++-posix", "-print-libgcc-file-name"], text=True)
    headers = pathlib.Path(library.strip()).parent / "include/c++"
    folders = [headers, headers / "x86_64-w64-mingw32", headers / "backward"]
    return ["--target=x86_64-w64-mingw32", "-nostdinc++",
            *(word for folder in folders for word in ("-isystem", str(folder)))]


def build_arguments(command):
    """Language, definitions and include folders of the build; the other options are for GCC only."""
    words = iter(shlex.split(command))
    kept = []
    for word in words:
        if word == "-isystem":
            kept += [word, next(words)]
        elif word.startswith(("-D", "-I", "-std=")):
            kept.append(word)
    return kept
