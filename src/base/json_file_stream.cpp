#include "base/json_file_stream.h"

#include <algorithm>

#include "base/json_limits.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsExponentMark(char c) { return c == 'e' || c == 'E'; }

/// Whether the digits that begin at `begin` are those of an exponent, or look like it.
bool FollowExponentMark(std::string_view text, std::size_t begin) {
  // Digits that began before the kept bytes were looked at with the buffer before.
  if (begin < 2) return false;
  const char before = text[begin - 1];
  if (IsExponentMark(before)) return true;
  return (before == '+' || before == '-') && IsExponentMark(text[begin - 2]);
}

/// Whether an exponent may have more digits than the parser bears. A run of so many digits covers
/// one of the places that are a multiple of its length apart, so only those are looked at.
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

}  // namespace

std::size_t JsonTextGuard::Accept(std::string_view part) {
  for (std::size_t i = 0; i < part.size(); ++i) {
    const bool isAccepted = isInString_ ? AcceptInside(part[i]) : AcceptOutside(part[i]);
    if (!isAccepted) return i;
  }
  return part.size();
}

inline bool JsonTextGuard::AcceptInside(char c) {
  if (c == '\0') return false;
  if (isEscaped_) {
    isEscaped_ = false;
  } else if (c == '\\') {
    isEscaped_ = true;
  } else if (c == '"') {
    isInString_ = false;
    return true;
  }
  return ++stringBytes_ <= kLongestJsonStringBytes || Break();
}

inline bool JsonTextGuard::AcceptOutside(char c) {
  if (c == '"') {
    isInString_ = true;
    stringBytes_ = 0;
    isInExponent_ = false;
  } else if (c == 'e' || c == 'E') {
    isInExponent_ = true;
    exponentDigits_ = 0;
  } else if (isInExponent_ && c >= '0' && c <= '9') {
    return ++exponentDigits_ <= kMostExponentDigits || Break();
  } else if (c != '+' && c != '-') {
    isInExponent_ = false;
  }
  return c != '\0';
}

bool JsonTextGuard::Break() {
  hasBrokenLimit_ = true;
  return false;
}

JsonFileStream::JsonFileStream(std::FILE* file, std::size_t limitBytes, JsonCheck check)
    : memory_(std::make_unique_for_overwrite<char[]>(kKeptBytes + kBufferBytes + 1)),
      next_(Buffer()),
      last_(Buffer()),
      file_(file),
      limitBytes_(limitBytes) {
  if (check == JsonCheck::kExact) guard_.emplace();
  std::fill_n(memory_.get(), kKeptBytes, '\0');
  Refill();
}

void JsonFileStream::Refill() {
  bytesBefore_ += bufferedBytes_;
  if (bufferedBytes_ >= kKeptBytes) {
    std::copy_n(Buffer() + bufferedBytes_ - kKeptBytes, kKeptBytes, memory_.get());
  }
  bufferedBytes_ = std::fread(Buffer(), 1, kBufferBytes, file_);
  next_ = Buffer();
  last_ = Buffer() + bufferedBytes_ - 1;
  if (bufferedBytes_ < kBufferBytes) {
    *++last_ = '\0';
    atEnd_ = true;
  }
  bytesSinceValue_ += bufferedBytes_;
  CheckBuffer();
}

void JsonFileStream::CheckBuffer() {
  refused_ = bytesBefore_ + bufferedBytes_ > limitBytes_;
  if (refused_) return EndTextAfter(0);
  if (guard_) {
    const std::size_t accepted = guard_->Accept({Buffer(), bufferedBytes_});
    refused_ = guard_->HasBrokenLimit();
    if (refused_) EndTextAfter(accepted);
    return;
  }
  needsCare_ = bytesSinceValue_ > kMostBytesWithoutValue ||
               MayHaveLongExponent({memory_.get(), kKeptBytes + bufferedBytes_});
  if (needsCare_) EndTextAfter(0);
}

void JsonFileStream::EndTextAfter(std::size_t bytes) {
  last_ = Buffer() + bytes;
  *last_ = '\0';
  atEnd_ = true;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
