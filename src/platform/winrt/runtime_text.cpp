#include "platform/winrt/runtime_text.h"

#include <windows.h>

#include <hstring.h>
#include <winstring.h>

#include <utility>

#include "platform/winrt/calls.h"

namespace Zq::Gantry::Platform::WinRt {

void HStringPolicy::Release(Type text) { WindowsDeleteString(text); }

}  // namespace Zq::Gantry::Platform::WinRt

namespace Zq::Gantry::Security {

namespace {

using Platform::WinRt::MakeHString;
using Platform::WinRt::UniqueHString;

UniqueHString Share(HSTRING text) {
  UniqueHString copy;
  Platform::WinRt::ThrowIfFailed(WindowsDuplicateString(text, copy.out()));
  return copy;
}

}  // namespace

RuntimeText::RuntimeText(const wchar_t* text)
    : RuntimeText(text != nullptr ? std::wstring_view(text) : std::wstring_view()) {}

RuntimeText::RuntimeText(std::wstring_view text) : text_(MakeHString(text).release()) {}

RuntimeText::RuntimeText(const RuntimeText& other) : text_(Share(other.text_).release()) {}

RuntimeText::RuntimeText(RuntimeText&& other) noexcept
    : text_(std::exchange(other.text_, nullptr)) {}

RuntimeText& RuntimeText::operator=(const RuntimeText& other) { return *this = RuntimeText(other); }

RuntimeText& RuntimeText::operator=(RuntimeText&& other) noexcept {
  std::swap(text_, other.text_);
  return *this;
}

RuntimeText::~RuntimeText() { const UniqueHString owned(text_); }

std::wstring_view RuntimeText::View() const {
  UINT32 length = 0;
  const wchar_t* characters = WindowsGetStringRawBuffer(text_, &length);
  return {characters, length};
}

bool operator<(const RuntimeText& first, const RuntimeText& second) {
  return first.View() < second.View();
}

bool operator==(const RuntimeText& first, const RuntimeText& second) {
  return first.View() == second.View();
}

}  // namespace Zq::Gantry::Security
