#pragma once

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/character_stream.h"
#include "base/json_document.h"
#include "base/json_rows.h"
#include "base/wide_file.h"

// The readers of JSON files, done the plain way: each character is looked at, and rows are taken
// from a document.
namespace TestSupport {

/// Arrays and objects inside each other, the outermost included.
[[nodiscard]] inline int NestingOf(const rapidjson::Value& value) {
  int deepest = 0;
  if (value.IsArray()) {
    for (const auto& element : value.GetArray()) deepest = std::max(deepest, NestingOf(element));
  } else if (value.IsObject()) {
    for (const auto& member : value.GetObject()) {
      deepest = std::max(deepest, NestingOf(member.value));
    }
  } else {
    return 0;
  }
  return deepest + 1;
}

/// LoadJsonDocument for texts of fewer values than its limits.
[[nodiscard]] inline std::unique_ptr<Wattleaf::GenericDocument> DocumentByCharacters(
    const std::wstring& path) {
  const Wattleaf::UniqueFile file = Wattleaf::OpenForReading(path);
  if (!file) return nullptr;
  char buffer[65536];
  CharacterStream stream(file.get(), buffer, sizeof(buffer), Wattleaf::kLargestDataFileBytes);
  auto document = std::make_unique<Wattleaf::GenericDocument>();
  if (document->ParseStream(stream).HasParseError() || stream.Refused()) return nullptr;
  return NestingOf(*document) <= Wattleaf::kDeepestJsonNesting ? std::move(document) : nullptr;
}

/// The document written out. Documents are compared by it, since RapidJSON's operator== finds
/// objects that repeat a name unequal even to themselves.
[[nodiscard]] inline std::string WrittenJson(const rapidjson::Value& value) {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  if (!value.Accept(writer)) return "not writable after " + std::to_string(buffer.GetSize());
  return {buffer.GetString(), buffer.GetSize()};
}

/// One member of a row as text: "null", "string ...", "number ..." with its exact value, "other".
[[nodiscard]] inline std::string ShownMember(const rapidjson::Value& value) {
  if (value.IsString()) return "string " + std::string(value.GetString(), value.GetStringLength());
  if (value.IsInt64()) return "number " + std::to_string(value.GetInt64());
  if (value.IsUint64()) return "number " + std::to_string(value.GetUint64());
  if (value.IsDouble()) return "double " + std::to_string(value.GetDouble());
  return value.IsBool() ? "other" : "null";
}

using ShownRows = std::vector<std::vector<std::string>>;

/// The rows that ReadJsonRows passes on for a document's file.
[[nodiscard]] inline ShownRows RowsOfDocument(const rapidjson::Value& root,
                                              std::span<const std::string_view> names) {
  ShownRows rows;
  for (const rapidjson::Value& element : root.GetArray()) {
    std::vector<std::string>& row = rows.emplace_back();
    for (const std::string_view name : names) {
      const rapidjson::Value* member = Wattleaf::TryMember(element, std::string(name).c_str());
      row.push_back(member != nullptr ? ShownMember(*member) : "null");
    }
  }
  return rows;
}

/// Keeps all rows of a file.
class ShownRowSink : public Wattleaf::JsonRowSink {
 public:
  void Take(Wattleaf::JsonRow row) override {
    std::vector<std::string>& shown = rows.emplace_back();
    for (const rapidjson::Value& value : row) shown.push_back(ShownMember(value));
  }

  ShownRows rows;
};

}  // namespace TestSupport
