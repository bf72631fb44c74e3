#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <iomanip>
#include <locale>
#include <sstream>
#include <string>

#include "base/date_text.h"
#include "base/date_time_text.h"
#include "base/local_calendar.h"
#include "base/time_reader.h"

// What TimeReader and ParseDateTime must return for each text: what std::get_time of libstdc++
// reads, normalised as they promise. Other libraries read some texts differently; there, TimeReader
// is compared with ParseDateTime.
namespace TestSupport {

namespace Wattleaf = Zq::Gantry::Server::Services::Wattleaf;

#ifdef __GLIBCXX__
template <typename Char>
[[nodiscard]] Wattleaf::DateTime LiteralFields(const Char* text, const Char* format) {
  const std::locale locale;
  while (*text != Char() && std::isspace(*text, locale)) ++text;
  std::tm fields{};
  std::basic_istringstream<Char> stream{std::basic_string<Char>(text)};
  stream >> std::get_time(&fields, format);
  Wattleaf::DateTime result = Wattleaf::FromTm(fields);
  const std::int32_t hour = result.tm_hour;
  Wattleaf::MakeInstant(result);
  result.tm_hour = hour;
  return result;
}
#else
[[nodiscard]] inline Wattleaf::DateTime LiteralFields(const char* text, const char* format) {
  Wattleaf::DateTime result;
  return Wattleaf::ParseDateTime(result, text, format);
}
[[nodiscard]] inline Wattleaf::DateTime LiteralFields(const wchar_t* text, const wchar_t*) {
  Wattleaf::DateTime result;
  return Wattleaf::ParseWideDateTime(result, text);
}
#endif

[[nodiscard]] inline Wattleaf::LocalTime LiteralTime(const char* text, const char* format) {
  const Wattleaf::DateTime fields = LiteralFields(text, format);
  return {fields, Wattleaf::InstantOf(fields)};
}

[[nodiscard]] inline Wattleaf::LocalTime LiteralTime(const wchar_t* text) {
  const Wattleaf::DateTime fields = LiteralFields(text, L"%Y-%m-%d:%T");
  return {fields, Wattleaf::InstantOf(fields)};
}

/// Whether all nine fields and the instants agree.
[[nodiscard]] inline bool IsSame(const Wattleaf::LocalTime& left,
                                 const Wattleaf::LocalTime& right) {
  using Fields = std::array<std::int32_t, 9>;
  return std::bit_cast<Fields>(left.fields) == std::bit_cast<Fields>(right.fields) &&
         left.instant == right.instant;
}

/// Whether `time` is what is read from a text if the C library was asked for another time before.
/// On a day that is skipped or repeated without a change of the daylight flag, some C libraries
/// start from the offset that they found last, and the result depends on it.
template <typename... Arguments>
[[nodiscard]] bool IsLiteralAfterAnotherCall(const Wattleaf::LocalTime& time,
                                             Arguments... textAndFormat) {
  for (const std::int64_t days : {-200, -10, 10, 200}) {
    static_cast<void>(
        Wattleaf::InstantOf(Wattleaf::LocalTimeOf(time.instant + days * Wattleaf::kSecondsPerDay)));
    if (IsSame(time, LiteralTime(textAndFormat...))) return true;
  }
  return false;
}

/// "2025-03-29 00:00:00 dst 0, day 6, 87 of the year, instant 1743202800".
[[nodiscard]] inline std::string Text(const Wattleaf::LocalTime& time) {
  return Text(time.fields) + ", day " + std::to_string(time.fields.tm_wday) + ", " +
         std::to_string(time.fields.tm_yday) + " of the year, instant " +
         std::to_string(time.instant);
}

/// A date and time of day in kSampleTimeFormat, as they would be written.
[[nodiscard]] inline std::string SampleTimeText(const Wattleaf::DateTime& time) {
  std::array<char, 96> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d", time.tm_year + 1900,
                time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec);
  return text.data();
}

}  // namespace TestSupport
