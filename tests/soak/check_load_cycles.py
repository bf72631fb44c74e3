"""Loads and frees the shipped library again and again, with all ten commands each time, and compares what stays
behind with what a library of the same runtime leaves that does next to nothing.

Cycles: those of the environment variable WATTLEAF_LOAD_CYCLES, otherwise a few. Once the host keeps loaded what the
library imports, nothing of the system or the runtime is freed with it, and next to nothing may stay. The exit status
is 0 if both limits are kept.
"""

import os
import sys

from notebook import Notebook, options_of_the_command_line, windows_path

A_FEW = 8
SECONDS = 600
# A lock and the statics of a thread, which the runtime frees only with the thread.
MOST_HEAP_BYTES_A_CYCLE = 256
# What the libraries of the system leave that are freed with the service.
MOST_OF_THE_SYSTEM = 4096
MOST_PRIVATE_BYTES = 64 * 1024
KINDS = ["bare", "idle", "commands", "keep", "bare", "idle", "commands"]


def rows_of(text):
    """Kind and cycles, then the added handles, private bytes and heap bytes."""
    rows = [line.split() for line in text.splitlines() if len(line.split()) == 5]
    return [(kind, *map(int, figures)) for kind, *figures in rows]


def findings(freed, kept):
    """Each argument: the rows of the bare library, of the idle service and of one with all commands."""
    for state, rows, most in (("freed", freed, MOST_OF_THE_SYSTEM), ("kept", kept, MOST_HEAP_BYTES_A_CYCLE)):
        _, cycles, _, _, bare = rows[0]
        for kind, _, _, _, heap in rows[1:]:
            if heap > bare + most * cycles:
                yield f"imports {state}, {kind}: {(heap - bare) / cycles:.0f} heap bytes a cycle"
    for kind, cycles, handles, private, _ in kept:
        if handles != 0:
            yield f"imports kept, {kind}: {handles:+} handles"
        if private > MOST_PRIVATE_BYTES:
            yield f"imports kept, {kind}: {private} private bytes"
    # With the imports freed, one handle of COM for each load of its library.
    for kind, cycles, handles, _, _ in freed[1:]:
        if handles > freed[0][2] + cycles:
            yield f"imports freed, {kind}: {handles:+} handles, the bare library has {freed[0][2]:+}"


def main():
    options = options_of_the_command_line(__doc__)
    notebook = Notebook(options, ["bare_library.dll"])
    notebook.empty_folders()
    cycles = int(os.environ.get("WATTLEAF_LOAD_CYCLES", A_FEW))
    settings = {"TZ": "Europe/Berlin", "WATTLEAF_PACKAGES": "address:plain",
                "WATTLEAF_LOG_FILE": windows_path(options.build / "load-cycles.log")}  # fmt: skip
    run = notebook.run([cycles, *KINDS], settings, SECONDS)
    rows = rows_of(run.stdout)
    # Some crashes end a program under Wine with status 0.
    if run.returncode != 0 or "load_cycles: complete" not in run.stdout or len(rows) != len(KINDS) - 1:
        sys.exit(f"load_cycles: status {run.returncode}\n{run.stdout[-2000:]}{run.stderr[-2000:]}")
    print("| imports | library | cycles | handles | private bytes a cycle | heap bytes a cycle |")
    for number, (kind, count, handles, private, heap) in enumerate(rows):
        state = "freed" if number < 3 else "kept"
        print(f"| {state} | {kind} | {count} | {handles:+} | {private / count:.0f} | {heap / count:.0f} |")
    found = list(findings(rows[:3], rows[3:]))
    if found:
        sys.exit("\n".join(found))


if __name__ == "__main__":
    main()
