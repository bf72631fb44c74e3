#include "json_report.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

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
  writer.EndObject();
}

}  // namespace

std::string ToJson(const Report& report) {
  rapidjson::StringBuffer buffer;
  JsonWriter writer(buffer);
  writer.StartObject();
  WriteMember(writer, "host", report.version);
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
