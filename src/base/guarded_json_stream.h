#pragma once

#include <rapidjson/filereadstream.h>

#include <cstddef>
#include <cstdio>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The longest string of a JSON text, in bytes as spelled in the file. A longer one ends the text:
/// the parser collects a string in a block that it enlarges by half each time.
inline constexpr std::size_t kLongestJsonStringBytes = 16U * 1024 * 1024;

/// RapidJSON's file stream, cut off before what its parser cannot handle: more than `limitBytes` (a
/// file may grow while it is read), too long a string, and an exponent of more than nine digits.
/// The parser adds such an exponent to the number of decimal places; the sum overflows and is then
/// used as an index into a table.
class GuardedJsonStream {
 public:
  using Ch = char;

  /// Reads `file` from where it is, through `buffer`. Borrows both until its own end.
  GuardedJsonStream(std::FILE* file, char* buffer, std::size_t bufferBytes, std::size_t limitBytes)
      : stream_(file, buffer, bufferBytes), limitBytes_(limitBytes) {}

  /// True once the text was cut off: the parser may then have seen a valid, but shorter text.
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
  // Each takes one character into account and sets refused_ where the text must end.
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
