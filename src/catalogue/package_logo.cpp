#include "catalogue/package_logo.h"

#include <cstddef>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <pugixml.hpp>

#include "base/wide_file.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

namespace fs = std::filesystem;

constexpr wchar_t kManifestName[] = L"\\AppxManifest.xml";
constexpr wchar_t kScaleVariant[] = L".scale-100";
constexpr wchar_t kSizeVariant[] = L"44x44";

/// The same text for every cause: standard libraries word their messages differently.
constexpr char kScanFailed[] =
    "Error resolving icon path: directory_iterator::directory_iterator\n";

/// The whole file; empty optional if it cannot be opened or read, or is too long.
std::optional<std::string> TryReadManifest(const std::wstring& path) {
  const UniqueFile file = OpenSharedForReading(path);
  if (!file) return std::nullopt;
  const std::int64_t length = LengthBytes(file.get());
  if (length < 0 || length > kLargestManifestBytes) return std::nullopt;

  std::string bytes(static_cast<std::size_t>(length), '\0');
  if (std::fread(bytes.data(), 1, bytes.size(), file.get()) != bytes.size()) return std::nullopt;
  return bytes;
}

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

// Kept on purpose: the prefix "uap" is compared as plain text, whichever namespace it is bound to
// (test TryReadManifestLogo.ComparesTheNamespacePrefixAsPlainText).
std::optional<std::wstring> TryReadManifestLogo(const std::wstring& manifestPath) {
  const auto bytes = TryReadManifest(manifestPath);
  if (!bytes) return std::nullopt;
  pugi::xml_document document;
  if (!document.load_buffer(bytes->data(), bytes->size())) return std::nullopt;

  const auto logo = document.child(L"Package")
                        .child(L"Applications")
                        .child(L"Application")
                        .child(L"uap:VisualElements")
                        .attribute(L"Square44x44Logo");
  if (!logo) return std::nullopt;
  return logo.value();
}

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
  // Kept on purpose: if the directory's name with a trailing separator can be opened as a file, it
  // is the logo, though no directory can (test
  // FindManifestLogo.ReturnsADirectoryPathThatCanBeOpenedAsAFile).
  std::wstring directoryName = installedPath + L"\\";
  if (CanBeOpened(directoryName)) return directoryName;

  std::wstring logo;
  readManifest(installedPath + kManifestName, logo);
  return logo.empty() ? logo : FindLogoVariant(installedPath, logo);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
