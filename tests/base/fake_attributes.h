#pragma once

#include <windows.h>

#include <string>

#include "import_patch.h"

namespace TestSupport {

/// Fakes a link, or another reparse point, in the place of one file: a program cannot make a link
/// to a file everywhere. Calls for other paths go through. One at a time.
class FakeReparsePoint {
 public:
  /// The file's attributes get the reparse bit; a search for it finds `tag`.
  FakeReparsePoint(const std::wstring& path, DWORD tag);
  FakeReparsePoint(const FakeReparsePoint&) = delete;
  FakeReparsePoint& operator=(const FakeReparsePoint&) = delete;
  ~FakeReparsePoint();

  /// From now on the search finds nothing, or a file without the reparse bit.
  void FailSearch() { searchFails_ = true; }
  void SearchFindsNoReparsePoint() { searchBit_ = 0; }

 private:
  static DWORD WINAPI Attributes(const wchar_t* path);
  static HANDLE WINAPI Find(const wchar_t* path, WIN32_FIND_DATAW* entry);

  static FakeReparsePoint* current_;
  std::wstring path_;
  DWORD tag_;
  DWORD searchBit_ = FILE_ATTRIBUTE_REPARSE_POINT;
  bool searchFails_ = false;
  Standin::ImportPatch attributes_;
  Standin::ImportPatch find_;
};

}  // namespace TestSupport
