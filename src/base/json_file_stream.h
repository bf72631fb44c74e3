#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <optional>
#include <string_view>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Follows a JSON text through its strings and numbers and finds the first string or exponent that
/// is longer than its limit (json_limits.h).
class JsonTextGuard {
 public:
  /// The number of bytes of the next part of the text that come before the end of the text or
  /// before what breaks a limit: the whole part for most. The text ends at its first zero byte.
  [[nodiscard]] std::size_t Accept(std::string_view part);

  /// Whether a limit was broken. Accept must not be called again then.
  [[nodiscard]] bool HasBrokenLimit() const { return hasBrokenLimit_; }

 private:
  // Each processes a character outside of strings, or inside. False if the text ends before it.
  [[nodiscard]] bool AcceptOutside(char c);
  [[nodiscard]] bool AcceptInside(char c);
  [[nodiscard]] bool Break();

  std::size_t stringBytes_ = 0;
  int exponentDigits_ = 0;
  bool isInString_ = false;
  bool isEscaped_ = false;
  bool isInExponent_ = false;
  bool hasBrokenLimit_ = false;
};

/// How a stream checks the limits on strings and exponents (json_limits.h).
enum class JsonCheck {
  kQuick,  ///< as fast as the parser's own stream, without knowing where strings begin
  kExact,  ///< follows each character
};

/// RapidJSON's input stream over a file. Checks each buffer once, before the parser gets it. If the
/// quick check cannot rule out that a buffer breaks a limit, the text ends before it and
/// NeedsCare() is true: the file is to be read again with the exact check.
class JsonFileStream {
 public:
  using Ch = char;

  /// Reads `file`, which is borrowed, from its current position. `limitBytes` counts from there.
  JsonFileStream(std::FILE* file, std::size_t limitBytes, JsonCheck check);

  /// True after the text was cut off at a broken limit, or because the file has more than
  /// `limitBytes`: it may grow while it is read. A parser that reports success may have read a
  /// shorter text, so callers check this too.
  [[nodiscard]] bool Refused() const { return refused_; }
  /// True after the text ended before a buffer that only the exact check can judge. What was parsed
  /// so far must be dropped.
  [[nodiscard]] bool NeedsCare() const { return needsCare_; }

  /// The parser has finished a string or another value, so that no string is longer than what is
  /// read from here on.
  void EndValue() { bytesSinceValue_ = 0; }

  // RapidJSON's concept of an input stream. The text ends at the first zero byte.
  [[nodiscard]] Ch Peek() const { return *next_; }
  Ch Take() {
    const Ch c = *next_;
    if (next_ < last_) {
      ++next_;
    } else if (!atEnd_) {
      Refill();
    }
    return c;
  }
  [[nodiscard]] std::size_t Tell() const {
    return bytesBefore_ + static_cast<std::size_t>(next_ - Buffer());
  }

  // For parsing in place only, which the parser's default flags never do.
  Ch* PutBegin() { return nullptr; }
  void Put(Ch) {}
  void Flush() {}
  std::size_t PutEnd(Ch*) { return 0; }

 private:
  /// The end of the buffer before, kept in front of the buffer: a number may lie across both.
  static constexpr std::size_t kKeptBytes = 16;
  static constexpr std::size_t kBufferBytes = 65536;
  /// A longer string might break the limit: then each character counts. Far below the limit, and
  /// far above any string of a file that this library or the collector writes.
  static constexpr std::size_t kMostBytesWithoutValue = 2U * 1024 * 1024;

  [[nodiscard]] char* Buffer() const { return memory_.get() + kKeptBytes; }
  void Refill();
  void CheckBuffer();
  /// Ends the text `bytes` after the start of the buffer.
  void EndTextAfter(std::size_t bytes);

  std::unique_ptr<char[]> memory_;  ///< the kept bytes, the buffer, and a closing zero
  char* next_;                      ///< the next character
  char* last_;                      ///< the last one of the buffer
  std::FILE* file_;
  std::size_t limitBytes_;
  std::size_t bufferedBytes_ = 0;
  std::size_t bytesBefore_ = 0;  ///< read before this buffer
  std::size_t bytesSinceValue_ = 0;
  std::optional<JsonTextGuard> guard_;  ///< of the exact check
  bool atEnd_ = false;
  bool refused_ = false;
  bool needsCare_ = false;
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
