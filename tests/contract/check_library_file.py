#!/usr/bin/env python3
"""Reads the import and export tables of the shipped library.

At run time the library may need only Windows' own libraries, the host's Logging.dll and the C++ runtime
that it shares with its callers. It must export the factory under its plain name.
"""

import argparse
import re
import subprocess
import sys

# In upper case, since Windows ignores the case of these names.
WINDOWS_LIBRARIES = {
    "ADVAPI32.DLL",
    "CRYPT32.DLL",
    "GDIPLUS.DLL",
    "KERNEL32.DLL",
    "MSVCRT.DLL",
    "OLE32.DLL",
    "OLEAUT32.DLL",
    "RPCRT4.DLL",
    "SHELL32.DLL",
    "USER32.DLL",
    "USERENV.DLL",
    "VERSION.DLL",
    "WINTRUST.DLL",
    # Windows Runtime: activation and strings.
    "API-MS-WIN-CORE-WINRT-L1-1-0.DLL",
    "API-MS-WIN-CORE-WINRT-STRING-L1-1-0.DLL",
}
HOST_LIBRARY = "LOGGING.DLL"
# Shared with the host, so that an exception of the library leaves no state in the program that catches it.
RUNTIME_LIBRARIES = {"LIBGCC_S_SEH-1.DLL", "LIBSTDC++-6.DLL", "LIBWINPTHREAD-1.DLL"}
MSVC_RUNTIME_LIBRARIES = {"MSVCP140.DLL", "UCRTBASE.DLL", "VCRUNTIME140.DLL"}
# Which of Wine's libraries the calls of Windows are imported from when it takes the place of the SDK (tools/msvc-abi).
MSVC_ABI_LIBRARIES = {"COMBASE.DLL", "KERNELBASE.DLL", "VCRUNTIME140_1.DLL"}
FACTORY = "ZQCreateService"
# Apart from the factory, only members of this system's own classes are exported.
OWN_MEMBER = re.compile(r"_Z(T[VIS])?NK?2Zq6Gantry")
MSVC_OWN_MEMBER = re.compile(r"\?.*@Gantry@Zq@@")

# The operations of WattleafHelper that others may call.
HELPER_OPERATIONS = (
    "Instance",
    "StartCollection",
    "StopCollection",
    "StartProcessing",
    "IsPlatformSupported",
    "IsDataChanged",
    "IsDataAvailable",
    "GetDailyAveragePowerConsumption",
    "GetTreeSavedCount",
    "GetDailyPowerConsumption",
    "GetWeeklyPowerConsumption",
    "GetMonthlyPowerConsumption",
    "GetTop20PowerApps",
    "GetErrorsAndWarnings",
)

# The security layer that the host uses: classes with the members that it calls, and constants.
SHARED_MEMBERS = {
    "GantryAccessManager": ("C1Ev", "C1ERKS2_", "aSERKS2_", "D1Ev", "SetUwpChecker",
                            "SetWin32Checker", "IsUwpExempt", "IsWin32Exempt"),
    "HStringPolicy": ("Release",),
    "MatchingDescriptor": ("C1Ev", "aSERKS2_"),
    "RpcSecurityHelper": ("C1Ev", "D1Ev", "GetPFNOfCaller"),
    "RuntimeText": ("C1EPKw", "C1ERKS2_", "C1EOS2_", "aSERKS2_", "aSEOS2_", "D1Ev", "View"),
    "SignerDescriptor": ("C1E",),
    "UwpMatchingDescriptor": ("C1E", "C1ERKS2_", "aSERKS2_", "D1Ev"),
    "UwpWithNoZQManifestExemptionWhiteList": ("GetExemption",),
    "UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion":
        ("C1E", "C1ERKS2_", "aSERKS2_", "D1Ev", "IsAnException"),
    "Win32MatchingDescriptor": ("C1E", "C1ERKS2_", "aSERKS2_", "D1Ev"),
    "Win32WithNoZQManifestExemptionWhiteList": ("GetExemption",),
    "Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion":
        ("C1E", "C1ERKS2_", "aSERKS2_", "D1Ev", "IsAnException"),
    "ZQAuthenticodeFacade": (
        "IsServiceFileTrusted", "IsExtendedFileTrusted", "IsDropboxFileTrusted",
        "IsWindowsTrustedFileAllowed", "HaveSameSigningKey", "IsPathAllowed",
        "IsToolLaunchAllowed"),
    "ZQAuthenticodeHelper": (
        "IsFileTrusted", "IsPathAllowed", "CheckForFullConrolByTrustedInstallAndSystem",
        "GetAllSignatures", "GetSignatures", "GetSignerDescriptor", "GetSecurityCatalogInfo",
        "CalculateFileHash", "IsTrustedByWindows", "IsTrustedByMeridian", "SubjectsMatch",
        "PublicKeysMatch", "ParseSubject", "ParseSubjectField", "GetNameText", "BytesToHexText",
        "TrimText"),
    "gantry_access_exception": ("C1EPKc", "C1ERKS2_", "C1EOS2_", "aSERKS2_", "aSEOS2_", "D1Ev"),
    "IClientInformation": ("C1Ev", "C1E", "C1ERKS2_", "aSERKS2_", "D1Ev"),
    "UwpInformation": ("C1Ev", "C1E", "C1ERKS3_", "aSERKS3_", "D1Ev"),
    "Win32Information": ("C1Ev", "C1E", "C1ERKS3_", "aSERKS3_", "D1Ev"),
    "UtilHelper": ("GetFullExpandedPath", "BeginsWith", "NullChecker"),
}
SHARED_CONSTANTS = ("RuleValidators", "ToolLaunchTable")


