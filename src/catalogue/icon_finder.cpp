#include "catalogue/icon_finder.h"

#include "catalogue/app_identity.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

std::string IconFile::Path() const {
  return std::string(directory) + "\\" + std::string(displayName) + ".png";
}

bool IconFile::StaysInDirectory() const {
  constexpr std::string_view kLeadsElsewhere("\\/:\0", 4);
  return displayName.find_first_of(kLeadsElsewhere) == std::string_view::npos &&
         directory.find('\0') == std::string_view::npos;
}

std::string IconFinder::Make(const std::string& appId, std::string_view displayName) const {
  const IconFile file{directory_, displayName};
  return IsDevicePath(appId) ? maker_.ExportAppIcon(appId, file) : CopyLogosOf(appId, file);
}

// Kept on purpose: every matching package copies its logo to the same path, and the outcome of the
// last copy counts (test IconFinder.UsesTheLastMatchingPackage).
std::string IconFinder::CopyLogosOf(const std::string& appId, const IconFile& file) const {
  std::string target;  // most identities belong to no package
  bool isCopied = false;
  for (const auto& [packageName, record] : packagedApps_) {
    if (!IsPackageOf(packageName, appId)) continue;
    if (!file.StaysInDirectory()) return {};
    if (target.empty()) target = file.Path();
    isCopied = maker_.CopyLogo(record.Logo, target);
  }
  return isCopied ? target : std::string();
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
