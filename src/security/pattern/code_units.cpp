#include "security/pattern/code_units.h"

#include <cstdint>

namespace Zq::Gantry::Security {

std::u16string CodeUnits(std::wstring_view text) {
  std::u16string units;
  units.reserve(text.size());
  for (const wchar_t character : text) {
    const auto code = static_cast<std::uint32_t>(character);
    if (code > 0xFFFF) {
      units += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
      units += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
    } else {
      units += static_cast<char16_t>(code);
    }
  }
  return units;
}

}  // namespace Zq::Gantry::Security