def mangled_member(owner, member):
    """The part of the mangled name that identifies class and member."""
    special = re.match(r"(C1|D1|aS)E", member)
    return f"{len(owner)}{owner}{member if special else f'{len(member)}{member}'}"


def decorated_member(owner, member):
    """The same of a name that is decorated for MSVC. Which of several constructors it is, is not looked at."""
    special = re.match(r"(C1|D1|aS)E", member)
    return {"C1": "??0", "D1": "??1", "aS": "??4"}[special[1]] + f"{owner}@" if special else f"?{member}@{owner}@"


def find_missing_shared(exports, member_text):
    for owner, members in SHARED_MEMBERS.items():
        for member in members:
            if not any(member_text(owner, member) in name for name in exports):
                yield f"does not export {owner}: {member}"
    for constant in SHARED_CONSTANTS:
        if not any(re.search(rf"(?:{len(constant)}|\?){constant}", name) for name in exports):
            yield f"does not export {constant}"


def read_tables(objdump, library):
    run = subprocess.run([objdump, "-p", library], capture_output=True, text=True, check=True)
    imports = set(re.findall(r"^\s*DLL Name: (\S+)", run.stdout, re.MULTILINE))
    _, _, names = run.stdout.partition("[Ordinal/Name Pointer] Table")
    exports = set(re.findall(r"^\s*\[\s*\d+\] (\S+)$", names, re.MULTILINE))
    return imports, exports


def find_faults(imports, exports, is_msvc):
    names = {name.upper() for name in imports}
    runtime = MSVC_RUNTIME_LIBRARIES if is_msvc else RUNTIME_LIBRARIES
    member_text = decorated_member if is_msvc else mangled_member
    own_member = MSVC_OWN_MEMBER if is_msvc else OWN_MEMBER
    allowed = WINDOWS_LIBRARIES | runtime | (MSVC_ABI_LIBRARIES if is_msvc else set())
    for name in sorted(names - allowed - {HOST_LIBRARY}):
        yield f"needs {name}, which is neither a Windows library, Logging.dll nor the C++ runtime"
    if HOST_LIBRARY not in names:
        yield "does not import Logging.dll (or the import table could not be parsed)"
    for name in sorted(runtime - names):
        yield f"does not import {name}: it does not share the C++ runtime of its callers"
    if FACTORY not in exports:
        yield f"does not export {FACTORY} undecorated"
    for operation in HELPER_OPERATIONS:
        text = member_text("WattleafHelper", operation) + ("" if is_msvc else "E")
        if not any(text in name for name in exports):
            yield f"does not export WattleafHelper::{operation}"
    yield from find_missing_shared(exports, member_text)
    for name in sorted(exports - {FACTORY}):
        if not own_member.match(name):
            yield f"exports {name}, which is no member of this system's classes"
        if "_white_list" in name:
            yield f"exports {name}, of which only copies may leave the library"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--objdump", required=True)
    parser.add_argument("--msvc", action="store_true", help="the names are decorated for MSVC")
    parser.add_argument("library")
    arguments = parser.parse_args()
    imports, exports = read_tables(arguments.objdump, arguments.library)
    faults = list(find_faults(imports, exports, arguments.msvc))
    for fault in faults:
        print(f"{arguments.library}: {fault}")
    if faults:
        sys.exit(1)
    print("imports:", ", ".join(sorted(imports, key=str.upper)))


if __name__ == "__main__":
    main()
