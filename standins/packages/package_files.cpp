#include "package_files.h"

#include <fstream>
#include <functional>
#include <stdexcept>

#include "png_image.h"

namespace Standin::Packages {

namespace {

void Write(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  file << bytes;
  if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
}

bool HasManifestLogo(const PackagedApp& app) { return app.logo == "scale" || app.logo == "size"; }

std::string Facts(const PackagedApp& app) {
  std::string lines = "name=" + std::string(app.name) + "\nshown=" + std::string(app.shownName) +
                      "\nkind=" + std::string(app.kind) + '\n';
  if (app.logo == "own") lines += "logo=Assets\\StoreLogo.png\n";
  return lines;
}

std::string Manifest(const PackagedApp& app) {
  const std::string name(app.shownName);
  const std::string visual = HasManifestLogo(app)
                                 ? "      <uap:VisualElements DisplayName=\"" + name +
                                       "\" Square44x44Logo=\"Assets\\Square44x44Logo.png\" />\n"
                                 : std::string();
  return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
         "<Package xmlns=\"http://schemas.microsoft.com/appx/manifest/foundation/windows10\""
         " xmlns:uap=\"http://schemas.microsoft.com/appx/manifest/uap/windows10\">\n"
         "  <Identity Name=\"" +
         std::string(app.name) +
         "\" Version=\"1.0.0.0\" />\n"
         "  <Applications>\n    <Application Id=\"App\">\n" +
         visual + "    </Application>\n  </Applications>\n</Package>\n";
}

/// Always the same for a package, and another for the next.
std::uint32_t Colour(const PackagedApp& app) {
  std::uint32_t colour = 0x811C9DC5;
  for (const char letter : app.name)
    colour = (colour ^ static_cast<unsigned char>(letter)) * 0x01000193;
  return colour >> 8;
}

void WriteLogos(const std::filesystem::path& folder, const PackagedApp& app) {
  if (app.logo == "scale") {
    Write(folder / "Square44x44Logo.scale-100.png", DiscPng(44, Colour(app)));
    Write(folder / "Square44x44Logo.scale-200.png", DiscPng(88, Colour(app)));
  } else if (app.logo == "size") {
    Write(folder / "Square44x44Logo.targetsize-44.png", DiscPng(44, Colour(app)));
  } else if (app.logo == "own") {
    Write(folder / "StoreLogo.png", DiscPng(50, Colour(app)));
  }
}

}  // namespace

std::string FullName(const PackagedApp& app) {
  return std::string(app.name) + "_1.0.0.0_x64__" + std::string(app.familySuffix);
}

void WritePackage(const std::filesystem::path& root, const PackagedApp& app) {
  const std::filesystem::path folder = root / FullName(app);
  std::filesystem::create_directories(folder / "Assets");
  Write(folder / "package.txt", Facts(app));
  Write(folder / "AppxManifest.xml", Manifest(app));
  WriteLogos(folder / "Assets", app);
}

}  // namespace Standin::Packages
