#pragma once

#include <rapidjson/filereadstream.h>

#include <cstddef>
#include <cstdio>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// A longer string, as it is spelled in the file, ends the text: the parser collects it in a block
/// that it enlarges by half each time.
inline constexpr std::size_t kLongestJsonStringBytes = 16U * 1024 * 1024;

/// RapidJSON's file stream with an end put to what its parser cannot take: more than `limitBytes`
/// (a file may grow while it is read), too long a string, and an exponent of more than nine digits,
/// whose sum with the count of decimal places overflows in the parser and becomes an index into a
/// table.
class GuardedJsonStream {
 public:
  using Ch = char;

  GuardedJsonStream(std::FILE* file, char* buffer, std::size_t bufferBytes, std::size_t limitBytes)
      : stream_(file, buffer, bufferBytes), limitBytes_(limitBytes) {}

  /// Whether the text was cut here; it must not be taken for a whole one then.
  bool Refused() const { return refused_; }

  Ch Peek() const { return refused_ ? '\0' : stream_.Peek(); }
  Ch Take() {
    if (refused_) return '\0';
    const Ch c = stream_.Take();
    Follow(c);
    return c;
  }
  std::size_t Tell() const { return stream_.Tell(); }

  // For writing in place only, which the parser's default flags never do.
  Ch* PutBegin() { return nullptr; }
  void Put(Ch) {}
  void Flush() {}
  std::size_t PutEnd(Ch*) { return 0; }

 private:
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
