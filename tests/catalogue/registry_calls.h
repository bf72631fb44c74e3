#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "import_patch.h"

namespace TestSupport {

/// Records the registry calls of the program. A test can replace the result of some of them; all
/// others reach the system. The test fails if a key is used or closed that is not open, and if a
/// key is still open at the end. One at a time.
class RegistryCalls {
 public:
  struct Opened {
    HKEY parent;
    std::wstring path;
    DWORD options;
    REGSAM access;
  };
  struct Enumerated {
    DWORD index;
    DWORD nameChars;  // as passed to the call
    LSTATUS status;
  };
  struct Queried {
    std::wstring value;
    DWORD bytes;
  };

  RegistryCalls();
  RegistryCalls(const RegistryCalls&) = delete;
  RegistryCalls& operator=(const RegistryCalls&) = delete;
  ~RegistryCalls();

  /// A returned status replaces the call; without one the call reaches the system.
  std::function<std::optional<LSTATUS>(const std::wstring& path)> onOpen;
  std::function<std::optional<LSTATUS>(DWORD index, wchar_t* name, DWORD* nameChars)> onEnumerate;

  std::vector<Opened> opened;
  std::vector<Enumerated> enumerated;
  std::vector<Queried> queried;

 private:
  static LSTATUS WINAPI Open(HKEY parent, const wchar_t* path, DWORD options, REGSAM access,
                             HKEY* key);
  static LSTATUS WINAPI Enumerate(HKEY key, DWORD index, wchar_t* name, DWORD* nameChars,
                                  DWORD* reserved, wchar_t* className, DWORD* classChars,
                                  FILETIME* written);
  static LSTATUS WINAPI Query(HKEY key, const wchar_t* value, DWORD* reserved, DWORD* type,
                              BYTE* data, DWORD* bytes);
  static LSTATUS WINAPI Close(HKEY key);

  static void ExpectOpen(HKEY key, const char* call);

  static RegistryCalls* current_;
  std::multiset<HKEY> openKeys_;
  Standin::ImportPatch open_;
  Standin::ImportPatch enumerate_;
  Standin::ImportPatch query_;
  Standin::ImportPatch close_;
};

}  // namespace TestSupport
