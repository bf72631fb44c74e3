#!/usr/bin/env python3
"""Runs the commands of docs/keys.md and compares what they print with the page.

keys_page.py SOURCE --whole
    runs them as they are, in SOURCE. Builds the library for release.

keys_page.py SOURCE --build BUILD --prefix PREFIX
    takes what the commands would build from BUILD, a finished build with development keys: only the source with the
    keys is compiled again, and library and host are linked and the collector is signed with the commands of BUILD.
    The notebook is the one in PREFIX, in a folder of its own. All other commands run as they are."""

import argparse
import json
import os
import re
import shlex
import shutil
import subprocess
import sys
from pathlib import Path

# What the page calls its build folder, and where it installs the host.
PAGE_BUILD = "build/windows-release"
INSTALLED = "Program Files/Wattleaf"
OWN_INSTALLED = "Program Files/Wattleaf own keys"

# Stand for the commands of the page that build and install. Bash calls them in place of the programs.
STAND_INS = """
cmake() { "$KEYS_PAGE" --step cmake "$@"; }
tools/prepare-notebook() { "$KEYS_PAGE" --step install "$@"; }
tools/under-wine() { local program=$2; shift 2; command tools/under-wine "$PREFIX" "${program/Wattleaf/$OWN}" "$@"; }
"""


def blocks_of(page):
    """The blocks of shell commands, each with the lines of the block of text that follows it before the next one."""
    found = []
    for kind, body in re.findall(r"^```(sh|text)\n(.*?)^```", page, re.MULTILINE | re.DOTALL):
        if kind == "sh":
            found.append((body, []))
        else:
            found[-1][1].extend(body.splitlines())
    return found


def is_in(wanted, line):
    """Whether the parts of `wanted` between its "..." are in the line, in this order; blanks count once."""
    parts = [re.escape(" ".join(part.split())) for part in wanted.split("...")]
    return re.search(".*".join(parts), " ".join(line.split())) is not None


def missing_lines(wanted, output):
    return [line for line in wanted if not any(is_in(line, one) for one in output.splitlines())]


