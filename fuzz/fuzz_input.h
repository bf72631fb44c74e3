#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>

// How targets that need more than one value cut them from the bytes of an input.
namespace Fuzz {

/// Ends the process unless the condition holds: a finding.
inline void Require(bool holds) {
  if (!holds) std::abort();
}

/// Values from the front of the bytes; zeros and empty texts after the end.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}

  [[nodiscard]] bool IsEmpty() const { return next_ == end_; }

  std::uint8_t Byte() { return IsEmpty() ? std::uint8_t{0} : *next_++; }

  /// A number of so many bytes, the lowest first.
  std::uint64_t Number(int bytes) {
    std::uint64_t number = 0;
    for (int i = 0; i < bytes; ++i) number |= std::uint64_t{Byte()} << (8 * i);
    return number;
  }

  /// The bytes up to a line end or the end.
  std::string Line() {
    std::string line;
    while (!IsEmpty()) {
      const char c = static_cast<char>(Byte());
      if (c == '\n') break;
      line += c;
    }
    return line;
  }

  /// The rest as 16-bit characters, the low byte first, up to `end` or the end.
  std::wstring WideUntil(wchar_t end) {
    std::wstring text;
    while (!IsEmpty()) {
      const auto c = static_cast<wchar_t>(Number(2));
      if (c == end) break;
      text += c;
    }
    return text;
  }

 private:
  const std::uint8_t* next_;
  const std::uint8_t* end_;
};

}  // namespace Fuzz
