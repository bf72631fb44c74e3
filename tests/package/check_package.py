#!/usr/bin/env python3
"""Checks an installed package: its files, versions, bill of materials, licences, links of documents, and the debug
symbols that are installed apart."""

import argparse
import hashlib
import json
import pathlib
import re
import subprocess
import sys
import zlib

PROGRAMS = {"WattleafService.dll", "libgcc_s_seh-1.dll", "libstdc++-6.dll", "libwinpthread-1.dll", "wattleaf_host.exe"}
# Exactly the headers of what the library shares, and those that they include.
HEADERS = {
    "abi/value_shapes.h",
    "abi/xml_shapes.h",
    "collection/helper_operations.h",
    "logging/trace_logger.h",
    "platform/win32/unique_resource.h",
    "platform/winrt/runtime_reference.h",
    "platform/winrt/runtime_text.h",
    "security/access/access_manager.h",
    "security/access/client_information.h",
    "security/access/client_manifest_criteria.h",
    "security/access/exemption_white_lists.h",
    "security/access/manifest_exemption.h",
    "security/access/rpc_security_helper.h",
    "security/access/rule_validators.h",
    "security/access/tool_launch_table.h",
    "security/facade/zq_authenticode_facade.h",
    "security/trust/signer_descriptor.h",
    "security/trust/util_helper.h",
    "security/trust/zq_authenticode_helper.h",
    "service/command_table.h",
    "service/service_factory.h",
    "service/zq_service.h",
    "wattleaf_export.h",
    "wattleaf_version.h",
}
LIBRARIES = {
    "WattleafService.dll.a",
    "cmake/WattleafService/WattleafServiceConfig.cmake",
    "cmake/WattleafService/WattleafServiceConfigVersion.cmake",
    "cmake/WattleafService/WattleafServiceTargets.cmake",
}
SHARE = "share/WattleafService"
BOM = f"{SHARE}/WattleafService.spdx.json"
# The parts of others, and how the package has them.
PARTS = {
    "CLI11": "STATIC_LINK",
    "GCC-runtime": "DYNAMIC_LINK",
    "PCRE2": "STATIC_LINK",
    "RapidJSON": "STATIC_LINK",
    "mingw-w64-winpthreads": "DYNAMIC_LINK",
    "pugixml": "STATIC_LINK",
}
# A sentence of each licence.
LICENCE_TEXTS = {
    "CLI11": "Redistribution and use in source and binary forms",
    "GCC-runtime": "GCC Runtime Library Exception",
    "PCRE2": "PCRE2 is a library of functions to support regular expressions",
    "RapidJSON": "Permission is hereby granted, free of charge",
    "mingw-w64-winpthreads": "mingw-w64-libraries/winpthreads",
    "pugixml": "Permission is hereby granted, free of charge",
}
LINK = re.compile(r"\[[^\]]*\]\(([\w./-]+)(?:#[\w-]*)?\)")


def files_below(folder):
    return {file.relative_to(folder).as_posix() for file in folder.rglob("*") if file.is_file()}


def compare(what, found, wanted):
    for name in sorted(found - wanted):
        yield f"{what}: {name} is too many"
    for name in sorted(wanted - found):
        yield f"{what}: {name} is missing"


def check_files(package, source):
    yield from compare("the package", {entry.name for entry in package.iterdir()},
                       {"README.md", "bin", "include", "lib", "share"})
    yield from compare("bin", files_below(package / "bin"), PROGRAMS)
    yield from compare("include", files_below(package / "include/WattleafService"), HEADERS)
    targets = re.compile(r"cmake/WattleafService/WattleafServiceTargets-\w+\.cmake")
    yield from compare("lib", {name for name in files_below(package / "lib") if not targets.fullmatch(name)}, LIBRARIES)
    for folder in ("docs", "examples"):
        wanted = {name for name in files_below(source / folder) if not name.startswith("images/")}
        if not wanted:
            yield f"{source / folder} is empty"
        yield from compare(folder, files_below(package / SHARE / folder), wanted)


def version_of_header(package):
    text = (package / "include/WattleafService/wattleaf_version.h").read_text(encoding="utf-8")
    macros = dict(re.findall(r'^#define WATTLEAF_VERSION_(\w+) "?([\d.]+)"?$', text, re.MULTILINE))
    numbers = ".".join(macros.get(name, "?") for name in ("MAJOR", "MINOR", "PATCH"))
    return macros.get("TEXT") if macros.get("TEXT") == numbers else f"{macros.get('TEXT')} and {numbers}"


def text_of_resource(library, key):
    """A text of the version resource, in which a zero and padding follow the key."""
    data = library.read_bytes()
    at = data.find((key + "\0").encode("utf-16-le"))
    if at < 0:
        return None
    text = data[at + 2 * len(key):][:512].decode("utf-16-le", "replace").lstrip("\0")
    return text.split("\0", 1)[0]


def version_of_changelog(file):
    newest = re.search(r"^## \[([\d.]+)\]", file.read_text(encoding="utf-8"), re.MULTILINE)
    return newest[1] if newest else None


def check_versions(package):
    versions = {
        "wattleaf_version.h": version_of_header(package),
        "FileVersion of the library": text_of_resource(package / "bin/WattleafService.dll", "FileVersion"),
        "ProductVersion of the library": text_of_resource(package / "bin/WattleafService.dll", "ProductVersion"),
        "CHANGELOG.md": version_of_changelog(package / SHARE / "CHANGELOG.md"),
        "the bill of materials": json.loads((package / BOM).read_text(encoding="utf-8"))["packages"][0]["versionInfo"],
    }
    if len(set(versions.values())) != 1 or None in versions.values():
        yield f"the versions differ: {versions}"