def run_blocks(blocks, source, preface, environment):
    """Runs the blocks in one shell, so that variables stay. Returns the mistakes."""
    mark = "== end of block"
    script = preface + "set -euo pipefail\n" + "".join(f"{body}\necho '{mark}'\n" for body, _ in blocks)
    run = subprocess.run(["bash", "-c", script], cwd=source, env=environment, stdin=subprocess.DEVNULL,
                         stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace")  # fmt: skip
    outputs = run.stdout.split(mark + "\n")
    mistakes = [f"the page shows a line that was not printed: {line}"
                for (_, wanted), output in zip(blocks, outputs) for line in missing_lines(wanted, output)]  # fmt: skip
    if run.returncode != 0:
        mistakes.append(f"status {run.returncode} in block {len(outputs)} of {len(blocks)}")
    if mistakes:
        print("\n".join(run.stdout.splitlines()[-60:]))
    return mistakes


class Build:
    """The stand-ins' half of a build: what depends on the keys, made again with the commands of a finished build."""

    def __init__(self):
        self.source, self.build, self.own = (Path(os.environ[name]) for name in ("SOURCE", "BUILD", "OWN_BUILD"))
        self.settings, self.keys_object = self.own / "settings.json", self.own / "trusted_keys.obj"
        listing = subprocess.run(["ninja", "-C", self.build, "-t", "compdb", "-x"], check=True, capture_output=True)
        self.commands = {}
        for one in json.loads(listing.stdout[listing.stdout.index(b"[") :]):
            self.commands.setdefault(one["output"], one["command"])

    def cmake(self, arguments):
        if arguments[0] == "--preset":
            self.settings.write_text(json.dumps(arguments[2:]))
            self.embed_keys(arguments[2:])
        elif arguments[0] == "--build":
            settings = json.loads(self.settings.read_text())
            self.embed_keys(settings)
            signing = [text.split("=", 1)[1] for text in settings if text.startswith("-DWATTLEAF_SIGNING_KEY=")]
            self.make(signing[0])
        else:
            sys.exit(f"this command of the page is new: cmake {shlex.join(arguments)}")

    def embed_keys(self, settings):
        """The configuration's own steps: checks the lists and the signing key, and writes the header of the keys."""
        script = self.own / "embed.cmake"
        script.write_text("cmake_minimum_required(VERSION 3.25)\n"
                          f'list(APPEND CMAKE_MODULE_PATH "{self.source}/cmake")\ninclude(EmbedKeys)\n')  # fmt: skip
        subprocess.run(["cmake", "-DWATTLEAF_KEYS=supplied", *settings, "-P", script], cwd=self.own, check=True)

    def make(self, signing):
        for folder in ("bin", "signed", "lib"):
            (self.own / folder).mkdir(exist_ok=True)
        [keys] = [name for name in self.commands if "Supplied.dir" in name and name.endswith("trusted_keys.cpp.obj")]
        self.run(keys, {keys: self.keys_object, self.build / "generated/supplied": self.own / "generated"})
        self.run("bin/supplied/WattleafService.dll", {
            keys: self.keys_object, "bin/supplied/WattleafService.dll": self.own / "bin/WattleafService.dll",
            "lib/supplied/": f"{self.own}/lib/"})  # fmt: skip
        self.run("signed/TelemetryZQXWrapper.dll", {
            self.build / "development-key": signing, self.build / "signed": self.own / "signed"})  # fmt: skip

    def run(self, output, replaced):
        """The command that makes a file of the finished build, with other names in it."""
        command = self.commands[output]
        for old, new in replaced.items():
            command = command.replace(str(old), str(new))
        subprocess.run(command, shell=True, cwd=self.build, check=True, stdout=subprocess.DEVNULL)

    def install(self):
        # Linked before the archives, the object takes the place of their member with the other keys. The link takes
        # seconds, so it is made only here.
        self.run("bin/wattleaf_host.exe", {
            "-o bin/wattleaf_host.exe": f"{self.keys_object} -o {self.own}/bin/wattleaf_host.exe",
            "lib/libwattleaf_host.dll.a": self.own / "lib/libwattleaf_host.dll.a",
            # After the link the debug symbols are split off.
            self.build / "bin/wattleaf_host.exe": self.own / "bin/wattleaf_host.exe"})  # fmt: skip
        drive = Path(os.environ["PREFIX"]) / "drive_c"
        own = drive / OWN_INSTALLED
        shutil.rmtree(own, ignore_errors=True)
        shutil.copytree(drive / INSTALLED, own, ignore=shutil.ignore_patterns("Icons"))
        for part in ("bin/WattleafService.dll", "bin/wattleaf_host.exe", "signed/TelemetryZQXWrapper.dll"):
            shutil.copy(self.own / part, own)


def main():
    if sys.argv[1] == "--step":
        build = Build()
        return build.cmake(sys.argv[3:]) if sys.argv[2] == "cmake" else build.install()
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("source", type=Path)
    parser.add_argument("--whole", action="store_true")
    parser.add_argument("--build", type=Path)
    parser.add_argument("--prefix", type=Path)
    options = parser.parse_args()

    # The page's first commands begin with an empty folder.
    shutil.rmtree(options.source / "build/operator", ignore_errors=True)
    page, preface, environment = (options.source / "docs/keys.md").read_text(), "", dict(os.environ)
    if not options.whole:
        own = options.build / "keys-page"
        shutil.rmtree(own, ignore_errors=True)
        own.mkdir()
        page, preface = page.replace(PAGE_BUILD, str(own)), STAND_INS
        environment |= {"KEYS_PAGE": str(Path(__file__).resolve()), "SOURCE": str(options.source), "OWN_BUILD": str(own),
                        "BUILD": str(options.build), "PREFIX": str(options.prefix), "OWN": Path(OWN_INSTALLED).name}  # fmt: skip
    blocks = blocks_of(page)
    mistakes = run_blocks(blocks, options.source, preface, environment)
    if mistakes:
        sys.exit("docs/keys.md: " + "; ".join(mistakes))
    print(f"docs/keys.md: {sum(len(body.splitlines()) for body, _ in blocks)} lines of shell in {len(blocks)} blocks ran, "
          f"{sum(len(wanted) for _, wanted in blocks)} lines of output as shown")  # fmt: skip


if __name__ == "__main__":
    main()
