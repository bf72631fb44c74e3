#include "base/date_text.h"

#include <array>
#include <ctime>
#include <cwchar>
#include <iomanip>
#include <locale>
#include <sstream>

#include "base/local_calendar.h"
#include "base/time_fields.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr std::size_t kTextBufferChars = 512;
constexpr std::size_t kMostCharsRead = 512;

bool IsBetween(std::int32_t value, std::int32_t least, std::int32_t most) {
  return value >= least && value <= most;
}

// A field outside its range makes one C library return an empty text and another end the process.
bool IsInCalendar(const DateTime& time) {
  return IsBetween(time.tm_sec, 0, 60) && IsBetween(time.tm_min, 0, 59) &&
         IsBetween(time.tm_hour, 0, 23) && IsBetween(time.tm_mday, 1, 31) &&
         IsBetween(time.tm_mon, 0, 11) && IsBetween(time.tm_year, -1900, 8099) &&
         IsBetween(time.tm_wday, 0, 6) && IsBetween(time.tm_yday, 0, 365);
}

/// `format` with "%T" written out: older C libraries print nothing for it.
std::string SpellOutTime(const char* format) {
  std::string result;
  for (; *format != '\0'; ++format) {
    if (format[0] != '%' || format[1] == '\0') {
      result += *format;
      continue;
    }
    ++format;
    result += *format == 'T' ? "%H:%M:%S" : std::string{'%', *format};
  }
  return result;
}

/// Whether every C library prints the same: they disagree about years of fewer than four digits,
/// and some print nothing for second 60.
bool HasOneText(const DateTime& time) {
  return IsInCalendar(time) && time.tm_year >= 1000 - 1900 && time.tm_sec <= 59;
}

/// Appends `value` as `count` digits. Returns the end of the text.
char* AppendDigits(char* end, std::int32_t value, int count) {
  for (int i = count - 1; i >= 0; --i) {
    end[i] = static_cast<char>('0' + value % 10);
    value /= 10;
  }
  return end + count;
}

char* AppendDate(char* end, const DateTime& time) {
  end = AppendDigits(end, time.tm_year + 1900, 4);
  *end++ = '-';
  end = AppendDigits(end, time.tm_mon + 1, 2);
  *end++ = '-';
  return AppendDigits(end, time.tm_mday, 2);
}

char* AppendTimeOfDay(char* end, const DateTime& time) {
  end = AppendDigits(end, time.tm_hour, 2);
  *end++ = ':';
  end = AppendDigits(end, time.tm_min, 2);
  *end++ = ':';
  return AppendDigits(end, time.tm_sec, 2);
}

std::string_view Written(const DateBuffer& buffer, const char* end) {
  return {buffer.data(), static_cast<std::size_t>(end - buffer.data())};
}

std::string_view CopyInto(DateBuffer& buffer, const std::string& text) {
  return {buffer.data(), text.copy(buffer.data(), buffer.size())};
}

/// The part of `text` that is read; the whole may be as long as a file. The stream skips leading
/// blanks, and no format of this library reads more than `kMostCharsRead` characters after them.
std::wstring TextToRead(const wchar_t* text) {
  const std::locale locale;
  while (*text != L'\0' && std::isspace(*text, locale)) ++text;
  std::size_t length = 0;
  while (length < kMostCharsRead && text[length] != L'\0') ++length;
  return {text, length};
}

/// What ReadTimeFields leaves to the C++ library.
DateTime FieldsOfForeignText(const wchar_t* text) {
  std::tm fields{};
  std::wistringstream stream{TextToRead(text)};
  stream >> std::get_time(&fields, L"%Y-%m-%d:%T");
  return FromTm(fields);
}

void Normalise(DateTime& result) {
  // Kept on purpose: the hour stays as it was read, so that a time in the last hour of a summer day
  // comes out one day later (test ParseDateTime.ReadsTheLastHourOfASummerDayOneDayLater).
  const std::int32_t hour = result.tm_hour;
  MakeInstant(result);
  result.tm_hour = hour;
}

}  // namespace

std::wstring FormatDateWide(const DateTime& time) {
  if (!IsInCalendar(time)) return {};
  const std::tm fields = ToTm(time);
  std::array<wchar_t, kTextBufferChars> buffer{};
  return {buffer.data(), std::wcsftime(buffer.data(), buffer.size(), L"%Y-%m-%d", &fields)};
}

std::string FormatDateTime(const DateTime& time, const char* format) {
  if (format == nullptr || !IsInCalendar(time)) return {};
  const std::tm fields = ToTm(time);
  std::array<char, kTextBufferChars> buffer{};
  const std::string spelled = SpellOutTime(format);
  return {buffer.data(), std::strftime(buffer.data(), buffer.size(), spelled.c_str(), &fields)};
}

std::string_view WriteTimeStamp(const DateTime& time, DateBuffer& buffer) {
  if (!HasOneText(time)) {
    return CopyInto(buffer, FormatDateTime(time, kTimeStampFormat));
  }
  char* end = AppendDate(buffer.data(), time);
  *end++ = ':';
  return Written(buffer, AppendTimeOfDay(end, time));
}

std::string_view WriteDate(const DateTime& time, DateBuffer& buffer) {
  if (!HasOneText(time)) {
    return CopyInto(buffer, FormatDateTime(time, kDateFormat));
  }
  return Written(buffer, AppendDate(buffer.data(), time));
}

std::string FormatLogTime(const DateTime& time) { return FormatDateTime(time, "%T %d-%m-%Y"); }

DateTime& ParseDateTime(DateTime& result, const char* text, const char* format) {
  result = {};
  if (text == nullptr || format == nullptr) return result;
  if (ReadTimeFields(text, SeparatorOf(format), result) != TimeFields::kNone) {
    FillDayOfWeekAndYear(result);
  }
  Normalise(result);
  return result;
}

DateTime& ParseWideDateTime(DateTime& result, const wchar_t* text) {
  result = {};
  if (text == nullptr) return result;
  const TimeFields found = ReadTimeFields(text, SeparatorOf(kTimeStampFormat), result);
  if (found == TimeFields::kSome) FillDayOfWeekAndYear(result);
  if (found == TimeFields::kForeign) result = FieldsOfForeignText(text);
  Normalise(result);
  return result;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
