#include "platform/winrt/calls.h"

#include <winstring.h>

namespace Zq::Gantry::Platform::WinRt {

UniqueHString MakeHString(std::wstring_view text) {
  UniqueHString copy;
  ThrowIfFailed(WindowsCreateString(text.data(), static_cast<UINT32>(text.size()), copy.out()));
  return copy;
}

std::wstring TextOf(HSTRING text) {
  UINT32 length = 0;
  const wchar_t* characters = WindowsGetStringRawBuffer(text, &length);
  return std::wstring(characters, length);
}

}  // namespace Zq::Gantry::Platform::WinRt
