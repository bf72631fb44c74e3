// The imports that are never made to fail, each with its reason. Functions of Windows and of the C
// library stand here by their names, those of the C++ runtime by what their names contain, except
// the ones that reach files or threads.

#include "left_out.h"

#include <algorithm>
#include <array>
#include <span>

namespace Faults {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kReleases[] = {"CloseHandle",
                                          "CoUninitialize",
                                          "CryptCATAdminReleaseCatalogContext",
                                          "CryptCATAdminReleaseContext",
                                          "DeleteCriticalSection",
                                          "DestroyIcon",
                                          "FindClose",
                                          "FreeLibrary",
                                          "GdipDisposeImage",
                                          "GdiplusShutdown",
                                          "LocalFree",
                                          "RegCloseKey",
                                          "SafeArrayDestroy",
                                          "SafeArrayUnaccessData",
                                          "SysFreeString",
                                          "VariantClear",
                                          "WindowsDeleteString",
                                          "free",
                                          "pthread_mutex_destroy",
                                          "pthread_mutex_unlock"};

constexpr std::string_view kNoFailure[] = {"EnterCriticalSection",
                                           "GetCurrentProcess",
                                           "GetLastError",
                                           "InitializeCriticalSection",
                                           "IsDBCSLeadByteEx",
                                           "LeaveCriticalSection",
                                           "SafeArrayGetDim",
                                           "SafeArrayGetElemsize",
                                           "SetLastError",
                                           "Sleep",
                                           "TlsGetValue",
                                           "VariantInit",
                                           "WindowsGetStringRawBuffer"};

constexpr std::string_view kMemoryAndText[] = {"___lc_codepage_func",
                                               "___mb_cur_max_func",
                                               "__iob_func",
                                               "_errno",
                                               "_fileno",
                                               "atoi",
                                               "ferror",
                                               "ispunct",
                                               "isspace",
                                               "iswalnum",
                                               "localeconv",
                                               "memchr",
                                               "memcmp",
                                               "memcpy",
                                               "memmove",
                                               "memset",
                                               "strchr",
                                               "strerror",
                                               "strlen",
                                               "strncmp",
                                               "tolower",
                                               "towlower",
                                               "wcschr",
                                               "wcscmp",
                                               "wcslen",
                                               "wcsstr",
                                               "wcstol"};

constexpr std::string_view kStartUp[] = {"GetModuleHandleW", "VirtualProtect", "VirtualQuery",
                                         "_amsg_exit",       "_initterm",      "_lock",
                                         "_unlock",          "abort"};

constexpr std::string_view kMessages[] = {"fputwc", "fwprintf", "vfprintf"};

constexpr std::string_view kExceptions[] = {"__cxa_allocate_exception"};

constexpr std::string_view kConversions[] = {"MultiByteToWideChar", "WideCharToMultiByte"};

struct Group {
  std::span<const std::string_view> names;
  std::string_view reason;
};

constexpr std::array<Group, 7> kGroups{{
    {kReleases, "releases a valid resource, which does not fail"},
    {kNoFailure, "has no failure"},
    {kMemoryAndText, "works on memory or text only"},
    {kConversions, "converts UTF-8 and replaces what is not valid, which does not fail"},
    {kStartUp, "is called only while the library is loaded or when a program is broken"},
    {kMessages, "prints a message, whose loss is ignored"},
    {kExceptions, "takes memory that is kept for it when there is no other"},
}};

/// Parts of names of the C++ library that reach the system.
constexpr std::string_view kReachesSystem[] = {"filesystem",    "thread", "filebuf",
                                               "random_device", "chrono", "codecvt"};
/// Functions among them that work on memory only.
constexpr std::string_view kWorksOnPaths[] = {
    "_ZNKSt10filesystem7__cxx1118directory_iteratordeEv",
    "_ZNKSt10filesystem7__cxx114path11parent_pathEv",
    "_ZNKSt10filesystem7__cxx114path17_M_find_extensionEv",
    "_ZNKSt10filesystem7__cxx114path5_List13_Impl_deleterclEPNS2_5_ImplE",
    "_ZNKSt10filesystem7__cxx114path5_List3endEv",
    "_ZNSt10filesystem7__cxx114path14_M_split_cmptsEv",
    "_ZNSt10filesystem7__cxx114path5_ListC1ERKS2_",
    "_ZNSt10filesystem7__cxx114path5_ListC1Ev",
    "_ZNSt10filesystem7__cxx114pathdVERKS1_",
    "_ZNSt13basic_filebufIwSt11char_traitsIwEEC1Ev",
    "_ZNSt13basic_filebufIwSt11char_traitsIwEED1Ev",
    "_ZNSt6thread6_StateD2Ev"};

bool Contains(std::span<const std::string_view> names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

bool ReachesSystem(std::string_view name) {
  return std::any_of(std::begin(kReachesSystem), std::end(kReachesSystem),
                     [&](std::string_view part) { return name.find(part) != name.npos; });
}

}  // namespace

std::string_view ListedReason(const Import& import) {
  if (!import.isFunction) return "is a variable";
  for (const Group& group : kGroups) {
    if (Contains(group.names, import.name)) return group.reason;
  }
  if (import.library == "Logging.dll") return "belongs to the host's log, which has no failure";
  if (import.library == "libgcc_s_seh-1.dll") return "unwinds exceptions";
  if (import.library != "libstdc++-6.dll") return {};
  if (Contains(kWorksOnPaths, import.name) || !ReachesSystem(import.name)) {
    return "is the C++ library's work on memory, text and exceptions";
  }
  return {};
}

}  // namespace Faults
