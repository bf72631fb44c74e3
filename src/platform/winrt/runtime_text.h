#pragma once

#include <windows.h>

#include <hstring.h>

#include <string_view>

#include "wattleaf_export.h"

namespace Zq::Gantry::Security {

/// An immutable text of the Windows Runtime, as an ordered value. Nothing but one HSTRING: where
/// the host has one of another projection, the two have the same form in memory.
class WATTLEAF_API RuntimeText {
 public:
  RuntimeText() = default;
  /// Implicit, so that a table can be asked for a literal. Null is the empty text.
  RuntimeText(const wchar_t* text);
  explicit RuntimeText(std::wstring_view text);
  RuntimeText(const RuntimeText& other);
  RuntimeText(RuntimeText&& other) noexcept;
  RuntimeText& operator=(const RuntimeText& other);
  RuntimeText& operator=(RuntimeText&& other) noexcept;
  ~RuntimeText();

  /// Still this object's; null for an empty text.
  HSTRING get() const { return text_; }
  /// The characters, embedded zeros included. Valid as long as this object and unchanged by copies.
  std::wstring_view View() const;

 private:
  HSTRING text_ = nullptr;
};

/// By plain character value: nothing of any language counts.
WATTLEAF_API bool operator<(const RuntimeText& first, const RuntimeText& second);
WATTLEAF_API bool operator==(const RuntimeText& first, const RuntimeText& second);

}  // namespace Zq::Gantry::Security
