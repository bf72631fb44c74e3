#include "ledger/sample_lists.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

namespace TestSupport {

namespace {

constexpr int kSecondsOfDay = 86400;

constexpr const char* kTypes[] = {R"("PCM_SENSOR")", R"("PCM_CHARGER")", R"("PCM_SENSOR")"};
constexpr const char* kOddTypes[] = {R"("PCM_SCREEN")",
                                     R"("pcm_sensor")",
                                     R"("PCM_SENSOR ")",
                                     R"("PCM_SENSOR\u0000")",
                                     R"("PCM_\u0053ENSOR")",
                                     R"("PCM_CHARGE")",
                                     R"("")",
                                     "null",
                                     "1",
                                     "true",
                                     R"(["PCM_SENSOR"])",
                                     R"({"TelemetryType":"PCM_SENSOR"})"};
constexpr const char* kOddTimes[] = {R"("yesterday")",
                                     R"("")",
                                     R"(" 2025-03-30T10:00:00")",
                                     R"("2025-3-3T1:2:3")",
                                     R"("2025-03-30T10:00")",
                                     R"("2025-03-30 10:00:00")",
                                     R"("2025-03-30T10:00:00\u0000")",
                                     R"("2025-03-30T1\u00000:00:00")",
                                     R"("2025-02-31T10:00:00")",
                                     R"("2025-03-30T24:00:00")",
                                     R"("2025-03-30T10:60:00")",
                                     R"("2025-03-30T10:00:60")",
                                     R"("2025-03-30T10:00:00 and more")",
                                     R"("1969-12-31T23:59:59")",
                                     R"("1970-01-01T00:00:00")",
                                     R"("1970-01-02T00:00:00")",
                                     R"("2106-02-08T06:29:56")",
                                     R"("3001-01-01T00:00:00")",
                                     R"("9999-12-31T23:59:59")",
                                     R"("\t2025-03-30T10:00:00")",
                                     R"("+025-03-30T10:00:00")",
                                     R"("2025-03-30T-1:00:00")",
                                     "null",
                                     "20250330",
                                     "false",
                                     R"(["2025-03-30T10:00:00"])",
                                     R"({"SampleTime":"2025-03-30T10:00:00"})"};
constexpr const char* kOddPowers[] = {"0",
                                      "-0.0",
                                      "-36",
                                      "1e39",
                                      "-1e300",
                                      "3.4e38",
                                      "1e-46",
                                      "1e-45",
                                      "null",
                                      "\"36\"",
                                      "true",
                                      "[36]",
                                      R"({"Power":36})",
                                      "18446744073709551615",
                                      "-9223372036854775808",
                                      "4294967296",
                                      "1.7976931348623157e308",
                                      "0.1"};
constexpr const char* kOddElements[] = {"null",
                                        "1",
                                        "\"PCM_SENSOR\"",
                                        "[]",
                                        "{}",
                                        R"(["TelemetryType","PCM_SENSOR"])",
                                        R"([{"TelemetryType":"PCM_SENSOR","Power":36}])",
                                        R"({"Power":36})"};
constexpr const char* kOtherMembers[] = {
    R"("Unit":"W")",
    R"("Note":"a \"quoted\" text")",
    R"("Nested":{"TelemetryType":"PCM_SCREEN","SampleTime":"1999-01-01T00:00:00","Power":1})",
    R"("List":["Power",36,{"Power":7},[]])",
    R"("power":99)",
    R"("Power\u0000":98)",
    R"("":null)"};
constexpr const char* kRoots[] = {"", "{}", "null", "17", R"({"a":[{"Power":36}]})", "[]"};

}  // namespace

std::string SampleListGenerator::ListOf(const std::string& date) {
  if (Rarely(40)) return OneOf(kRoots);
  date_ = date;
  second_ = Rarely(2) ? Below(600) : Below(kSecondsOfDay);
  std::string text = "[";
  const int count = Rarely(4) ? Below(4) : Below(40);
  for (int i = 0; i < count; ++i) {
    if (i > 0) text += ',';
    text += Rarely(12) ? OneOf(kOddElements) : Element();
    AdvanceTime();
  }
  text += ']';
  if (Rarely(25)) text.resize(static_cast<std::size_t>(Below(static_cast<int>(text.size()))));
  if (Rarely(25)) text += Rarely(2) ? std::string("\0rest", 5) : std::string(" x");
  return text;
}

/// Mostly within the longest interval, sometimes back, far ahead or to the end of the day.
void SampleListGenerator::AdvanceTime() {
  if (Rarely(30)) {
    second_ -= Below(4000);
  } else if (Rarely(15)) {
    second_ += 595 + Below(12);
  } else if (Rarely(15)) {
    second_ += Below(20000);
  } else if (Rarely(20)) {
    second_ = kSecondsOfDay - 1 - Below(600);
  } else {
    second_ += Below(301);
  }
  second_ = std::clamp(second_, 0, kSecondsOfDay - 1);
}

std::string SampleListGenerator::TypeMember() {
  return R"("TelemetryType":)" + (Rarely(8) ? OneOf(kOddTypes) : OneOf(kTypes));
}

std::string SampleListGenerator::TimeMember() {
  if (Rarely(15)) return R"("SampleTime":)" + OneOf(kOddTimes);
  char time[16];
  std::snprintf(time, sizeof(time), "%02d:%02d:%02d", second_ / 3600, second_ / 60 % 60,
                second_ % 60);
  return R"("SampleTime":")" + date_ + "T" + time + "\"";
}

std::string SampleListGenerator::PowerMember() {
  if (Rarely(12)) return R"("Power":)" + OneOf(kOddPowers);
  const std::string whole = std::to_string(Below(200));
  return R"("Power":)" + (Rarely(3) ? whole : whole + "." + std::to_string(Below(1000)));
}

/// The three members in any order; each may be missing or repeated, with others between them.
std::string SampleListGenerator::Element() {
  std::vector<std::string> members;
  if (!Rarely(25)) members.push_back(TypeMember());
  if (!Rarely(25)) members.push_back(TimeMember());
  if (!Rarely(25)) members.push_back(PowerMember());
  if (Rarely(20)) members.push_back(TypeMember());
  if (Rarely(20)) members.push_back(TimeMember());
  if (Rarely(20)) members.push_back(PowerMember());
  if (Rarely(6)) members.push_back(OneOf(kOtherMembers));
  if (Rarely(4)) std::ranges::shuffle(members, random_);
  std::string text = "{";
  for (const std::string& member : members) text += (text.size() > 1 ? "," : "") + member;
  return text + "}";
}

}  // namespace TestSupport
