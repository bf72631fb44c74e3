#include "security/trust/file_open_watch.h"

#include <type_traits>

namespace TestSupport {

namespace {

FileOpenWatch* current = nullptr;

}  // namespace

FileOpenWatch::FileOpenWatch()
    : create_("CreateFileW", &CreateFileFake), close_("CloseHandle", &CloseHandleFake) {
  current = this;
}

FileOpenWatch::~FileOpenWatch() { current = nullptr; }

void FileOpenWatch::Clear() {
  opens.clear();
  lastHandle = INVALID_HANDLE_VALUE;
  closed = 0;
}

std::vector<std::wstring> FileOpenWatch::Paths() const {
  std::vector<std::wstring> paths;
  for (const Open& open : opens) paths.push_back(open.path);
  return paths;
}

HANDLE WINAPI FileOpenWatch::CreateFileFake(LPCWSTR path, DWORD access, DWORD share,
                                            LPSECURITY_ATTRIBUTES security, DWORD disposition,
                                            DWORD flags, HANDLE templateFile) {
  current->opens.push_back(
      {path, access, share, security != nullptr, disposition, flags, templateFile != nullptr});
  if (current->error != ERROR_SUCCESS) {
    SetLastError(current->error);
    return current->lastHandle = INVALID_HANDLE_VALUE;
  }
  auto* real = current->create_.Original<std::remove_pointer_t<decltype(&CreateFileW)>>();
  return current->lastHandle =
             real(path, access, share, security, disposition, flags, templateFile);
}

BOOL WINAPI FileOpenWatch::CloseHandleFake(HANDLE handle) {
  if (handle == current->lastHandle) ++current->closed;
  return current->close_.Original<std::remove_pointer_t<decltype(&CloseHandle)>>()(handle);
}

}  // namespace TestSupport
