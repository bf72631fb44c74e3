#include "reports/generated_reports.h"

#include <array>
#include <utility>

namespace TestSupport {

namespace {

constexpr std::array kNames{"a",
                            "b",
                            "",
                            "Alder.App",
                            "Alder",
                            "Birch_1",
                            "\\\\Device\\\\C\\\\a.exe",
                            "\\\\Device\\\\C\\\\b.exe",
                            "\\\\Device\\\\D\\\\Device\\\\C",
                            "Unknown",
                            "System Interrupts",
                            "a\\u0000b",
                            "a\\u0000",
                            "caf\xC3\xA9",
                            "caf\xE9\x80",
                            "quote\\\"\\n\\u001f"};
constexpr std::array kReportNames{"a",
                                  "b",
                                  "",
                                  "Alder.App",
                                  "Alder",
                                  "Birch_1",
                                  "\\Device\\C\\a.exe",
                                  "\\Device\\C\\b.exe",
                                  "\\Device\\D\\Device\\C",
                                  "Unknown",
                                  "System Interrupts",
                                  "a&#0;b",
                                  "caf\xC3\xA9",
                                  "&#xD83C;x",
                                  "&#x1F343;&amp;",
                                  "quote&quot;&#10;&#31;"};
constexpr std::array kDisplayNames{"Meadow",  "Meadow 2", "",    "Mea\\u0000dow",
                                   "caf\xE9", "..\\\\up", "Last"};
/// The hours around both clock changes of the zones, and the ends of the period.
constexpr std::array kHours{"2026-10-25:01", "2026-10-25:02", "2026-10-25:03", "2026-11-01:00",
                            "2026-11-01:01", "2026-11-01:02", "2026-10-04:01", "2026-10-04:02",
                            "2026-11-14:10", "2026-11-14:23", "2026-10-15:10", "2027-03-28:02",
                            "2027-03-14:02"};
constexpr std::array kMinutes{":00:00", ":29:59", ":30:15", ":30:14", ":59:59", ":5:7", "", ":30"};
constexpr std::array kOddTimes{"",
                               "yesterday",
                               "2026-11-14T02:00:00",
                               "2026-11-14",
                               "1900-01-01:00:00:00",
                               "9999-12-31:23:59:59",
                               " 2026-11-14:02:00:00 and more",
                               "2026-13-45:99:99:99",
                               "2026-11-31:02:00:00"};
constexpr std::array kEnergies{"0",
                               "1",
                               "7",
                               "-7",
                               "2147483647",
                               "2147483648",
                               "-2147483649",
                               "4294967295",
                               "4294967297",
                               "1152921573326323713",
                               "9223372036854775807",
                               "-9223372036854775808",
                               "9223372036854775808",
                               "18446744073709551615",
                               "18446744073709551616",
                               "1e300",
                               "-1e300",
                               "2.9",
                               "-2.9",
                               "-0.0",
                               "1.5e3",
                               "54979474",
                               "34416215"};
constexpr std::array kOddValues{
    "null", "true", "\"7\"", "[1,{\"Name\":\"a\"}]", "{}", "{\"TotalEnergy\":5}", "12"};
constexpr std::array kOddElements{"null",
                                  "7",
                                  "\"TotalEnergy\"",
                                  "[]",
                                  "true",
                                  "-0.5",
                                  "[[{\"Name\":\"a\",\"DisplayName\":\"b\"}]]"};
constexpr std::array kOddKeys{"Name\\u0000", "name", "Display", "", "TotalEnergy\\u0000x"};

}  // namespace

std::uint32_t GeneratedReports::Below(std::uint32_t end) {
  state_ = state_ * 1664525 + 1013904223;
  return (state_ >> 8) % end;
}

template <typename Texts>
std::string GeneratedReports::OneOf(const Texts& texts) {
  return texts[Below(static_cast<std::uint32_t>(texts.size()))];
}

std::string GeneratedReports::Time() {
  if (OneIn(8)) return OneOf(kOddTimes);
  const std::string hour = OneOf(kHours);
  return hour + OneOf(kMinutes);
}

std::string GeneratedReports::Energy() {
  return OneIn(2) ? OneOf(kEnergies) : std::to_string(Below(1000));
}

std::string GeneratedReports::ReportRow() {
  std::string row = "<Row";
  if (!OneIn(12)) row += " AppId=\"" + OneOf(kReportNames) + "\"";
  if (OneIn(6)) row += " Other='x'";
  if (!OneIn(12)) row += " TimeStamp=\"" + Time() + "\"";
  if (OneIn(10)) row += " AppId='second' TimeStamp='2026-11-14:02:00:00'";
  row += ">";
  if (OneIn(8)) row += "text<Other Value='9'/>";
  for (std::uint32_t count = OneIn(4) ? Below(3) : 1; count > 0; --count) {
    const std::string value = Energy();
    row += "<TotalEnergyConsumption" + (OneIn(10) ? "" : " Value='" + value + "'") + "/>";
  }
  return row + "</Row>";
}

std::string GeneratedReports::Report() {
  std::string text = "<Report>";
  for (std::uint32_t rows = Below(30); rows > 0; --rows) {
    text += ReportRow();
    if (OneIn(10)) text += "<!-- c -->x";
  }
  return text + (OneIn(20) ? "" : "</Report>");
}

std::string GeneratedReports::Member(std::uint32_t member) {
  static constexpr std::array kKeys{"Name", "DisplayName", "TimeStamp", "TotalEnergy"};
  const std::array values{"\"" + OneOf(kNames) + "\"", "\"" + OneOf(kDisplayNames) + "\"",
                          "\"" + Time() + "\"", Energy()};
  const std::string key = OneIn(30) ? OneOf(kOddKeys) : kKeys[member];
  return "\"" + key + "\":" + (OneIn(25) ? OneOf(kOddValues) : values[member]);
}

std::string GeneratedReports::StoreRow() {
  if (OneIn(15)) return OneOf(kOddElements);
  std::array<std::uint32_t, 4> order{0, 1, 2, 3};
  for (std::uint32_t i = 3; i > 0; --i) std::swap(order[i], order[Below(i + 1)]);
  std::string row;
  for (const std::uint32_t member : order) {
    for (std::uint32_t count = OneIn(12) ? Below(3) : 1; count > 0; --count) {
      row += (row.empty() ? "" : ",") + Member(member);
    }
  }
  return "{" + row + "}";
}

std::string GeneratedReports::Store() {
  std::string text;
  for (std::uint32_t rows = Below(40); rows > 0; --rows) {
    text += (text.empty() ? "" : ",") + StoreRow();
  }
  if (OneIn(25)) return "{\"rows\":[" + text + "]}";
  return "[" + text + (OneIn(25) ? ",}" : "]");
}

}  // namespace TestSupport
