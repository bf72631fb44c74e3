#include "security/trust/path_rules.h"

#include <algorithm>
#include <cwctype>

namespace Zq::Gantry::Security {

namespace {

/// Shares that hold no files: "\\server\pipe\name". The first two are also the devices of
/// "\\.\pipe\name" and "\\.\mailslot\name".
constexpr std::array<std::wstring_view, 3> kPipeShares = {L"pipe", L"mailslot", L"ipc$"};
/// Where the system's own folder of devices holds pipes and mailslots.
constexpr std::array<std::wstring_view, 2> kPipeDevices = {L"namedpipe", L"mailslot"};
/// Folders of the system's object names: what follows them is a device again.
constexpr std::array<std::wstring_view, 6> kObjectFolders = {
    L"??", L"global", L"global??", L"globalroot", L"device", L"dosdevices"};

bool IsSeparator(wchar_t character) { return character == L'\\' || character == L'/'; }

/// Device names consist of ASCII letters; the case of other letters is not folded.
wchar_t Folded(wchar_t letter) {
  return letter >= L'A' && letter <= L'Z' ? static_cast<wchar_t>(letter - L'A' + L'a') : letter;
}

bool EqualsName(std::wstring_view component, std::wstring_view lowerName) {
  return std::equal(component.begin(), component.end(), lowerName.begin(), lowerName.end(),
                    [](wchar_t letter, wchar_t lower) { return Folded(letter) == lower; });
}

template <typename Names>
bool IsOneOf(std::wstring_view component, const Names& names) {
  return std::any_of(names.begin(), names.end(),
                     [component](std::wstring_view name) { return EqualsName(component, name); });
}

void SkipSeparators(std::wstring_view& path) {
  while (!path.empty() && IsSeparator(path.front())) path.remove_prefix(1);
}

/// Takes the first component off `path`, with the separators after it.
std::wstring_view TakeComponent(std::wstring_view& path) {
  const auto end = std::find_if(path.begin(), path.end(), IsSeparator);
  const std::wstring_view component = path.substr(0, static_cast<std::size_t>(end - path.begin()));
  path.remove_prefix(component.size());
  SkipSeparators(path);
  return component;
}

/// For "server\share\...".
bool LiesOnAPipeShare(std::wstring_view path) {
  TakeComponent(path);
  return IsOneOf(TakeComponent(path), kPipeShares);
}

/// For what follows "\\.\", "\\?\" or "\??\".
bool IsDeviceName(std::wstring_view path) {
  SkipSeparators(path);
  for (;;) {
    const std::wstring_view component = TakeComponent(path);
    // Nothing follows: it is the device or the volume itself.
    if (path.empty()) return true;
    if (IsOneOf(component, kPipeShares) || IsOneOf(component, kPipeDevices)) return true;
    if (EqualsName(component, L"unc")) return LiesOnAPipeShare(path);
    if (!IsOneOf(component, kObjectFolders)) return false;
  }
}

}  // namespace

std::wint_t LowerCase::Of(wchar_t character) {
  const auto code = static_cast<std::wint_t>(character);
  if (code >= ofAscii_.size()) return std::towlower(code);
  std::wint_t& lower = ofAscii_[code];
  if (lower == 0) lower = std::towlower(code);
  return lower;
}

bool HasPrefix(std::wstring_view text, std::wstring_view prefix) {
  LowerCase lowerCase;
  return HasPrefix(text, prefix, lowerCase);
}

bool HasPrefix(std::wstring_view text, std::wstring_view prefix, LowerCase& lowerCase) {
  if (text.size() < prefix.size()) return false;
  return std::equal(prefix.begin(), prefix.end(), text.begin(), [&](wchar_t first, wchar_t second) {
    return first == second || lowerCase.Of(first) == lowerCase.Of(second);
  });
}

std::optional<std::wstring> TryFindPackagedFolder(std::wstring_view fullPath) {
  // Kept on purpose: exact, though the roots are compared without regard to case (test
  // TryFindPackagedFolder.FindsOnlyTheExactSpelling).
  const std::size_t position = fullPath.find(kPackagedMarker);
  if (position == std::wstring_view::npos) return std::nullopt;
  return std::wstring(fullPath.substr(0, position + kPackagedMarker.size() - 1));
}

bool NamesADevice(std::wstring_view path) {
  if (path.size() < 2 || !IsSeparator(path[0])) return false;
  if (path.substr(1, 2) == L"??") return IsDeviceName(path.substr(3));
  if (!IsSeparator(path[1])) return false;

  const std::wstring_view rest = path.substr(2);
  std::wstring_view afterFirst = rest;
  const std::wstring_view first = TakeComponent(afterFirst);
  return first == L"." || first == L"?" ? IsDeviceName(afterFirst) : LiesOnAPipeShare(rest);
}

}  // namespace Zq::Gantry::Security
