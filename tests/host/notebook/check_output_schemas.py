"""Runs the installed host on the simulated notebook and validates its output for programs against the
published schemas: the answers of serve-once, and each row of export.

check_output_schemas.py --oracle FOLDER EMULATOR...

FOLDER has the module of the schemas. EMULATOR is the command that runs a Windows program in the
notebook's prefix."""

import argparse
import json
import os
import subprocess
import sys

HOST = "C:\\Program Files\\Wattleaf\\wattleaf_host.exe"
LEAST_ROWS = 40


def output_of(emulator, *arguments):
    environment = {**os.environ, "WATTLEAF_COLLECTOR_DAYS": "10"}
    run = subprocess.run([*emulator, HOST, *arguments], env=environment, stdin=subprocess.DEVNULL,
                         capture_output=True, text=True, encoding="utf-8")  # fmt: skip
    if run.returncode != 0:
        sys.exit(f"{arguments[0]}: status {run.returncode}: {run.stderr}")
    return run.stdout


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--oracle", required=True)
    parser.add_argument("emulator", nargs="*")
    options = parser.parse_args()
    sys.path.insert(0, options.oracle)
    import schemas

    def validate(schema, text):
        found = schemas.violation(schema, text)
        if found is not None:
            sys.exit(f"violates the schema {schema}: {found}\n{text[:500]}")

    answers = output_of(options.emulator, "serve-once", "--json")
    validate(schemas.HOST_ANSWERS, answers)
    for answer in json.loads(answers)["commands"]:
        validate(schemas.schema_of_command(answer["number"]), json.dumps(answer["value"]))
    rows = output_of(options.emulator, "export", "--format", "ndjson").splitlines()
    for row in rows:
        validate(schemas.EXPORT_ROW, row)
    if len(rows) < LEAST_ROWS:
        sys.exit(f"only {len(rows)} rows of the export")
    print(f"the answers and {len(rows)} rows of the export keep their schemas")


if __name__ == "__main__":
    main()
