#pragma once

#include <rapidjson/filereadstream.h>

#include <cstddef>
#include <cstdio>

#include "base/json_limits.h"

namespace TestSupport {

namespace Wattleaf = Zq::Gantry::Server::Services::Wattleaf;

/// RapidJSON's file stream, cut off at a string or an exponent that is longer than its limit.
/// Looks at each character that the parser takes: the plain way to do it.
class CharacterStream {
 public:
  using Ch = char;

  /// Reads `file` from its current position through `buffer`, which has at least 4 bytes. Borrows
  /// both for its own life. `limitBytes` counts from that position.
  CharacterStream(std::FILE* file, char* buffer, std::size_t bufferBytes, std::size_t limitBytes)
      : stream_(file, buffer, bufferBytes), limitBytes_(limitBytes) {}

  /// True after the text was cut off. A parser that reports success may then have read a shorter
  /// text, so callers check this too.
  [[nodiscard]] bool Refused() const { return refused_; }

  // RapidJSON's concept of an input stream. The text ends at the first zero byte.
  [[nodiscard]] Ch Peek() const { return refused_ ? '\0' : stream_.Peek(); }
  Ch Take() {
    if (refused_) return '\0';
    const Ch c = stream_.Take();
    Follow(c);
    return c;
  }
  [[nodiscard]] std::size_t Tell() const { return stream_.Tell(); }

  // For parsing in place only, which the parser's default flags never do.
  Ch* PutBegin() { return nullptr; }
  void Put(Ch) {}
  void Flush() {}
  std::size_t PutEnd(Ch*) { return 0; }

 private:
  // Each processes one character: any, one inside a string, or one outside of strings. Sets
  // refused_ if the text must end there.
  void Follow(Ch c);
  void FollowString(Ch c);
  void FollowNumber(Ch c);

  rapidjson::FileReadStream stream_;
  std::size_t limitBytes_;
  bool refused_ = false;
  bool inString_ = false;
  bool escaped_ = false;
  bool inExponent_ = false;
  int exponentDigits_ = 0;
  std::size_t stringBytes_ = 0;
};

inline void CharacterStream::Follow(Ch c) {
  if (inString_) {
    FollowString(c);
  } else if (c == '"') {
    inString_ = true;
    stringBytes_ = 0;
    inExponent_ = false;
  } else {
    FollowNumber(c);
  }
  if (stream_.Tell() > limitBytes_) refused_ = true;
}

inline void CharacterStream::FollowString(Ch c) {
  if (escaped_) {
    escaped_ = false;
  } else if (c == '\\') {
    escaped_ = true;
  } else if (c == '"') {
    inString_ = false;
    return;
  }
  if (++stringBytes_ > Wattleaf::kLongestJsonStringBytes) refused_ = true;
}

inline void CharacterStream::FollowNumber(Ch c) {
  if (c == 'e' || c == 'E') {
    inExponent_ = true;
    exponentDigits_ = 0;
  } else if (inExponent_ && c >= '0' && c <= '9') {
    // One digit early: the parser uses a digit as soon as it has taken it.
    if (++exponentDigits_ == Wattleaf::kMostExponentDigits && stream_.Peek() >= '0' &&
        stream_.Peek() <= '9')
      refused_ = true;
  } else if (c != '+' && c != '-') {
    inExponent_ = false;
  }
}

}  // namespace TestSupport
