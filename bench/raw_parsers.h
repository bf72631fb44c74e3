#pragma once

#include <rapidjson/document.h>

#include <filesystem>
#include <pugixml.hpp>

// What each figure is compared with: the parsers alone, on the same bytes on disk.
namespace Bench {

/// RapidJSON's document from its file stream, with default flags. Has a parse error for a file that
/// cannot be read.
[[nodiscard]] rapidjson::Document ParseJson(const std::filesystem::path& path);

/// RapidJSON's writer on its file stream. False for a file that cannot be opened.
[[nodiscard]] bool WriteJson(const std::filesystem::path& path,
                             const rapidjson::Document& document);

/// pugixml's document of wide characters. False for a file that does not parse.
[[nodiscard]] bool ParseXml(const std::filesystem::path& path, pugi::xml_document& document);

}  // namespace Bench
