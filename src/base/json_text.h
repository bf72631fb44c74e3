#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The text of a JSON file in memory, up to the file's first zero byte and with zeros at its end,
/// for a parser that works in place.
class JsonText {
 public:
  static constexpr std::size_t kZerosAtEnd = 8;

  /// Empty if the file cannot be opened, is larger than `largestBytes`, or breaks a limit on
  /// strings or exponents. A file that grows while it is read is read as long as it was.
  [[nodiscard]] static std::optional<JsonText> TryRead(const std::wstring& path,
                                                       std::size_t largestBytes);

  /// Whether TryRead would read exactly this text, which it has read before. The file is compared
  /// piece by piece and not kept.
  [[nodiscard]] static bool IsTextOf(const std::wstring& path, std::size_t largestBytes,
                                     std::string_view text);

  /// The first character. The parser may change the text.
  [[nodiscard]] char* Begin() { return bytes_.get(); }
  [[nodiscard]] std::string_view View() const { return {bytes_.get(), size_}; }

 private:
  JsonText(std::unique_ptr<char[]> bytes, std::size_t size)
      : bytes_(std::move(bytes)), size_(size) {}

  std::unique_ptr<char[]> bytes_;
  std::size_t size_;
};

/// Whether no string and no exponent of a JSON text is longer than its limit (json_limits.h).
[[nodiscard]] bool KeepsJsonLimits(std::string_view text);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
