#!/usr/bin/env python3
"""Compares the tables of virtual operations in a library of MSVC's ABI with the golden list.

A host calls by slot: the table of each class that implements a contract begins with the contract's operations, in the
golden order. The addresses are read from the library, their names from the linker's map beside it.
"""

import argparse
import collections
import re
import struct
import sys

# A contract of the golden list, and a class of the library that implements it.
IMPLEMENTATIONS = (
    ("ZQService", "WattleafService"),
    ("ZQAuthenticodeFacadeBase", "ZQAuthenticodeFacade"),
    ("ZQAuthenticodeFacade", "ZQAuthenticodeFacade"),
    ("IClientWithNoZqManifestCheckCriteria", "UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion"),
    ("IClientWithNoZqManifestCheckCriteria", "Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion"),
)
MAP_LINE = re.compile(r"^ [0-9a-f]{4}:[0-9a-f]{8} +(\S+) +([0-9a-f]{16}) ", re.MULTILINE)


def golden_slots(path):
    """The names of the operations in their order, by the last part of the class's name."""
    with open(path, encoding="utf-8") as golden:
        paragraphs = [paragraph.splitlines() for paragraph in golden.read().strip().split("\n\n")]
    return {lines[0].rpartition("::")[2]: [line.split()[1] for line in lines[1:]] for lines in paragraphs}


class Library:
    """The bytes of a library by address, and the names that the linker gave to addresses."""

    def __init__(self, path, map_path):
        with open(path, "rb") as file:
            self._data = file.read()
        header = struct.unpack_from("<I", self._data, 0x3C)[0]
        sections, optional_bytes = struct.unpack_from("<H", self._data, header + 6)[0], struct.unpack_from(
            "<H", self._data, header + 20)[0]
        self._base = struct.unpack_from("<Q", self._data, header + 24 + 24)[0]
        first = header + 24 + optional_bytes
        self._sections = [struct.unpack_from("<8xIIII", self._data, first + 40 * i) for i in range(sections)]
        self.names, self._addresses = collections.defaultdict(set), {}
        with open(map_path, encoding="ascii", errors="replace") as text:
            for name, address in MAP_LINE.findall(text.read()):
                self.names[int(address, 16)].add(name)
                self._addresses[name] = int(address, 16)

    def table(self, owner, count):
        """The addresses in the first slots of the class's table; None if the library has no such table."""
        start = next((address for name, address in self._addresses.items()
                      if name.startswith(f"??_7{owner}@") and name.endswith("@@6B@")), None)
        if start is None:
            return None
        for size, place, _, offset in self._sections:
            if place <= start - self._base < place + size:
                return struct.unpack_from(f"<{count}Q", self._data, start - self._base - place + offset)
        return None


def is_operation(name, wanted, contract, owner):
    """Whether a decorated name is that of the operation, which the class may have from its contract. A destructor's slot
    has the form for `delete`."""
    if wanted.startswith("~"):
        return re.match(rf"\?\?_[EG]{owner}@", name) is not None
    return re.match(rf"\?{wanted}@({owner}|{contract})@", name) is not None


def find_faults(library, contract, owner, operations):
    addresses = library.table(owner, len(operations))
    if addresses is None:
        yield f"has no table of {owner}"
        return
    for slot, (address, wanted) in enumerate(zip(addresses, operations)):
        names = library.names[address]
        if not any(is_operation(name, wanted, contract, owner) for name in names):
            yield f"slot {slot} of {owner} is {sorted(names) or 'no function'}, but {wanted} in {contract}"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--golden", required=True)
    parser.add_argument("--map", required=True)
    parser.add_argument("library")
    arguments = parser.parse_args()
    golden = golden_slots(arguments.golden)
    library = Library(arguments.library, arguments.map)
    faults, count = [], 0
    for contract, owner in IMPLEMENTATIONS:
        count += len(golden[contract])
        faults += find_faults(library, contract, owner, golden[contract])
    if faults:
        sys.exit("\n".join(f"{arguments.library}: {fault}" for fault in faults))
    print(f"{count} slots are those of the golden list")


if __name__ == "__main__":
    main()
