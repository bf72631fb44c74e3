// What the three seams to Windows look like elsewhere, for tests and tools of the portable core.
#include <sys/types.h>

#include <ctime>
#include <filesystem>
#include <system_error>

#include "ledger/broken_down_time.h"
#include "ledger/local_calendar.h"
#include "ledger/wide_file.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

// The last second of the year 3000 in UTC, where the Windows C library's calendar ends.
constexpr std::int64_t kLastInstant = 32535215999;

/// UTF-8, whatever the locale; throws for a path that is no Unicode text.
std::filesystem::path NativePath(const std::wstring& path) {
  return std::u32string(path.begin(), path.end());
}

UniqueFile Open(const std::wstring& path, const char* mode) {
  try {
    return UniqueFile(std::fopen(NativePath(path).c_str(), mode));
  } catch (const std::exception&) {
    return UniqueFile();
  }
}

bool MayBeWritten(const std::wstring& path) {
  std::error_code error;
  const auto status = std::filesystem::symlink_status(NativePath(path), error);
  return !std::filesystem::is_symlink(status) && !std::filesystem::is_directory(status);
}

}  // namespace

std::int64_t CurrentInstant() { return std::time(nullptr); }

std::int64_t MakeInstant(DateTime& local) {
  std::tm fields = ToTm(local);
  const std::int64_t instant = std::mktime(&fields);
  if (instant < 0 || instant > kLastInstant) return -1;
  local = FromTm(fields);
  return instant;
}

std::int64_t InstantOf(DateTime local) { return MakeInstant(local); }

DateTime LocalTimeOf(std::int64_t instant) {
  const std::time_t seconds = instant;
  std::tm fields{};
  if (instant < 0 || instant > kLastInstant) return kNoTime;
  if (localtime_r(&seconds, &fields) == nullptr) return kNoTime;
  return FromTm(fields);
}

UniqueFile OpenForReading(const std::wstring& path) { return Open(path, "rb"); }

UniqueFile OpenForWriting(const std::wstring& path) {
  try {
    return MayBeWritten(path) ? Open(path, "wb") : UniqueFile();
  } catch (const std::exception&) {
    return UniqueFile();
  }
}

std::int64_t LengthBytes(std::FILE* file) {
  if (fseeko(file, 0, SEEK_END) != 0) return -1;
  const std::int64_t length = ftello(file);
  return fseeko(file, 0, SEEK_SET) == 0 ? length : -1;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
