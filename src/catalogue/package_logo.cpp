#include "catalogue/package_logo.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

namespace fs = std::filesystem;

constexpr wchar_t kManifestName[] = L"\\AppxManifest.xml";
constexpr wchar_t kScaleVariant[] = L".scale-100";
constexpr wchar_t kSizeVariant[] = L"44x44";

/// The message is fixed: standard libraries word theirs differently.
fs::directory_iterator OpenDirectory(const fs::path& directory) {
  std::error_code error;
  fs::directory_iterator entries(directory, error);
  if (error) throw std::runtime_error("directory_iterator::directory_iterator");
  return entries;
}

/// The first regular file with `part` in its name, in the directory's own order.
std::wstring FindFileNamed(const fs::path& directory, const std::wstring& part) {
  for (const fs::directory_entry& entry : OpenDirectory(directory)) {
    if (!entry.is_regular_file()) continue;
    const std::wstring name = entry.path().filename().wstring();
    if (name.find(part) != std::wstring::npos) return entry.path().wstring();
  }
  return {};
}

void TellScanFailure(const char* message) {
  const std::string line = std::string("Error resolving icon path: ") + message + "\n";
  std::fputs(line.c_str(), stderr);
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
  } catch (const std::exception& failure) {
    TellScanFailure(failure.what());
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
