#pragma once

#include <windows.h>

#include <string>

#include "import_patch.h"

namespace TestSupport {

/// Makes one existing file look like a link or another reparse point, since not every system lets a
/// program create a link to a file. Calls for other paths reach the system. One at a time.
class FakeReparsePoint {
 public:
  /// The file's attributes have the reparse bit; a search for it returns `tag`.
  FakeReparsePoint(const std::wstring& path, DWORD tag);
  FakeReparsePoint(const FakeReparsePoint&) = delete;
  FakeReparsePoint& operator=(const FakeReparsePoint&) = delete;
  ~FakeReparsePoint();

  /// From now on the search fails, or finds the file without the reparse bit.
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
