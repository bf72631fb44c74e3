"""Compares the oracle's texts of numbers with a table that the JSON writer printed.

number_check.py PROGRAM...: the command that prints the table, with an emulator if it needs one.
"""

import struct
import subprocess
import sys

from written_numbers import written

SMALLEST_TABLE = 20_000


def main():
    table = subprocess.run(sys.argv[1:], check=True, capture_output=True, text=True).stdout
    rows = [line.split() for line in table.splitlines()]
    for pattern, text in rows:
        number = struct.unpack(">f", bytes.fromhex(pattern))[0]
        if written(number) != text:
            sys.exit(f"bits {pattern}: the writer prints {text}, the oracle {written(number)}")
    if len(rows) < SMALLEST_TABLE:
        sys.exit(f"only {len(rows)} numbers in the table")
    print(f"{len(rows)} numbers agree")


if __name__ == "__main__":
    main()
