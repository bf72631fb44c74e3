#include "base/time_fields.h"

#include <chrono>
#include <cstdint>
#include <type_traits>

#include "base/date_text.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr std::int32_t kFirstYear = 1900;

/// A place in a text. Each operation reads on from there, and returns false if the text does not
/// continue as asked: nothing may be read then.
template <typename Char>
class Place {
 public:
  explicit Place(const Char* text) : next_(text) {}

  /// At a character beyond ASCII, which in narrow text is no blank and no digit.
  [[nodiscard]] bool IsAtForeign() const {
    return !std::is_same_v<Char, char> && static_cast<std::make_unsigned_t<Char>>(*next_) >= 0x80;
  }

  void SkipBlanks() {
    while (IsBlank()) ++next_;
  }

  /// In either case.
  bool Skip(char mark) {
    constexpr Char kCaseBit = 0x20;
    const bool isLetter = mark >= 'A' && mark <= 'Z';
    const Char found = isLetter ? static_cast<Char>(*next_ & ~kCaseBit) : *next_;
    if (found != static_cast<Char>(mark)) return false;
    ++next_;
    return true;
  }

  /// A number of at most `width` digits from `least` to `most`. Without one, `number` stays as it
  /// was.
  bool Read(int width, std::int32_t least, std::int32_t most, std::int32_t& number) {
    std::int32_t value = 0;
    int digits = 0;
    for (; digits < width && IsDigit(); ++digits, ++next_) {
      value = value * 10 + static_cast<std::int32_t>(*next_ - Char('0'));
    }
    if (digits == 0 || value < least || value > most) return false;
    number = value;
    return true;
  }

  bool SkipOneBlank() {
    if (IsBlank()) ++next_;
    return true;
  }

 private:
  [[nodiscard]] bool IsBlank() const {
    return *next_ == Char(' ') || (*next_ >= Char('\t') && *next_ <= Char('\r'));
  }
  [[nodiscard]] bool IsDigit() const { return *next_ >= Char('0') && *next_ <= Char('9'); }

  const Char* next_;
};

template <typename Char>
void ReadAfterYear(Place<Char>& place, char separator, DateTime& fields) {
  std::int32_t month = 0;
  if (!place.Skip('-') || !place.Read(2, 1, 12, month)) return;
  fields.tm_mon = month - 1;
  // The day alone may have a blank in place of its first digit, or before it.
  if (!place.Skip('-') || !place.SkipOneBlank() || !place.Read(2, 1, 31, fields.tm_mday)) return;
  if (separator == '\0' || !place.Skip(separator)) return;
  if (!place.Read(2, 0, 23, fields.tm_hour) || !place.Skip(':')) return;
  if (!place.Read(2, 0, 59, fields.tm_min) || !place.Skip(':')) return;
  place.Read(2, 0, 60, fields.tm_sec);
}

template <typename Char>
TimeFields Read(const Char* text, char separator, DateTime& fields) {
  Place<Char> place(text);
  place.SkipBlanks();
  std::int32_t year = 0;
  const bool hasYear = place.Read(4, 0, 9999, year);
  if (hasYear) {
    fields.tm_year = year - kFirstYear;
    ReadAfterYear(place, separator, fields);
  }
  if (place.IsAtForeign()) return TimeFields::kForeign;
  return hasYear ? TimeFields::kSome : TimeFields::kNone;
}

}  // namespace

char SeparatorOf(std::string_view format) {
  if (format == kSampleTimeFormat) return 'T';
  if (format == kTimeStampFormat) return ':';
  return '\0';
}

TimeFields ReadTimeFields(const char* text, char separator, DateTime& fields) {
  return Read(text, separator, fields);
}

TimeFields ReadTimeFields(const wchar_t* text, char separator, DateTime& fields) {
  return Read(text, separator, fields);
}

void FillDayOfWeekAndYear(DateTime& fields) {
  using namespace std::chrono;
  const year inYear(fields.tm_year + kFirstYear);
  const month inMonth(static_cast<unsigned>(fields.tm_mon + 1));
  const sys_days day = sys_days(inYear / inMonth / 1) + days(fields.tm_mday - 1);
  fields.tm_wday = static_cast<std::int32_t>(weekday(day).c_encoding());
  fields.tm_yday = static_cast<std::int32_t>((day - sys_days(inYear / January / 1)).count());
  // Kept on purpose: before March of the year 0, the day of the week is one too late
  // (test TimeReader.ReadsTextsInOtherFormsLikeTheLiteralAlgorithm).
  const bool isBeforeMarchOfYearZero = fields.tm_year == -kFirstYear && fields.tm_mon < 2;
  if (isBeforeMarchOfYearZero) fields.tm_wday = (fields.tm_wday + 1) % 7;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
