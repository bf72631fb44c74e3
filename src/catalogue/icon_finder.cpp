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

// Kept on purpose: an empty outcome is not remembered, so the next row of the same name tries again
// (test IconFinder.RetriesAfterAnEmptyResult).
std::string IconFinder::Find(const std::string& appId, const std::string& displayName) {
  const auto known = iconByDisplayName_.find(displayName);
  if (known != iconByDisplayName_.end()) return known->second;
  std::string icon = MakeIcon(appId, {directory_, displayName});
  if (!icon.empty()) iconByDisplayName_.emplace(displayName, icon);
  return icon;
}

std::string IconFinder::MakeIcon(const std::string& appId, const IconFile& file) const {
  return IsDevicePath(appId) ? maker_.ExportAppIcon(appId, file) : CopyLogosOf(appId, file);
}

// Kept on purpose: every matching package copies its logo to the same path, and the outcome of the
// last copy counts (test IconFinder.UsesTheLastMatchingPackage).
std::string IconFinder::CopyLogosOf(const std::string& appId, const IconFile& file) const {
  if (!file.StaysInDirectory()) return {};
  const std::string target = file.Path();
  bool isCopied = false;
  for (const auto& [packageName, record] : packagedApps_) {
    if (IsPackageOf(packageName, appId)) isCopied = maker_.CopyLogo(record.Logo, target);
  }
  return isCopied ? target : std::string();
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
