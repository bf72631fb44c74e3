// Any fields as a time, and any second of the calendar: the quick texts are those of the C library,
// and reading the text of a second in UTC returns that second.
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <string>

#include "base/date_text.h"
#include "base/local_calendar.h"
#include "fuzz_input.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using Fuzz::Require;

namespace {

/// The last second of 3000 in UTC.
constexpr std::uint64_t kLastInstant = 32535215999;

std::string LiteralText(const DateTime& time, const char* format) {
  const std::tm fields = ToTm(time);
  char text[64];
  return {text, std::strftime(text, sizeof(text), format, &fields)};
}

std::wstring Widened(const std::string& text) { return {text.begin(), text.end()}; }

void CheckTexts(const DateTime& time) {
  DateBuffer buffer;
  Require(WriteTimeStamp(time, buffer) == FormatDateTime(time, kTimeStampFormat));
  const std::string date = FormatDateTime(time, kDateFormat);
  Require(WriteDate(time, buffer) == date);
  Require(FormatDateWide(time) == Widened(date));
  // Empty for a field outside its range.
  if (date.empty()) return;
  Require(date == LiteralText(time, "%Y-%m-%d"));
  Require(FormatDateTime(time, kTimeStampFormat) == LiteralText(time, "%Y-%m-%d:%H:%M:%S"));
  Require(FormatLogTime(time) == LiteralText(time, "%H:%M:%S %d-%m-%Y"));
}

/// Each field is in its range, next to it, or anything.
std::int32_t Field(Fuzz::Input& input) {
  const std::uint8_t size = input.Byte();
  if (size == 0xFF) return static_cast<std::int32_t>(static_cast<std::uint32_t>(input.Number(4)));
  return size < 0x80 ? size - 1 : static_cast<std::int16_t>(input.Number(2));
}

void CheckReading(std::int64_t instant) {
  const DateTime time = LocalTimeOf(instant);
  CheckTexts(time);
  for (const char* format : {kSampleTimeFormat, kTimeStampFormat}) {
    DateTime read;
    Require(InstantOf(ParseDateTime(read, FormatDateTime(time, format).c_str(), format)) ==
            instant);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const int zone = setenv("TZ", "UTC", /*overwrite=*/1);
  Require(zone == 0);
  Fuzz::Input input(data, size);
  CheckReading(static_cast<std::int64_t>(input.Number(5) % (kLastInstant + 1)));
  while (!input.IsEmpty()) {
    DateTime time;
    for (std::int32_t* field : {&time.tm_sec, &time.tm_min, &time.tm_hour, &time.tm_mday,
                                &time.tm_mon, &time.tm_year, &time.tm_wday, &time.tm_yday}) {
      *field = Field(input);
    }
    CheckTexts(time);
  }
  return 0;
}
