#include "base/json_document.h"

#include <rapidjson/filewritestream.h>
#include <rapidjson/writer.h>

#include <memory>
#include <optional>
#include <vector>

#include "base/json_parse.h"
#include "base/json_text.h"
#include "base/wide_file.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr std::size_t kStreamBufferBytes = 65536;

}  // namespace

GenericDocument* LoadJsonDocument(const std::wstring& path, const JsonLimits& limits) {
  std::optional<JsonText> text = JsonText::TryRead(path, limits.fileBytes);
  if (!text) return nullptr;
  auto document = std::make_unique<GenericDocument>();
  bool isParsed = false;
  auto parse = [&](GenericDocument& target) {
    rapidjson::StringStream stream(text->Begin());
    isParsed = ParseJson<rapidjson::kParseDefaultFlags>(stream, target, limits.openValues);
    return isParsed;
  };
  document->Populate(parse);
  return isParsed ? document.release() : nullptr;
}

// Kept on purpose: in place, without a temporary file, and a write that fails half-way is not
// reported (test SaveJsonDocument.ReplacesAnExistingFile).
bool WriteJsonFile(const std::wstring& path, const std::function<void(JsonWriter&)>& write) {
  const UniqueFile file = OpenForWriting(path);
  if (!file) return false;

  std::vector<char> buffer(kStreamBufferBytes);
  rapidjson::FileWriteStream stream(file.get(), buffer.data(), buffer.size());
  JsonWriter writer(stream);
  write(writer);
  stream.Flush();
  return true;
}

bool SaveJsonDocument(const std::wstring& path, const GenericDocument& document) {
  return WriteJsonFile(path, [&](JsonWriter& writer) { document.Accept(writer); });
}

const rapidjson::Value* TryMember(const rapidjson::Value& value, const char* name) {
  if (!value.IsObject()) return nullptr;
  const auto member = value.FindMember(name);
  return member != value.MemberEnd() ? &member->value : nullptr;
}

const rapidjson::Value* TryStringMember(const rapidjson::Value& value, const char* name) {
  const rapidjson::Value* member = TryMember(value, name);
  return member != nullptr && member->IsString() ? member : nullptr;
}

const rapidjson::Value* TryNumberMember(const rapidjson::Value& value, const char* name) {
  const rapidjson::Value* member = TryMember(value, name);
  return member != nullptr && member->IsNumber() ? member : nullptr;
}

std::string TextOf(const rapidjson::Value& text) {
  return {text.GetString(), text.GetStringLength()};
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
