// Any bytes as a package's manifest: reading it and searching for the logo that it names must not
// fail a sanitizer.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "catalogue/package_logo.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

/// A package's folder with one image.
std::filesystem::path ScratchPackage() {
  std::string path = (std::filesystem::temp_directory_path() / "wattleaf-fuzz-XXXXXX").string();
  if (mkdtemp(path.data()) == nullptr) std::abort();
  std::filesystem::create_directory(path + "/Assets");
  std::ofstream(path + "/Assets/Square44x44Logo.scale-100.png") << "png";
  return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::filesystem::path package = ScratchPackage();
  const std::filesystem::path manifest = package / "AppxManifest.xml";
  std::ofstream(manifest, std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  const auto logo = TryReadManifestLogo(manifest.wstring());
  if (!logo) return 0;
  try {
    // Only the search is under test: whether it finds the image depends on the input.
    static_cast<void>(FindLogoVariant(package.wstring(), *logo));
  } catch (const std::exception&) {
    // The text is not a valid path on this system. The product's caller catches this too.
  }
  return 0;
}
