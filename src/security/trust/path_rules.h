#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

// Which places are allowed, as far as the text of a path can tell. Allowed does not mean that
// ordinary users cannot write there: see AllowedRootPaths and docs/threats.md.
namespace Zq::Gantry::Security {

/// Every path below one of these folders is allowed, whoever may write to it: "C:\Windows\Temp" is
/// open to all users. In the order in which they are asked. Not expanded: the variables are those
/// of whom a path is judged for, and a variable that is not set stays part of the text.
inline constexpr std::array<const wchar_t*, 3> AllowedRootPaths{
    L"%windir%\\",
    L"%PROGRAMFILES(x86)%\\",
    L"%PROGRAMFILES%\\",
};

/// Marks a folder of packaged applications at the root of a drive. Compared exactly.
inline constexpr std::wstring_view kPackagedMarker = L":\\WindowsApps\\";

/// Whether `text` starts with `prefix`, without regard to case (towlower on both sides). An empty
/// prefix starts every text.
bool HasPrefix(std::wstring_view text, std::wstring_view prefix);

/// The packaged-application folder that `fullPath` lies in, without closing backslash; absent where
/// the path names none.
std::optional<std::wstring> TryFindPackagedFolder(std::wstring_view fullPath);

}  // namespace Zq::Gantry::Security
