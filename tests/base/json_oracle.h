#pragma once

#include <rapidjson/document.h>

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/guarded_json_stream.h"
#include "base/json_document.h"
#include "base/json_parse.h"
#include "base/json_rows.h"
#include "base/wide_file.h"

// The readers of JSON files, done the plain way: each character is looked at, and rows are taken
// from a document.
namespace TestSupport {

/// LoadJsonDocument through GuardedJsonStream alone.
[[nodiscard]] inline std::unique_ptr<Zq::Gantry::Server::Services::Wattleaf::GenericDocument>
DocumentByCharacters(const std::wstring& path,
                     const Zq::Gantry::Server::Services::Wattleaf::JsonLimits& limits = {}) {
  using namespace Zq::Gantry::Server::Services::Wattleaf;
  const UniqueFile file = OpenForReading(path);
  if (!file) return nullptr;
  const std::int64_t length = LengthBytes(file.get());
  if (length < 0 || static_cast<std::uint64_t>(length) > limits.fileBytes) return nullptr;
  char buffer[65536];
  GuardedJsonStream stream(file.get(), buffer, sizeof(buffer), limits.fileBytes);
  auto document = std::make_unique<GenericDocument>();
  bool isParsed = false;
  auto parse = [&](GenericDocument& target) {
    return isParsed = ParseJson(stream, target, limits.openValues);
  };
  document->Populate(parse);
  return isParsed ? std::move(document) : nullptr;
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
      const rapidjson::Value* member =
          Zq::Gantry::Server::Services::Wattleaf::TryMember(element, std::string(name).c_str());
      row.push_back(member != nullptr ? ShownMember(*member) : "null");
    }
  }
  return rows;
}

/// Keeps all rows of a file.
class ShownRowSink : public Zq::Gantry::Server::Services::Wattleaf::JsonRowSink {
 public:
  void Begin() override { rows.clear(); }
  void Take(Zq::Gantry::Server::Services::Wattleaf::JsonRow row) override {
    std::vector<std::string>& shown = rows.emplace_back();
    for (const rapidjson::Value& value : row) shown.push_back(ShownMember(value));
  }

  ShownRows rows;
};

}  // namespace TestSupport
