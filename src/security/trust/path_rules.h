#pragma once

#include <array>
#include <cwchar>
#include <optional>
#include <string>
#include <string_view>

// What follows from the text of a path alone: whether its place is allowed, and whether it names a
// device. Nothing here calls the system. Ordinary users may be able to write to an allowed place:
// see AllowedRootPaths and docs/threats.md.
namespace Zq::Gantry::Security {

/// Every path below one of these folders is allowed, even if all users may write to it, as they may
/// to "C:\Windows\Temp". Checked in this order. Not expanded: the variables are those of the client
/// that a path is judged for, and a variable that is not set stays part of the text.
inline constexpr std::array<const wchar_t*, 3> AllowedRootPaths{
    L"%windir%\\",
    L"%PROGRAMFILES(x86)%\\",
    L"%PROGRAMFILES%\\",
};

/// Marks a folder of packaged applications at the root of a drive. Compared exactly.
inline constexpr std::wstring_view kPackagedMarker = L":\\WindowsApps\\";

/// Lower-case characters as towlower returns them, which is called only once for each ASCII
/// character. For one judgement only, since the locale may change before the next one.
class LowerCase {
 public:
  [[nodiscard]] std::wint_t Of(wchar_t character);

 private:
  std::array<std::wint_t, 128> ofAscii_{};  ///< 0 for a character that was not looked up yet
};

/// Whether `text` begins with `prefix`, without regard to case (towlower on both sides). True for
/// an empty prefix. The second form is for several prefixes in one judgement.
[[nodiscard]] bool HasPrefix(std::wstring_view text, std::wstring_view prefix);
[[nodiscard]] bool HasPrefix(std::wstring_view text, std::wstring_view prefix,
                             LowerCase& lowerCase);

/// The packaged-application folder that `fullPath` lies in, without a closing backslash; absent if
/// the path names none.
[[nodiscard]] std::optional<std::wstring> TryFindPackagedFolder(std::wstring_view fullPath);

/// Whether the text of `path` alone shows that it leads to something other than a file on a disk: a
/// pipe, a mailslot, or a device or volume itself ("\\.\COM1", "\\?\C:"). Opening one may have
/// effects, so this is checked first. False is no guarantee: a link or a drive letter may lead to a
/// pipe.
[[nodiscard]] bool NamesADevice(std::wstring_view path);

}  // namespace Zq::Gantry::Security
