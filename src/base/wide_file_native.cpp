#include "base/wide_file.h"

#include <sys/types.h>

#include <filesystem>
#include <system_error>

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// The path in UTF-8, independent of the locale. Throws if `path` is not valid Unicode.
std::filesystem::path NativePath(const std::wstring& path) {
  return std::u32string(path.begin(), path.end());
}

UniqueFile Open(const std::wstring& path, const char* mode) {
  try {
    return UniqueFile(std::fopen(NativePath(path).c_str(), mode));
  } catch (const std::filesystem::filesystem_error&) {
    return UniqueFile();
  }
}

bool MayBeWritten(const std::wstring& path) {
  std::error_code error;
  const auto status = std::filesystem::symlink_status(NativePath(path), error);
  return !std::filesystem::is_symlink(status) && !std::filesystem::is_directory(status);
}

}  // namespace

UniqueFile OpenForReading(const std::wstring& path) { return Open(path, "rb"); }

UniqueFile OpenSharedForReading(const std::wstring& path) { return OpenForReading(path); }

UniqueFile OpenForWriting(const std::wstring& path) {
  try {
    return MayBeWritten(path) ? Open(path, "wb") : UniqueFile();
  } catch (const std::filesystem::filesystem_error&) {
    return UniqueFile();
  }
}

std::int64_t LengthBytes(std::FILE* file) {
  if (fseeko(file, 0, SEEK_END) != 0) return -1;
  const std::int64_t length = ftello(file);
  return fseeko(file, 0, SEEK_SET) == 0 ? length : -1;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
