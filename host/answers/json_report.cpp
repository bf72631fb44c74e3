#include "answers/json_report.h"

#include <rapidjson/encodedstream.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <optional>

#include "text/format_version.h"

namespace WattleafHost {

namespace {

using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer>;

void WriteText(JsonWriter& writer, std::string_view text) {
  writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

void WriteMember(JsonWriter& writer, const char* name, std::string_view text) {
  writer.Key(name);
  WriteText(writer, text);
}

void WriteSimulatedCalls(JsonWriter& writer, const std::vector<SimulatedRow>& rows) {
  writer.Key("simulatedCalls");
  writer.StartArray();
  for (const SimulatedRow& row : rows) {
    writer.StartObject();
    WriteMember(writer, "name", row.name);
    WriteMember(writer, "reason", row.reason);
    writer.EndObject();
  }
  writer.EndArray();
}

/// A JSON text without white space; nothing for another text. Read without recursion, since its
/// nesting may be deep.
std::optional<std::string> TryCompact(const std::string& text) {
  constexpr unsigned kFlags = rapidjson::kParseIterativeFlag | rapidjson::kParseFullPrecisionFlag |
                              rapidjson::kParseValidateEncodingFlag;
  rapidjson::MemoryStream bytes(text.data(), text.size());
  rapidjson::EncodedInputStream<rapidjson::UTF8<>, rapidjson::MemoryStream> stream(bytes);
  rapidjson::StringBuffer buffer;
  JsonWriter writer(buffer);
  rapidjson::Reader reader;
  if (reader.Parse<kFlags>(stream, writer).IsError()) return std::nullopt;
  return std::string(buffer.GetString(), buffer.GetSize());
}

/// Null for an answer without a result, and for a text that is not JSON.
void WriteValue(JsonWriter& writer, const Answer& answer) {
  writer.Key("value");
  const auto value = HasResult(answer) ? TryCompact(answer.text) : std::nullopt;
  if (value) {
    writer.RawValue(value->data(), value->size(), rapidjson::kObjectType);
  } else {
    writer.Null();
  }
}

void WriteEverythingElse(JsonWriter& writer, const Answer& answer) {
  if (answer.number != NumberOf(Command::kTopApplications)) return;
  writer.Key("everythingElsePercent");
  const auto* ranking = std::get_if<Ranking>(&answer.value);
  const auto rest = ranking == nullptr ? std::nullopt : EverythingElse(*ranking);
  if (rest) {
    writer.Double(*rest);
  } else {
    writer.Null();
  }
}

void WriteAnswer(JsonWriter& writer, const Answer& answer) {
  writer.StartObject();
  writer.Key("number");
  writer.Uint(answer.number);
  WriteMember(writer, "title", TitleOf(answer.number));
  writer.Key("status");
  writer.Int(answer.status);
  writer.Key("text");
  if (HasResult(answer)) {
    WriteText(writer, answer.text);
  } else {
    writer.Null();
  }
  WriteValue(writer, answer);
  WriteEverythingElse(writer, answer);
  writer.EndObject();
}

}  // namespace

std::string ToJson(const Report& report) {
  rapidjson::StringBuffer buffer;
  JsonWriter writer(buffer);
  writer.StartObject();
  writer.Key("formatVersion");
  writer.Uint(kFormatVersion);
  WriteMember(writer, "host", report.version);
  WriteMember(writer, "time", report.time);
  WriteMember(writer, "zone", report.zone);
  WriteMember(writer, "library", report.library);
  if (!report.pass.empty()) WriteMember(writer, "pass", report.pass);
  WriteSimulatedCalls(writer, report.simulatedCalls);
  writer.Key("commands");
  writer.StartArray();
  for (const Answer& answer : report.answers) WriteAnswer(writer, answer);
  writer.EndArray();
  WriteMember(writer, "dataFolder", report.dataFolder);
  WriteMember(writer, "iconFolder", report.iconFolder);
  writer.Key("days");
  writer.Uint(report.days);
  writer.Key("log");
  if (report.log.empty()) {
    writer.Null();
  } else {
    WriteText(writer, report.log);
  }
  writer.EndObject();
  return {buffer.GetString(), buffer.GetSize()};
}

}  // namespace WattleafHost
