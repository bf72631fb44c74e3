#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

// What makes a place a protected one, as far as the text of a path can tell.
namespace Zq::Gantry::Security {

/// Folders whose content an ordinary user cannot write, in the order in which they are asked. Not
/// expanded: the variables are those of whom a path is judged for.
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
