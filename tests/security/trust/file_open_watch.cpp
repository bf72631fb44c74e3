#include "security/trust/file_open_watch.h"

#include <type_traits>

namespace TestSupport {

namespace {

FileOpenWatch* currentOpenWatch = nullptr;

}  // namespace

FileOpenWatch::FileOpenWatch()
    : create_("CreateFileW", &CreateFileFake), close_("CloseHandle", &CloseHandleFake) {
  currentOpenWatch = this;
}

FileOpenWatch::~FileOpenWatch() { currentOpenWatch = nullptr; }

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
  currentOpenWatch->opens.push_back(
      {path, access, share, security != nullptr, disposition, flags, templateFile != nullptr});
  if (currentOpenWatch->error != ERROR_SUCCESS) {
    SetLastError(currentOpenWatch->error);
    return currentOpenWatch->lastHandle = INVALID_HANDLE_VALUE;
  }
  auto* real = currentOpenWatch->create_.Original<std::remove_pointer_t<decltype(&CreateFileW)>>();
  return currentOpenWatch->lastHandle =
             real(path, access, share, security, disposition, flags, templateFile);
}

BOOL WINAPI FileOpenWatch::CloseHandleFake(HANDLE handle) {
  if (handle == currentOpenWatch->lastHandle) ++currentOpenWatch->closed;
  return currentOpenWatch->close_.Original<std::remove_pointer_t<decltype(&CloseHandle)>>()(handle);
}

}  // namespace TestSupport
