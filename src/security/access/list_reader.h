#pragma once

#include <optional>
#include <string_view>

namespace Zq::Gantry::Security {

/// The items of a rule's list, one after another: the text is cut at each comma and nothing is
/// trimmed. Two commas in a row hold an empty item, a comma at the end is followed by none, and an
/// empty text has no items. The text outlives the reader and the items.
class ListReader {
 public:
  explicit ListReader(std::wstring_view text) : rest_(text) {}

  /// The next item; absent behind the last one.
  std::optional<std::wstring_view> TryNext() {
    if (rest_.empty()) return std::nullopt;
    const std::wstring_view item = rest_.substr(0, rest_.find(L','));
    const bool hasComma = item.size() < rest_.size();
    rest_.remove_prefix(item.size() + (hasComma ? 1 : 0));
    return item;
  }

 private:
  std::wstring_view rest_;
};

}  // namespace Zq::Gantry::Security
