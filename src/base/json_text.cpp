#include "base/json_text.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "base/json_limits.h"
#include "base/wide_file.h"
#include "base/word_scan.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr std::size_t kChunkBytes = 65536;

/// Reads at most `mostBytes` into `bytes` and returns how many come before the first zero byte:
/// half of a plain copy of samples are zeros, which need not be read.
std::size_t ReadUpToZero(std::FILE* file, std::size_t mostBytes, char* bytes) {
  std::size_t count = 0;
  while (count < mostBytes) {
    char* const chunk = bytes + count;
    const std::size_t read = std::fread(chunk, 1, std::min(kChunkBytes, mostBytes - count), file);
    const std::size_t zero = FindZeroByte({chunk, read});
    if (zero != std::string_view::npos) return count + zero;
    if (read == 0) break;
    count += read;
  }
  return count;
}

/// The length of a file; empty if it is not open or larger.
std::optional<std::size_t> TryLength(std::FILE* file, std::size_t largestBytes) {
  if (file == nullptr) return std::nullopt;
  const std::int64_t length = LengthBytes(file);
  if (length < 0 || static_cast<std::uint64_t>(length) > largestBytes) return std::nullopt;
  return static_cast<std::size_t>(length);
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsExponentMark(char c) { return c == 'e' || c == 'E'; }

/// Whether the digits that begin at `begin` are those of an exponent, or look like it.
bool FollowExponentMark(std::string_view text, std::size_t begin) {
  if (begin > 0 && IsExponentMark(text[begin - 1])) return true;
  if (begin < 2 || (text[begin - 1] != '+' && text[begin - 1] != '-')) return false;
  return IsExponentMark(text[begin - 2]);
}

/// True for each text with too long an exponent, and for a few others: an exponent may be part of a
/// string. A run of so many digits covers one of the places that are a multiple of its length
/// apart, so only those are looked at.
bool MayHaveLongExponent(std::string_view text) {
  constexpr std::size_t kTooMany = kMostExponentDigits + 1;
  for (std::size_t place = kTooMany - 1; place < text.size(); place += kTooMany) {
    if (!IsDigit(text[place])) continue;
    std::size_t begin = place;
    while (begin > 0 && IsDigit(text[begin - 1])) --begin;
    std::size_t end = place + 1;
    while (end < text.size() && IsDigit(text[end])) ++end;
    if (end - begin >= kTooMany && FollowExponentMark(text, begin)) return true;
    place += (end - 1 - place) / kTooMany * kTooMany;  // to the last place within this run
  }
  return false;
}

/// True for each text with too long a string, and for a few others. A quotation mark without a
/// backslash in front begins or ends a string, so no string is longer than the distance between
/// two of them.
bool MayHaveLongString(std::string_view text) {
  std::size_t mark = 0;
  while (text.size() - mark > kLongestJsonStringBytes) {
    std::size_t next = text.find('"', mark + kLongestJsonStringBytes / 2);
    while (next != std::string_view::npos && text[next - 1] == '\\')
      next = text.find('"', next + 1);
    if (next == std::string_view::npos || next - mark > kLongestJsonStringBytes) return true;
    mark = next;
  }
  return false;
}

/// Follows each character of a text through its strings and numbers.
class LimitCheck {
 public:
  [[nodiscard]] bool Accepts(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [this](char c) { return isInString_ ? AcceptInside(c) : AcceptOutside(c); });
  }

 private:
  bool AcceptInside(char c) {
    if (isEscaped_) {
      isEscaped_ = false;
    } else if (c == '\\') {
      isEscaped_ = true;
    } else if (c == '"') {
      isInString_ = false;
      return true;
    }
    return ++stringBytes_ <= kLongestJsonStringBytes;
  }

  bool AcceptOutside(char c) {
    if (c == '"') {
      isInString_ = true;
      stringBytes_ = 0;
      isInExponent_ = false;
    } else if (IsExponentMark(c)) {
      isInExponent_ = true;
      exponentDigits_ = 0;
    } else if (isInExponent_ && IsDigit(c)) {
      return ++exponentDigits_ <= kMostExponentDigits;
    } else if (c != '+' && c != '-') {
      isInExponent_ = false;
    }
    return true;
  }

  std::size_t stringBytes_ = 0;
  int exponentDigits_ = 0;
  bool isInString_ = false;
  bool isEscaped_ = false;
  bool isInExponent_ = false;
};

}  // namespace

std::optional<JsonText> JsonText::TryRead(const std::wstring& path, std::size_t largestBytes) {
  const UniqueFile file = OpenForReading(path);
  const std::optional<std::size_t> most = TryLength(file.get(), largestBytes);
  if (!most) return std::nullopt;
  auto bytes = std::make_unique_for_overwrite<char[]>(*most + kZerosAtEnd);
  const std::size_t count = ReadUpToZero(file.get(), *most, bytes.get());
  std::fill_n(bytes.get() + count, kZerosAtEnd, '\0');
  if (!KeepsJsonLimits({bytes.get(), count})) return std::nullopt;
  return JsonText(std::move(bytes), count);
}

bool JsonText::IsTextOf(const std::wstring& path, std::size_t largestBytes, std::string_view text) {
  const UniqueFile file = OpenForReading(path);
  const std::optional<std::size_t> most = TryLength(file.get(), largestBytes);
  if (!most) return false;
  std::vector<char> piece(kChunkBytes);
  std::size_t rest = *most;
  while (rest > 0) {
    const std::size_t size = std::min(piece.size(), rest);
    const std::size_t count = ReadUpToZero(file.get(), size, piece.data());
    if (!IsSameText({piece.data(), count}, text.substr(0, count))) return false;
    text.remove_prefix(count);
    if (count < size) break;
    rest -= count;
  }
  return text.empty();
}

// The quick checks cost a twentieth of the parser, following each character half as much as it.
bool KeepsJsonLimits(std::string_view text) {
  if (!MayHaveLongExponent(text) && !MayHaveLongString(text)) return true;
  return LimitCheck().Accepts(text);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
