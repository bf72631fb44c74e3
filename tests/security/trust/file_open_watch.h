#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "import_patch.h"

namespace TestSupport {

/// Records how the program opens files with CreateFileW and closes them while this object exists.
/// The calls still do their work. One at a time.
class FileOpenWatch {
 public:
  /// The arguments of one CreateFileW call.
  struct Open {
    std::wstring path;
    DWORD access = 0;
    DWORD share = 0;
    bool hasSecurity = false;
    DWORD disposition = 0;
    DWORD flags = 0;
    bool hasTemplate = false;
  };

  FileOpenWatch();
  FileOpenWatch(const FileOpenWatch&) = delete;
  FileOpenWatch& operator=(const FileOpenWatch&) = delete;
  ~FileOpenWatch();

  /// Forgets the calls so far.
  void Clear();

  [[nodiscard]] std::vector<std::wstring> Paths() const;

  DWORD error = ERROR_SUCCESS;  ///< if another value, each call fails with it
  std::vector<Open> opens;
  HANDLE lastHandle = INVALID_HANDLE_VALUE;
  int closed = 0;  ///< how many times `lastHandle` was closed

 private:
  static HANDLE WINAPI CreateFileFake(LPCWSTR path, DWORD access, DWORD share,
                                      LPSECURITY_ATTRIBUTES security, DWORD disposition,
                                      DWORD flags, HANDLE templateFile);
  static BOOL WINAPI CloseHandleFake(HANDLE handle);

  Standin::ImportPatch create_;
  Standin::ImportPatch close_;
};

}  // namespace TestSupport
