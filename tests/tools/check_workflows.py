#!/usr/bin/env python3
"""Checks .github/workflows: that each file can be parsed and has jobs with steps, and that the presets and the commands
of this repository that it names exist.

check_workflows.py SOURCE"""

import json
import os
import re
import sys
from pathlib import Path

import yaml

# `cmake --build --preset X` names a build preset, and so on.
PRESETS = (
    (re.compile(r"\bcmake --preset ([\w-]+)"), "configurePresets"),
    (re.compile(r"\bcmake --build --preset ([\w-]+)"), "buildPresets"),
    (re.compile(r"\bctest --preset ([\w-]+)"), "testPresets"),
)
# A command of this repository: a path at the beginning of a line or after && or ||.
OWN_COMMAND = re.compile(r"(?:^|&&|\|\|)\s*((?:\./|\.ci/|tools/|run$|test$)\S*)", re.MULTILINE)


def step_mistakes(step, source, presets):
    if ("uses" in step) == ("run" in step):
        yield "has not exactly one of uses and run"
    if "uses" in step and not re.fullmatch(r"[\w-]+/[\w-]+@v\d+", step["uses"]):
        yield f"uses {step['uses']}, which names no version"
    script = step.get("run", "")
    for pattern, kind in PRESETS:
        for name in pattern.findall(script):
            if name not in presets[kind]:
                yield f"names {name}, which is not among the {kind} of CMakePresets.json"
    for command in OWN_COMMAND.findall(script):
        if not os.access(source / command, os.X_OK):
            yield f"runs {command}, which is not an executable file here"


def mistakes(text, source):
    """The mistakes of one workflow."""
    presets = json.loads((source / "CMakePresets.json").read_text())
    presets = {kind: {one["name"] for one in presets[kind] if not one.get("hidden")} for _, kind in PRESETS}
    try:
        workflow = yaml.safe_load(text)
    except yaml.YAMLError as fault:
        return [f"is not YAML: {fault}"]
    found = []
    # YAML reads the key "on" as true.
    if not isinstance(workflow, dict) or not workflow.get(True) or not workflow.get("jobs"):
        return ["has no jobs, or nothing that starts them"]
    for name, job in workflow["jobs"].items():
        if not job.get("runs-on") or not job.get("timeout-minutes") or not job.get("steps"):
            found.append(f"{name}: lacks runs-on, timeout-minutes or steps")
        for number, step in enumerate(job.get("steps", []), 1):
            found += [f"{name}, step {number} {one}" for one in step_mistakes(step, source, presets)]
    return found


def main():
    source = Path(sys.argv[1])
    files = sorted((source / ".github/workflows").glob("*.yml"))
    found = [f"{file.name}: {one}" for file in files for one in mistakes(file.read_text(), source)]
    baseline = json.loads((source / "vcpkg.json").read_text()).get("builtin-baseline", "")
    if not re.fullmatch("[0-9a-f]{40}", baseline):
        found.append(f"vcpkg.json: its baseline is {baseline!r}, but must be a commit")
    if not files:
        found.append("there is no workflow")
    if found:
        sys.exit("\n".join(found))
    print(f"{len(files)} workflows are in order")


if __name__ == "__main__":
    main()
