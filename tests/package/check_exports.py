#!/usr/bin/env python3
"""Compares what the library exports with what the installed headers declare as imported.

Every export is a declared member, function or constant, or the table or type information of a declared class; every
declaration that has no body in a header is exported. clang lists the declarations with their names for the linker.
"""

import argparse
import json
import pathlib
import re
import subprocess
import sys

FACTORY = "ZQCreateService"
FACTORY_HEADER = re.compile(rf'^extern "C" WATTLEAF_API Zq::Gantry::Server::Services::ZQService\* {FACTORY}\(\);$', re.M)
FUNCTIONS = {"FunctionDecl", "CXXMethodDecl", "CXXConstructorDecl", "CXXDestructorDecl", "CXXConversionDecl", "VarDecl"}
# The other library's contract, which this one imports too.
LOGGING = "_ZN2Zq6Gantry7Logging"
TABLES = ("_ZTV", "_ZTI", "_ZTS")


def standard_folders(compiler):
    # clang does not find libstdc++ by itself, because it does not accept Debian's "12-posix" as a version.
    library = subprocess.check_output([compiler, "-print-libgcc-file-name"], text=True)
    headers = pathlib.Path(library.strip()).parent / "include/c++"
    return [headers, headers / "x86_64-w64-mingw32", headers / "backward"]


def declarations(clang, compiler, folder):
    """clang's trees of the system's declarations in all headers of the folder."""
    headers = sorted(path.relative_to(folder).as_posix() for path in folder.rglob("*.h"))
    command = [clang, "--target=x86_64-w64-mingw32", "-std=c++20", "-nostdinc++",
               *(word for standard in standard_folders(compiler) for word in ("-isystem", str(standard))),
               f"-I{folder}", "-DWATTLEAF_IMPORTS", "-fsyntax-only", "-Xclang", "-ast-dump=json",
               "-Xclang", "-ast-dump-filter=Zq", "-x", "c++", "-"]
    source = "".join(f'#include "{header}"\n' for header in headers)
    text = subprocess.run(command, input=source, capture_output=True, text=True, check=True).stdout
    decoder, at = json.JSONDecoder(), 0
    while at < len(text):
        tree, at = decoder.raw_decode(text, at)
        yield tree
        while at < len(text) and text[at].isspace():
            at += 1


def collect(node, imported, declared, needed):
    """Adds the names of what is imported to `declared`, and to `needed` those without a body in the header. The members
    of an imported class are imported."""
    children = node.get("inner", [])
    imported = imported or any(child.get("kind") == "DLLImportAttr" for child in children)
    name = node.get("mangledName")
    if imported and name and node["kind"] in FUNCTIONS and not name.startswith(LOGGING):
        declared.add(name)
        has_body = any(child.get("kind") == "CompoundStmt" for child in children)
        generated = node.get("isImplicit") or node.get("explicitlyDefaulted") or node.get("explicitlyDeleted")
        if not (has_body or generated or node.get("pure")):
            needed.add(name)
    inner_imported = imported and node.get("kind") == "CXXRecordDecl"
    for child in children:
        collect(child, inner_imported, declared, needed)


def read_exports(objdump, library):
    run = subprocess.run([objdump, "-p", library], capture_output=True, text=True, check=True)
    _, _, names = run.stdout.partition("[Ordinal/Name Pointer] Table")
    return set(re.findall(r"^\s*\[\s*\d+\] (\S+)$", names, re.MULTILINE))


def with_one_constructor(name):
    """Of constructors and destructors the compiler writes variants for bases and for `delete`: clang lists only one."""
    return re.sub(r"(C|D)[0-2](?=E)", r"\g<1>1", name)


def find_faults(exports, declared, needed):
    declared = {with_one_constructor(name) for name in declared}
    # A class in the name of a member: _ZN <class> <member> E.
    for name in sorted(exports - {FACTORY}):
        if name.startswith(TABLES):
            owner = name[4:].removesuffix("E")
            if not any(owner in member for member in declared):
                yield f"exports {name}, of a class that no installed header declares"
        elif with_one_constructor(name) not in declared:
            yield f"exports {name}, which no installed header declares"
    for name in sorted(needed - exports):
        yield f"does not export {name}, which an installed header declares"


def exported_lines(header):
    return [line.strip() for line in header.read_text(encoding="utf-8").splitlines() if "WATTLEAF_API " in line]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--clang", required=True)
    parser.add_argument("--compiler", required=True)
    parser.add_argument("--objdump", required=True)
    parser.add_argument("--source", type=pathlib.Path, required=True)
    parser.add_argument("headers", type=pathlib.Path)
    parser.add_argument("library", type=pathlib.Path)
    arguments = parser.parse_args()
    declared, needed = set(), set()
    for tree in declarations(arguments.clang, arguments.compiler, arguments.headers):
        collect(tree, False, declared, needed)
    exports = read_exports(arguments.objdump, arguments.library)
    faults = list(find_faults(exports, declared, needed))
    header = (arguments.headers / "service/service_factory.h").read_text(encoding="utf-8")
    if not (FACTORY in exports and FACTORY_HEADER.search(header)):
        faults.append(f"{FACTORY} is not both exported and declared")
    # A type of a result is not part of a name.
    inside, outside = arguments.source / "src/collection/wattleaf_helper.h", arguments.headers / "collection/helper_operations.h"
    if not exported_lines(inside) or exported_lines(inside) != exported_lines(outside):
        faults.append(f"{inside} and {outside} declare other operations as exported")
    if faults:
        sys.exit("\n".join(faults))
    print(f"{len(exports)} exports, {len(needed)} of them declared without a body")


if __name__ == "__main__":
    main()
