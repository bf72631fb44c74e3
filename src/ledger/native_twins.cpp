// What the seams to Windows look like elsewhere, for tests and tools of the portable core.
#include <sys/types.h>

#include <array>
#include <ctime>
#include <filesystem>
#include <system_error>

#include "ledger/broken_down_time.h"
#include "ledger/local_calendar.h"
#include "ledger/utf8_text.h"
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

constexpr char32_t kReplacement = 0xFFFD;

bool IsScalarValue(char32_t point) {
  return point < 0x110000 && (point < 0xD800 || point > 0xDFFF);
}

void AppendUtf8(char32_t point, std::string& text) {
  if (!IsScalarValue(point)) point = kReplacement;
  const auto tail = [point](int shift) {
    return static_cast<char>(0x80 | (point >> shift & 0x3F));
  };
  if (point < 0x80) {
    text += static_cast<char>(point);
  } else if (point < 0x800) {
    text += {static_cast<char>(0xC0 | point >> 6), tail(0)};
  } else if (point < 0x10000) {
    text += {static_cast<char>(0xE0 | point >> 12), tail(6), tail(0)};
  } else {
    text += {static_cast<char>(0xF0 | point >> 18), tail(12), tail(6), tail(0)};
  }
}

/// Bytes that a lead byte announces, itself included; 0 for a byte that leads nothing.
std::size_t SequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead < 0xC2 || lead > 0xF4) return 0;
  return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

/// Takes one character off the front; a sequence that breaks off is one replacement.
char32_t TakePoint(std::string_view& text) {
  constexpr std::array<char32_t, 5> kSmallest{0, 0, 0x80, 0x800, 0x10000};
  const auto lead = static_cast<unsigned char>(text.front());
  text.remove_prefix(1);
  const std::size_t length = SequenceLength(lead);
  if (length <= 1) return length == 1 ? lead : kReplacement;
  char32_t point = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const bool goesOn = !text.empty() && (static_cast<unsigned char>(text.front()) & 0xC0) == 0x80;
    if (!goesOn) return kReplacement;
    point = point << 6 | (static_cast<unsigned char>(text.front()) & 0x3F);
    text.remove_prefix(1);
  }
  return IsScalarValue(point) && point >= kSmallest[length] ? point : kReplacement;
}

}  // namespace

std::string ToUtf8(std::wstring_view text) {
  std::string result;
  for (const wchar_t point : text) AppendUtf8(static_cast<char32_t>(point), result);
  return result;
}

std::wstring FromUtf8(std::string_view text) {
  std::wstring result;
  while (!text.empty()) result += static_cast<wchar_t>(TakePoint(text));
  return result;
}

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

UniqueFile OpenSharedForReading(const std::wstring& path) { return OpenForReading(path); }

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
