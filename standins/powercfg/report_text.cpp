// Stand-in: the reports as text.

#include "report_text.h"

#include <cstdint>

namespace Standin {

namespace {

std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

std::string Attribute(const char* name, const std::optional<std::string>& value) {
  return value ? std::string(" ") + name + "=\"" + Escaped(*value) + '"' : std::string();
}

std::string FirstLine(ReportEncoding encoding) {
  const char* name = encoding == ReportEncoding::kUtf16 ? "UTF-16" : "UTF-8";
  return std::string("<?xml version=\"1.0\" encoding=\"") + name + "\"?>\r\n";
}

/// Has further elements and attributes, as a real report does.
std::string RowText(const ReportRow& row) {
  std::string text = "  <Application" + Attribute("AppId", row.appId) +
                     Attribute("TimeStamp", row.timeStamp) + " Interactive=\"1\">\r\n" +
                     "    <ScreenEnergyConsumption Value=\"7\"/>\r\n";
  if (row.total)
    text += "    <TotalEnergyConsumption" + Attribute("Value", row.total->value) + "/>\r\n";
  return text + "  </Application>\r\n";
}

void AppendUtf16(std::string& bytes, std::uint32_t unit) {
  bytes += static_cast<char>(unit & 0xFF);
  bytes += static_cast<char>(unit >> 8);
}

void AppendCharacter(std::string& bytes, std::uint32_t character) {
  if (character < 0x10000) return AppendUtf16(bytes, character);
  AppendUtf16(bytes, 0xD7C0 + (character >> 10));
  AppendUtf16(bytes, 0xDC00 + (character & 0x3FF));
}

/// The number of bytes after the first one of a character, and the first one's bits of its code.
struct LeadByte {
  int following;
  std::uint32_t bits;
};

LeadByte ReadLead(unsigned char byte) {
  if (byte < 0x80) return {0, byte};
  if (byte < 0xE0) return {1, byte & 0x1FU};
  if (byte < 0xF0) return {2, byte & 0x0FU};
  return {3, byte & 0x07U};
}

}  // namespace

std::string EnergyReportText(const std::vector<ReportRow>& rows, ReportEncoding encoding) {
  std::string text =
      FirstLine(encoding) + "<!-- Made by a stand-in. -->\r\n<ApplicationEnergy>\r\n";
  for (const ReportRow& row : rows) text += RowText(row);
  return text + "</ApplicationEnergy>\r\n";
}

std::string ProblemsReportText(ReportEncoding encoding) {
  return FirstLine(encoding) +
         "<!-- Made by a stand-in. -->\r\n<EnergyProblems>\r\n"
         "  <Problem Severity=\"Error\">The screen never turns off.</Problem>\r\n"
         "  <Problem Severity=\"Warning\">A program asks for a fast timer.</Problem>\r\n"
         "</EnergyProblems>\r\n";
}

std::string BrokenOff(const std::string& text) {
  const std::size_t tag = text.rfind('<', text.size() * 2 / 3);
  return text.substr(0, tag + 4);
}

std::string FileBytes(const std::string& text, ReportEncoding encoding) {
  if (encoding == ReportEncoding::kUtf8) return text;
  std::string bytes = "\xFF\xFE";
  for (std::size_t at = 0; at < text.size();) {
    const LeadByte lead = ReadLead(static_cast<unsigned char>(text[at++]));
    std::uint32_t character = lead.bits;
    for (int i = 0; i < lead.following && at < text.size(); ++i) {
      character = character << 6 | (static_cast<unsigned char>(text[at++]) & 0x3FU);
    }
    AppendCharacter(bytes, character);
  }
  return bytes;
}

}  // namespace Standin
