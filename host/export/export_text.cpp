#include "export/export_text.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <string_view>

#include "export/export_rows.h"
#include "text/csv_text.h"
#include "text/format_version.h"

namespace WattleafHost {

namespace {

using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer>;

/// Writes null for an empty text.
void WriteMember(JsonWriter& writer, const char* name, std::string_view text) {
  writer.Key(name);
  if (text.empty()) {
    writer.Null();
  } else {
    writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
  }
}

std::string NdjsonLine(const Snapshot& snapshot, const ExportRow& row) {
  rapidjson::StringBuffer buffer;
  JsonWriter writer(buffer);
  writer.StartObject();
  writer.Key("formatVersion");
  writer.Uint(kFormatVersion);
  WriteMember(writer, "host", snapshot.hostVersion);
  WriteMember(writer, "machine", snapshot.machine);
  WriteMember(writer, "time", snapshot.takenAt);
  WriteMember(writer, "zone", snapshot.zone);
  WriteMember(writer, "kind", row.kind);
  WriteMember(writer, "begin", row.begin);
  WriteMember(writer, "label", row.label);
  WriteMember(writer, "name", row.name);
  writer.Key("days");
  if (row.days) {
    writer.Uint(*row.days);
  } else {
    writer.Null();
  }
  writer.Key("value");
  if (row.value) {
    writer.Double(*row.value);
  } else {
    writer.Null();
  }
  WriteMember(writer, "unit", row.unit);
  WriteMember(writer, "missing", row.missing);
  writer.EndObject();
  return std::string(buffer.GetString(), buffer.GetSize()) + "\n";
}

std::string CsvLine(const Snapshot& snapshot, const ExportRow& row) {
  return CsvRecord({std::to_string(kFormatVersion), CsvField(snapshot.hostVersion),
                    CsvField(snapshot.machine), CsvField(snapshot.takenAt), CsvField(snapshot.zone),
                    CsvField(std::string(row.kind)), CsvField(row.begin), CsvField(row.label),
                    CsvField(row.name), row.days ? std::to_string(*row.days) : "",
                    row.value ? CsvField(*row.value) : "", CsvField(std::string(row.unit)),
                    CsvField(row.missing)});
}

}  // namespace

std::string ExportNdjson(const Snapshot& snapshot) {
  std::string text;
  for (const ExportRow& row : ExportRows(snapshot)) text += NdjsonLine(snapshot, row);
  return text;
}

std::string ExportCsv(const Snapshot& snapshot) {
  std::string text = CsvRecord({"formatVersion", "host", "machine", "time", "zone", "kind", "begin",
                                "label", "name", "days", "value", "unit", "missing"});
  for (const ExportRow& row : ExportRows(snapshot)) text += CsvLine(snapshot, row);
  return text;
}

}  // namespace WattleafHost
