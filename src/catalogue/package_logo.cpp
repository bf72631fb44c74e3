#include "catalogue/package_logo.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

namespace fs = std::filesystem;

constexpr wchar_t kManifestName[] = L"\\AppxManifest.xml";
constexpr wchar_t kScaleVariant[] = L".scale-100";
constexpr wchar_t kSizeVariant[] = L"44x44";

/// Fixed, whatever failed: standard libraries word their messages differently.
constexpr char kScanFailed[] =
    "Error resolving icon path: directory_iterator::directory_iterator\n";

/// The first regular file with `part` in its name, in the directory's own order.
std::wstring FindFileNamed(const fs::path& directory, const std::wstring& part) {
  for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
    if (!entry.is_regular_file()) continue;
    const std::wstring name = entry.path().filename().wstring();
    if (name.find(part) != std::wstring::npos) return entry.path().wstring();
  }
  return {};
}

bool CanBeOpened(const std::wstring& path) { return std::wifstream(fs::path(path)).good(); }

}  // namespace

std::wstring FindLogoVariant(const std::wstring& installedPath, const std::wstring& manifestLogo) {
  const fs::path named(manifestLogo);
  const fs::path directory = fs::path(installedPath) / named.parent_path();
  std::wstring resolved;
  try {
    resolved = FindFileNamed(directory, named.stem().wstring() + kScaleVariant);
    if (resolved.empty()) resolved = FindFileNamed(directory, kSizeVariant);
  } catch (const std::exception&) {
    std::fputs(kScanFailed, stderr);
  }
  return resolved;
}

std::wstring FindManifestLogo(const std::wstring& installedPath,
                              const ManifestReader& readManifest) {
  // Kept on purpose: a name that can be opened with nothing after the separator is the logo, though
  // a directory cannot (test OddPackageLogo.TakesADirectoryNameThatCanBeOpened).
  std::wstring directoryName = installedPath + L"\\";
  if (CanBeOpened(directoryName)) return directoryName;

  std::wstring logo;
  readManifest(installedPath + kManifestName, logo);
  return logo.empty() ? logo : FindLogoVariant(installedPath, logo);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
