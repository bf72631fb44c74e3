#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <string_view>

#include "doctor/diagnosis.h"
#include "text/printable.h"

namespace WattleafHost {

namespace {

using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer>;

constexpr std::size_t kLongestLineChars = 600;

const char* SeverityText(Severity severity) {
  switch (severity) {
    case Severity::kFine:
      return "ok";
    case Severity::kNote:
      return "note";
    case Severity::kProblem:
      return "problem";
    case Severity::kNoEnergy:
      return "STOPS";
  }
  return "";
}

void WriteText(JsonWriter& writer, const char* name, std::string_view text) {
  writer.Key(name);
  writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

std::string FindingLines(const Finding& finding) {
  std::string lines = PadRight(SeverityText(finding.severity), 8) + PadRight(finding.step, 12) +
                      OneLine(finding.found, kLongestLineChars);
  if (finding.severity == Severity::kFine) {
    return lines + "; " + OneLine(finding.means, kLongestLineChars) + "\n";
  }
  lines += '\n';
  lines += std::string(20, ' ') + "cause: " + finding.cause + "\n";
  lines += std::string(20, ' ') + "means: " + OneLine(finding.means, kLongestLineChars) + "\n";
  lines += std::string(20, ' ') + "do:    " + OneLine(finding.remedy, kLongestLineChars) + "\n";
  return lines;
}

std::string NormalLines() {
  std::string lines = "\nLines that the log of a healthy machine has too\n";
  for (const NormalLogLine& normal : NormalLogLines()) {
    lines += "  " + std::string(normal.line) + "\n      " + normal.reason + "\n";
  }
  return lines;
}

}  // namespace

// Texts of the log, as the library writes them.
const std::vector<NormalLogLine>& NormalLogLines() {
  static const std::vector<NormalLogLine> kLines{
      {"BeginsWith() failed [...] [...]",
       "the collector's place is compared with each protected place in turn; one match is enough"},
      {"Decrypting file :...", "one for each sample file that is read"},
      {"Date:...", "the begin of a pass"},
      {"DataCollector StartCollecting() success", "the collector has started"},
      {"Loaded DataCollector library", "normal if a line about StartCollecting() follows"},
  };
  return kLines;
}

std::string ToText(const MachineFacts& facts, const std::vector<Finding>& findings) {
  std::string text = "wattleaf_host " + facts.version + " doctor, " + facts.now + "\n\n";
  for (const Finding& finding : findings) text += FindingLines(finding);
  text += NormalLines();
  return text + (CanMeasure(findings) ? "\nThis machine can measure.\n"
                                      : "\nThis machine cannot measure; see STOPS above.\n");
}

std::string ToJson(const MachineFacts& facts, const std::vector<Finding>& findings) {
  rapidjson::StringBuffer buffer;
  JsonWriter writer(buffer);
  writer.StartObject();
  writer.Key("format");
  writer.Int(1);
  WriteText(writer, "host", facts.version);
  WriteText(writer, "time", facts.now);
  writer.Key("canMeasure");
  writer.Bool(CanMeasure(findings));
  writer.Key("findings");
  writer.StartArray();
  for (const Finding& finding : findings) {
    writer.StartObject();
    WriteText(writer, "severity",
              finding.severity == Severity::kNoEnergy ? "stops" : SeverityText(finding.severity));
    WriteText(writer, "step", finding.step);
    WriteText(writer, "cause", finding.cause);
    WriteText(writer, "found", finding.found);
    WriteText(writer, "means", finding.means);
    WriteText(writer, "do", finding.remedy);
    writer.EndObject();
  }
  writer.EndArray();
  writer.Key("normalLogLines");
  writer.StartArray();
  for (const NormalLogLine& normal : NormalLogLines()) {
    writer.StartObject();
    WriteText(writer, "line", normal.line);
    WriteText(writer, "reason", normal.reason);
    writer.EndObject();
  }
  writer.EndArray();
  writer.EndObject();
  return buffer.GetString();
}

}  // namespace WattleafHost
