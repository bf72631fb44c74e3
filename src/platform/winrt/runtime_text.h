#pragma once

#include <string_view>

#include "platform/win32/unique_resource.h"
#include "wattleaf_export.h"

// Texts of the Windows Runtime: the owner of one, and one as a value. This header includes no
// Windows header, so that programs which use the library need none for it.

struct HSTRING__;  // what an HSTRING points to; with this, no Windows header is needed here

namespace Zq::Gantry::Platform::WinRt {

/// The runtime's immutable text, one reference (WindowsDeleteString). Null is the empty text.
struct HStringPolicy {
  using Type = HSTRING__*;
  static Type Empty() { return nullptr; }
  WATTLEAF_API static void Release(Type text);
};
using UniqueHString = UniqueResource<HStringPolicy>;

}  // namespace Zq::Gantry::Platform::WinRt

namespace Zq::Gantry::Security {

/// An immutable text of the Windows Runtime, as a value with an order. It holds one HSTRING and
/// nothing else, so it has the same form in memory as the text type of any other projection.
/// Copies share the characters. A default-constructed text, null and L"" are equal. Each text may
/// be read on any thread. If memory runs out, the constructors throw an exception derived from
/// std::exception (CallFailure of calls.h); nothing is logged.
class WATTLEAF_API RuntimeText {
 public:
  /// The empty text, without a call of the runtime.
  RuntimeText() = default;
  /// Implicit, so that a literal can be looked up in a table. Null is the empty text.
  RuntimeText(const wchar_t* text);
  /// A copy of the characters (WindowsCreateString), embedded zeros included.
  explicit RuntimeText(std::wstring_view text);
  /// Takes a reference of its own (WindowsDuplicateString); so does the copy assignment.
  RuntimeText(const RuntimeText& other);
  /// Leaves `other` empty. The move assignment exchanges the two texts.
  RuntimeText(RuntimeText&& other) noexcept;
  RuntimeText& operator=(const RuntimeText& other);
  RuntimeText& operator=(RuntimeText&& other) noexcept;
  /// Gives the reference up (WindowsDeleteString).
  ~RuntimeText();

  /// The HSTRING, which stays this object's; null for an empty text.
  [[nodiscard]] HSTRING__* get() const { return text_; }
  /// The characters, embedded zeros included. Valid as long as this object or a copy of it lives.
  [[nodiscard]] std::wstring_view View() const;

 private:
  HSTRING__* text_ = nullptr;
};

/// Compare the values of the 16-bit characters; no rules of any language apply.
[[nodiscard]] WATTLEAF_API bool operator<(const RuntimeText& first, const RuntimeText& second);
[[nodiscard]] WATTLEAF_API bool operator==(const RuntimeText& first, const RuntimeText& second);

}  // namespace Zq::Gantry::Security
