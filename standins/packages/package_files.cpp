#include "package_files.h"

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace Standin::Packages {

namespace {

void Write(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  file << bytes;
  if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
}

std::string BigEndian(std::uint32_t value) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xFF);
  return bytes;
}

std::uint32_t Crc32(const std::string& bytes) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (const char byte : bytes) {
    crc ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
  }
  return ~crc;
}

std::uint32_t Adler32(const std::string& bytes) {
  std::uint32_t low = 1;
  std::uint32_t high = 0;
  for (const char byte : bytes) {
    low = (low + static_cast<unsigned char>(byte)) % 65521;
    high = (high + low) % 65521;
  }
  return high << 16 | low;
}

std::string Chunk(const std::string& type, const std::string& data) {
  return BigEndian(static_cast<std::uint32_t>(data.size())) + type + data +
         BigEndian(Crc32(type + data));
}

/// A zlib stream of one stored block, which holds up to 65,535 bytes.
std::string Stored(const std::string& bytes) {
  const auto size = static_cast<std::uint16_t>(bytes.size());
  const auto pair = [](std::uint16_t value) {
    return std::string{static_cast<char>(value & 0xFF), static_cast<char>(value >> 8)};
  };
  return std::string("\x78\x01\x01", 3) + pair(size) + pair(static_cast<std::uint16_t>(~size)) +
         bytes + BigEndian(Adler32(bytes));
}

/// Rows of red, green, blue and opacity, each with the number of its filter first.
std::string DiscRows(std::uint32_t side, std::uint32_t colour) {
  const int across = static_cast<int>(side);
  const std::string opaque = BigEndian(colour << 8 | 0xFF);
  std::string rows;
  for (int y = 0; y < across; ++y) {
    rows += '\0';
    for (int x = 0; x < across; ++x) {
      const int dx = 2 * x + 1 - across;
      const int dy = 2 * y + 1 - across;
      rows += dx * dx + dy * dy <= across * across ? opaque : std::string(4, '\0');
    }
  }
  return rows;
}

/// The bytes of a PNG: a disc of this colour (0xRRGGBB) on a transparent square of `side` pixels,
/// at most 100.
std::string DiscPng(std::uint32_t side, std::uint32_t colour) {
  // Eight bits for each of four channels; compression, filter and interlacing are the default ones.
  const std::string header = BigEndian(side) + BigEndian(side) + std::string("\x08\x06\0\0\0", 5);
  return "\x89PNG\r\n\x1A\n" + Chunk("IHDR", header) +
         Chunk("IDAT", Stored(DiscRows(side, colour))) + Chunk("IEND", "");
}

constexpr char kSmallLogo[] = "Square44x44Logo";

/// One file of a package's folder of images.
struct LogoFile {
  std::string_view name;
  std::uint32_t side;
  std::uint32_t tint;  // of the package's colour, so that no two variants are equal
};

/// The files of a package's logo. `stem` is the name in the manifest without its extension; empty
/// if the manifest names no logo.
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

/// A colour for each package, the same at each run.
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