def check_keys(package, notice):
    """The notice about the keys is in the version resource and in the package's first page."""
    found = text_of_resource(package / "bin/WattleafService.dll", "SpecialBuild")
    if found != (notice or None):
        yield f'the version resource says "{found}" about the keys instead of "{notice}"'
    if notice not in (package / "README.md").read_text(encoding="utf-8"):
        yield f'README.md does not say "{notice}"'


def check_bom(package):
    bom = json.loads((package / BOM).read_text(encoding="utf-8"))
    main, *parts = bom["packages"]
    digests = {name: (package / name).read_bytes() for name in files_below(package) - {BOM}}
    listed = {file["fileName"].removeprefix("./"): {sum["algorithm"]: sum["checksumValue"] for sum in file["checksums"]}
              for file in bom["files"]}
    yield from compare("the bill of materials", set(listed), set(digests))
    for name in set(listed) & set(digests):
        wanted = {"SHA1": hashlib.sha1(digests[name]).hexdigest(), "SHA256": hashlib.sha256(digests[name]).hexdigest()}
        if listed[name] != wanted:
            yield f"the bill of materials has other hashes for {name}"
    sums = "".join(sorted(hashlib.sha1(data).hexdigest() for data in digests.values()))
    if main["packageVerificationCode"]["packageVerificationCodeValue"] != hashlib.sha1(sums.encode()).hexdigest():
        yield "the bill of materials has another verification code"

    ids = [element["SPDXID"] for element in [bom, *bom["packages"], *bom["files"]]]
    if len(set(ids)) != len(ids) or not all(re.fullmatch(r"SPDXRef-[A-Za-z0-9.-]+", name) for name in ids):
        yield "the bill of materials has identifiers that are not unique or not of SPDX's form"
    relations = {(one["spdxElementId"], one["relationshipType"], one["relatedSpdxElement"]) for one in bom["relationships"]}
    wanted = {("SPDXRef-DOCUMENT", "DESCRIBES", main["SPDXID"])}
    wanted |= {(main["SPDXID"], "CONTAINS", file["SPDXID"]) for file in bom["files"]}
    wanted |= {(main["SPDXID"], relation, f"SPDXRef-Part-{name}") for name, relation in PARTS.items()}
    if relations != wanted:
        yield f"the bill of materials relates {sorted(relations ^ wanted)}"
    yield from compare("the parts of others", {part["name"] for part in parts}, set(PARTS))
    for part in parts:
        if not re.fullmatch(r"\d+(\.\d+)+", part["versionInfo"]):
            yield f"{part['name']} has no version: {part['versionInfo']}"
    if not re.fullmatch(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ", bom["creationInfo"]["created"]):
        yield f"the bill of materials was made at {bom['creationInfo']['created']}"


def check_licences(package):
    folder = package / SHARE / "licences"
    yield from compare("licences", {entry.name for entry in folder.iterdir()}, set(LICENCE_TEXTS))
    for part, text in LICENCE_TEXTS.items():
        texts = "".join(file.read_text(encoding="utf-8", errors="replace") for file in (folder / part).iterdir())
        if text not in texts:
            yield f'the licence of {part} does not say "{text}"'


def check_links(package):
    for page in sorted(package.rglob("*.md")):
        for link in LINK.findall(page.read_text(encoding="utf-8", errors="replace")):
            target = (page.parent / link).resolve()
            if package.resolve() not in target.parents or not target.exists():
                yield f"{page.relative_to(package)} has a link to {link}, which the package does not hold"


def check_code_of_page(package):
    """The code in the page for hosts is that of the smallest host."""
    page = (package / SHARE / "docs/integrating.md").read_text(encoding="utf-8")
    blocks = re.findall(r"```cpp\n(.*?)```", page, re.DOTALL)
    host = (package / SHARE / "examples/host/minimal_host.cpp").read_text(encoding="utf-8")
    if not blocks:
        yield "integrating.md shows no code"
    for block in blocks:
        if block not in host:
            yield f"integrating.md has code that the smallest host has not:\n{block}"


def check_symbols(package, symbols, objdump):
    """No debug symbols in what is shipped, and a link to the file that has them."""
    programs = ("WattleafService.dll", "wattleaf_host.exe")
    yield from compare("the symbols", files_below(symbols), {f"bin/{name}.debug" for name in programs})
    for name in programs:
        shown = subprocess.run([objdump, "-h", package / "bin" / name], capture_output=True, text=True, check=True).stdout
        if ".debug_info" in shown:
            yield f"{name} has debug symbols"
        debug = symbols / "bin" / f"{name}.debug"
        shown = subprocess.run([objdump, "-h", debug], capture_output=True, text=True, check=True).stdout
        if ".debug_line" not in shown:
            yield f"{debug.name} has no line numbers"
        link = f"{name}.debug".encode() + b"\0"
        link += b"\0" * (-len(link) % 4) + zlib.crc32(debug.read_bytes()).to_bytes(4, "little")
        if link not in (package / "bin" / name).read_bytes():
            yield f"{name} has no link to its debug symbols"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--source", type=pathlib.Path, required=True)
    parser.add_argument("--notice", required=True, help="what the build says about its keys; may be empty")
    parser.add_argument("--objdump", required=True)
    parser.add_argument("package", type=pathlib.Path)
    parser.add_argument("symbols", type=pathlib.Path)
    arguments = parser.parse_args()
    package = arguments.package
    faults = [*check_files(package, arguments.source), *check_versions(package), *check_keys(package, arguments.notice),
              *check_bom(package), *check_licences(package), *check_links(package), *check_code_of_page(package),
              *check_symbols(package, arguments.symbols, arguments.objdump)]
    if faults:
        sys.exit("\n".join(faults))
    print(f"{len(files_below(package))} files")


if __name__ == "__main__":
    main()
