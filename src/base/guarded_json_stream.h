#pragma once

#include <rapidjson/filereadstream.h>

#include <cstddef>
#include <cstdio>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// RapidJSON's file stream, cut off at a string or an exponent that is longer than its limit
/// (json_limits.h), and after `limitBytes`, since a file may grow while it is read. Looks at each
/// character; only the few files that JsonFileStream cannot judge are read through it.
class GuardedJsonStream {
 public:
  using Ch = char;

  /// Reads `file` from its current position through `buffer`, which has at least 4 bytes. Borrows
  /// both for its own life. `limitBytes` counts from that position.
  GuardedJsonStream(std::FILE* file, char* buffer, std::size_t bufferBytes, std::size_t limitBytes)
      : stream_(file, buffer, bufferBytes), limitBytes_(limitBytes) {}

  /// True after the text was cut off. A parser that reports success may then have read a shorter
  /// text, so callers check this too.
  [[nodiscard]] bool Refused() const { return refused_; }

  /// Nothing depends on where values end: each character is looked at.
  void EndValue() {}

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

}  // namespace Zq::Gantry::Server::Services::Wattleaf
