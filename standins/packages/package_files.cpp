#include "package_files.h"

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "png_image.h"

namespace Standin::Packages {

namespace {

void Write(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  file << bytes;
  if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
}

constexpr char kSmallLogo[] = "Square44x44Logo";

/// One file of a package's folder of images.
struct LogoFile {
  std::string_view name;
  std::uint32_t side;
  std::uint32_t tint;  // of the package's colour, so that no two variants are equal
};

/// How the logo of a package lies on disk. `stem` is the name that the manifest has without its
/// extension; empty where the manifest names none.
struct LogoShape {
  std::string_view kind;
  const char* stem;
  std::vector<LogoFile> files;
};

constexpr LogoFile kOwnLogo = {"StoreLogo.png", 50, 0};
/// The logo of an application that is not the first one of its manifest.
constexpr char kLaterLogo[] = "Later44x44Logo";

const std::vector<LogoShape>& LogoShapes() {
  static const std::vector<LogoShape> shapes = {
      {"scale",
       kSmallLogo,
       {{"Square44x44Logo.scale-100.png", 44, 0},
        {"Square44x44Logo.scale-100_contrast-black.png", 44, 0x101010},
        {"Square44x44Logo.contrast-white_scale-100.png", 44, 0x202020},
        {"Square44x44Logo.scale-200.png", 88, 0},
        {"Square44x44Logo.targetsize-44_altform-unplated.png", 44, 0x303030}}},
      {"size", kSmallLogo, {{"Square44x44Logo.targetsize-44.png", 44, 0}}},
      {"scale200", kSmallLogo, {{"Square44x44Logo.scale-200.png", 88, 0}}},
      {"large", "AppList", {{"AppList.scale-200.png", 88, 0}, kOwnLogo}},
      {"variants",
       kSmallLogo,
       {{"Square44x44Logo.altform-unplated_targetsize-44.png", 44, 0},
        {"Square44x44Logo.contrast-black_scale-100.png", 44, 0x101010},
        {"Square44x44Logo.scale-200.png", 88, 0}}},
      {"contrast",
       kSmallLogo,
       {{"Square44x44Logo.altform-unplated_targetsize-44.png", 44, 0x303030},
        {"Square44x44Logo.scale-100_contrast-black.png", 44, 0},
        {"Square44x44Logo.scale-200.png", 88, 0}}},
      {"own", "", {kOwnLogo}},
      {"none", "", {}},
  };
  return shapes;
}

const LogoShape& ShapeOf(const PackagedApp& app) {
  for (const LogoShape& shape : LogoShapes()) {
    if (shape.kind == app.logo) return shape;
  }
  throw std::runtime_error("no such kind of logo: " + std::string(app.logo));
}

bool HasOwnLogo(const LogoShape& shape) {
  return !shape.files.empty() && shape.files.back().name == kOwnLogo.name;
}

std::string Facts(const PackagedApp& app) {
  std::string lines = "name=" + std::string(app.name) + "\nshown=" + std::string(app.shownName) +
                      "\nkind=" + std::string(app.kind) + '\n';
  if (HasOwnLogo(ShapeOf(app))) lines += "logo=Assets\\" + std::string(kOwnLogo.name) + '\n';
  return lines;
}

/// `id` begins with "-" for an application without visual elements.
std::string ApplicationElement(const PackagedApp& app, const std::string& id, bool isFirst) {
  const std::string stem = isFirst ? ShapeOf(app).stem : kLaterLogo;
  const std::string visual = id.starts_with('-') || stem.empty()
                                 ? std::string()
                                 : "      <uap:VisualElements DisplayName=\"" +
                                       std::string(app.shownName) +
                                       "\" Square44x44Logo=\"Assets\\" + stem + ".png\" />\n";
  return "    <Application Id=\"" + id.substr(id.starts_with('-') ? 1 : 0) + "\">\n" + visual +
         "    </Application>\n";
}

std::string ApplicationElements(const PackagedApp& app) {
  std::string elements;
  std::istringstream ids{std::string(app.applications)};
  for (std::string id; std::getline(ids, id, ',');) {
    elements += ApplicationElement(app, id, elements.empty());
  }
  return elements;
}

std::string Manifest(const PackagedApp& app) {
  return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
         "<Package xmlns=\"http://schemas.microsoft.com/appx/manifest/foundation/windows10\""
         " xmlns:uap=\"http://schemas.microsoft.com/appx/manifest/uap/windows10\">\n"
         "  <Identity Name=\"" +
         std::string(app.name) + "\" Version=\"" + std::string(app.version) +
         "\" />\n  <Applications>\n" + ApplicationElements(app) + "  </Applications>\n</Package>\n";
}

/// Always the same for a package, and another for the next.
std::uint32_t Colour(const PackagedApp& app) {
  std::uint32_t colour = 0x811C9DC5;
  for (const char letter : FullName(app))
    colour = (colour ^ static_cast<unsigned char>(letter)) * 0x01000193;
  return colour >> 8;
}

void WriteLogos(const std::filesystem::path& folder, const PackagedApp& app) {
  for (const LogoFile& file : ShapeOf(app).files) {
    Write(folder / file.name, DiscPng(file.side, Colour(app) ^ file.tint));
  }
  if (app.applications.find(',') == std::string_view::npos) return;
  Write(folder / (std::string(kLaterLogo) + ".scale-100.png"),
        DiscPng(44, ~Colour(app) & 0xFFFFFF));
}

}  // namespace

std::string FullName(const PackagedApp& app) {
  return std::string(app.name) + '_' + std::string(app.version) + "_x64__" +
         std::string(app.familySuffix);
}

void WritePackage(const std::filesystem::path& root, const PackagedApp& app) {
  const std::filesystem::path folder = root / FullName(app);
  std::filesystem::create_directories(folder / "Assets");
  Write(folder / "package.txt", Facts(app));
  Write(folder / "AppxManifest.xml", Manifest(app));
  WriteLogos(folder / "Assets", app);
}

}  // namespace Standin::Packages
