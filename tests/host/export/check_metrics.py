#!/usr/bin/env python3
"""check_metrics.py PROGRAM: runs the program, which prints metrics, and passes them to `promtool check metrics`
(Debian package prometheus). Fails unless promtool accepts them without a complaint, and unless each name of the
format's page is among them."""

import pathlib
import re
import subprocess
import sys

PAGE = pathlib.Path(__file__).resolve().parents[3] / "docs/formats/host-output.md"


def main():
    metrics = subprocess.run([sys.argv[1]], stdout=subprocess.PIPE, check=True).stdout
    check = subprocess.run(["promtool", "check", "metrics"], input=metrics, stdout=subprocess.PIPE,
                           stderr=subprocess.STDOUT, check=False)
    if check.returncode != 0 or check.stdout:
        sys.exit(f"promtool, status {check.returncode}:\n{check.stdout.decode()}")

    printed = set(re.findall(r"^# TYPE (\w+) ", metrics.decode(), re.MULTILINE))
    described = set(re.findall(r"^\| `(wattleaf_\w+)", PAGE.read_text(encoding="utf-8"), re.MULTILINE))
    if printed != described:
        sys.exit(f"{PAGE.name} and the metrics differ: {sorted(printed ^ described)}")


main()
