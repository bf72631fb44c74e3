#include "files/saved_file.h"

#include <windows.h>

#include "base/utf8_text.h"
#include "files/file_failure.h"
#include "platform/win32/owners.h"

namespace WattleafHost {

namespace {

using Zq::Gantry::Platform::UniqueFileHandle;
using Zq::Gantry::Server::Services::Wattleaf::FromUtf8;

/// The error of the first call that failed; 0 if none did.
DWORD WriteNewFile(const std::wstring& path, const std::string& content) {
  const UniqueFileHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, /*share=*/0,
                                          /*security=*/nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL,
                                          /*templateFile=*/nullptr));
  if (!file) return GetLastError();
  DWORD written = 0;
  const auto bytes = static_cast<DWORD>(content.size());
  if (!WriteFile(file.get(), content.data(), bytes, &written, nullptr)) return GetLastError();
  return written == bytes ? ERROR_SUCCESS : ERROR_DISK_FULL;
}

}  // namespace

void SaveFile(const std::string& path, const std::string& content) {
  const std::wstring target = FromUtf8(path);
  // The process's number keeps two runs apart. Not opened if it exists, since it could be a link.
  const std::wstring beside = target + L".new-" + std::to_wstring(GetCurrentProcessId());
  DeleteFileW(beside.c_str());
  DWORD error = WriteNewFile(beside, content);
  if (error == ERROR_SUCCESS &&
      !MoveFileExW(beside.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING)) {
    error = GetLastError();
  }
  if (error == ERROR_SUCCESS) return;
  DeleteFileW(beside.c_str());
  throw FileFailure("cannot write " + path + " (Windows error " + std::to_string(error) +
                    "); choose a folder that exists and that you may write to");
}

}  // namespace WattleafHost
