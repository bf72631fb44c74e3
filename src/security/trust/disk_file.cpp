#include "security/trust/disk_file.h"

#include <windows.h>

#include <string>

#include "security/trust/path_rules.h"

namespace Zq::Gantry::Security {

using Platform::UniqueFileHandle;

namespace {

constexpr DWORD kLongestPathChars = 32768;
constexpr DWORD kFullSharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// The full path, in which a reserved name such as "NUL" has become "\\.\NUL"; empty on failure.
std::wstring FullPathOf(const wchar_t* path) {
  std::wstring full(kLongestPathChars, L'\0');
  const DWORD chars = GetFullPathNameW(path, kLongestPathChars, full.data(), nullptr);
  if (chars == 0 || chars >= kLongestPathChars) return {};
  full.resize(chars);
  return full;
}

/// The unchanged text counts too: after "\\?\" nothing is normalised when a file is opened.
bool NamesADeviceOrLeadsToOne(const wchar_t* path) {
  return NamesADevice(path) || NamesADevice(FullPathOf(path));
}

bool IsOnDisk(const UniqueFileHandle& file) { return GetFileType(file.get()) == FILE_TYPE_DISK; }

}  // namespace

UniqueFileHandle OpenDiskFile(const wchar_t* path) {
  if (path == nullptr || NamesADeviceOrLeadsToOne(path)) return {};
  UniqueFileHandle file(CreateFileW(path, GENERIC_READ, kFullSharing, /*security=*/nullptr,
                                    OPEN_EXISTING, /*attributes=*/0, /*template=*/nullptr));
  if (file && !IsOnDisk(file)) file.reset();
  return file;
}

bool IsKnownNotToBeADiskFile(const wchar_t* path) {
  if (NamesADeviceOrLeadsToOne(path)) return true;
  // Opened for its attributes only. If a pipe's server is reached after all, it may identify this
  // process but not act as it.
  const UniqueFileHandle file(
      CreateFileW(path, FILE_READ_ATTRIBUTES, kFullSharing, /*security=*/nullptr, OPEN_EXISTING,
                  SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION, /*template=*/nullptr));
  if (!file) return GetLastError() == ERROR_PIPE_BUSY;
  return !IsOnDisk(file);
}

}  // namespace Zq::Gantry::Security
