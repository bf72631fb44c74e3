#include "catalogue/package_manifest.h"

#include <pugixml.hpp>

#include <cstddef>

#include "base/wide_file.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// The whole file; nothing where it cannot be opened or read, or is too long.
std::optional<std::string> TryReadFile(const std::wstring& path) {
  const UniqueFile file = OpenSharedForReading(path);
  if (!file) return std::nullopt;
  const std::int64_t length = LengthBytes(file.get());
  if (length < 0 || length > kLargestManifestBytes) return std::nullopt;

  std::string bytes(static_cast<std::size_t>(length), '\0');
  if (std::fread(bytes.data(), 1, bytes.size(), file.get()) != bytes.size()) return std::nullopt;
  return bytes;
}

}  // namespace

// Kept on purpose: the prefix is plain text, whatever name space it stands for (test
// PackageManifest.ComparesThePrefixAsPlainText).
std::optional<std::wstring> TryReadManifestLogo(const std::wstring& manifestPath) {
  const auto bytes = TryReadFile(manifestPath);
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

}  // namespace Zq::Gantry::Server::Services::Wattleaf
