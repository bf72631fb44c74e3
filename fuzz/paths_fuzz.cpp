// Any path: whether it begins with a root, lies in a packaged folder or names a device is what its
// components say, taken one by one. The bytes are 16-bit characters: a root, a line end, a path.
#include <algorithm>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "fuzz_input.h"
#include "security/access/literal_rules.h"
#include "security/trust/path_rules.h"

using namespace Zq::Gantry::Security;
using Fuzz::Require;

namespace {

using Components = std::vector<std::wstring>;

const std::set<std::wstring> kPipeShares{L"pipe", L"mailslot", L"ipc$"};
const std::set<std::wstring> kDevices{L"pipe", L"mailslot", L"ipc$", L"namedpipe"};
const std::set<std::wstring> kFolders{L"??",         L"global", L"global??",
                                      L"globalroot", L"device", L"dosdevices"};

bool IsSeparator(wchar_t c) { return c == L'\\' || c == L'/'; }

/// With small ASCII letters. The first one is empty if the text begins with a separator; no other
/// is.
Components ComponentsOf(const std::wstring& path) {
  Components components(1);
  bool wasSeparator = false;
  for (const wchar_t c : path) {
    if (IsSeparator(c)) {
      wasSeparator = true;
      continue;
    }
    if (wasSeparator) components.emplace_back();
    wasSeparator = false;
    components.back() += c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + 32) : c;
  }
  return components;
}

/// For components that begin with a server.
bool IsPipeShare(const Components& components, std::size_t server) {
  return server + 1 < components.size() && kPipeShares.contains(components[server + 1]);
}

bool IsDevice(const Components& components, std::size_t first) {
  for (std::size_t i = first; i + 1 < components.size(); ++i) {
    if (kDevices.contains(components[i])) return true;
    if (components[i] == L"unc") return IsPipeShare(components, i + 1);
    if (!kFolders.contains(components[i])) return false;
  }
  return true;
}

bool LiteralNamesADevice(const std::wstring& path) {
  if (path.size() < 2 || !IsSeparator(path[0])) return false;
  if (path.starts_with(path[0] + std::wstring(L"??"))) {
    const Components components = ComponentsOf(path.substr(3));
    return IsDevice(components, components[0].empty() ? 1 : 0);
  }
  if (!IsSeparator(path[1])) return false;
  const Components components = ComponentsOf(path.substr(2));
  const bool isDevice = components[0] == L"." || components[0] == L"?";
  return isDevice ? IsDevice(components, 1) : IsPipeShare(components, 0);
}

std::wstring LiteralPackagedFolder(const std::wstring& path) {
  for (std::size_t i = 0; i < path.size(); ++i) {
    if (path.compare(i, 14, L":\\WindowsApps\\") == 0) return path.substr(0, i + 13);
  }
  return L"";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const std::wstring root = input.WideUntil(L'\n');
  const std::wstring path = input.WideUntil(L'\xFFFF');
  Require(HasPrefix(path, root) == TestSupport::LiteralHasPrefix(path, root));
  Require(NamesADevice(path) == LiteralNamesADevice(path));
  Require(TryFindPackagedFolder(path).value_or(L"") == LiteralPackagedFolder(path));
  return 0;
}
