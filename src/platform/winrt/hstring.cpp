#include "platform/winrt/hstring.h"

#include "platform/win32/owners.h"
#include "platform/winrt/call_failure.h"

namespace Zq::Gantry::Platform::WinRt {

void HStringPolicy::Release(Type text) {
  const LastErrorKeeper keeper;
  WindowsDeleteString(text);
}

UniqueHString MakeHString(std::wstring_view text) {
  UniqueHString copy;
  RaiseIfFailed(WindowsCreateString(text.data(), static_cast<UINT32>(text.size()), copy.out()));
  return copy;
}

std::wstring TextOf(HSTRING text) {
  UINT32 length = 0;
  const wchar_t* characters = WindowsGetStringRawBuffer(text, &length);
  return std::wstring(characters, length);
}

}  // namespace Zq::Gantry::Platform::WinRt
