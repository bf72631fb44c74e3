#include "catalogue/packaged_apps.h"

#include "base/byte_text.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// The text that `read` returns; empty if it throws.
template <typename Read>
std::wstring TextOrEmpty(Read read) {
  try {
    return read();
  } catch (...) {
    return {};
  }
}

std::wstring OwnLogo(InstalledPackage& package) {
  std::wstring path = package.LogoPath();
  if (!path.empty()) path.erase(0, 1);
  return path;
}

std::string Narrow(const std::wstring& text) {
  return NarrowChars(text.data(), text.data() + text.size());
}

void AddPackage(InstalledPackage& package, const ManifestReader& readManifest, PackagedApps& apps) {
  if (package.IsFramework()) return;
  if (package.SignatureKind() == kSystemSignature) return;
  const std::wstring name = package.Name();
  const std::wstring shown = TextOrEmpty([&] { return package.DisplayName(); });
  std::wstring logo;
  if (!shown.empty()) {
    logo = TextOrEmpty([&] { return FindManifestLogo(package.InstalledPath(), readManifest); });
  }
  if (logo.empty()) logo = TextOrEmpty([&] { return OwnLogo(package); });
  if (shown.empty() || logo.empty()) return;
  // Kept on purpose: characters above one byte become wrong letters (test
  // AddPackagedAppsTest.NarrowsAllThreeTextsToTheirLowBytes).
  apps[Narrow(name)] = {Narrow(shown), Narrow(logo)};
}

}  // namespace

void AddPackagedApps(PackageWalk& walk, const ManifestReader& readManifest,
                     const std::function<void()>& packageFailed, PackagedApps& apps) {
  for (bool more = walk.HasCurrent(); more; more = walk.MoveNext()) {
    try {
      AddPackage(*walk.Current(), readManifest, apps);
    } catch (...) {
      packageFailed();
    }
  }
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
