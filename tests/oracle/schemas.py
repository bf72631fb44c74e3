"""The published JSON Schemas of answers, stores and the host's output (docs/schemas), and whether a text keeps them."""

import functools
import json
from pathlib import Path

from jsonschema import Draft202012Validator
from jsonschema.validators import extend

FOLDER = Path(__file__).resolve().parents[2] / "docs" / "schemas"
TOP_APPLICATIONS = 2
LEDGER = "power-consumption"
STORE = "powerlog"
HOST_ANSWERS = "host-answers"
EXPORT_ROW = "export-row"


def schema_names():
    return sorted(path.stem for path in FOLDER.glob("*.json"))


def schema_of_command(number):
    """The name of the schema for the answers of a command."""
    [name] = [name for name in schema_names() if name.startswith(f"command-{number}-")]
    return name


def read_schema(name):
    return json.loads((FOLDER / f"{name}.json").read_text(encoding="utf-8"))


# Half of the texts of a scenario are equal to an earlier one.
@functools.cache
def violation(name, text):
    """The first violation of the schema by `text`, or None. Python's NaN and Infinity are not JSON."""
    try:
        value = json.loads(text, parse_constant=_refuse)
    except ValueError as error:
        return f"not JSON: {error}"
    for error in _validator(name).iter_errors(value):
        return f"{error.json_path}: {error.message}"
    return None


def is_cut_off_ranking(text):
    """The documented form of a ranking whose energies add up to 0, which is not JSON."""
    return text.startswith('[{"Name":"') and text.endswith('"Value":')


@functools.cache
def _validator(name):
    valid_rows = set()

    def items(validator, row_schema, rows, schema):
        """The keyword, for each different row once: most rows of a store were in the one before."""
        first = len(schema.get("prefixItems", []))
        for index, row in enumerate(rows[first:] if validator.is_type(rows, "array") else [], first):
            key = id(row_schema), repr(row)
            if key in valid_rows:
                continue
            errors = list(validator.descend(row, row_schema, path=index))
            if not errors:
                valid_rows.add(key)
            yield from errors

    return extend(Draft202012Validator, {"items": items})(read_schema(name))


def _refuse(constant):
    raise ValueError(constant)
