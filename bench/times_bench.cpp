// Reading and writing times: 86,400 in each operation, by TimeReader ("ours") and as its result is
// defined ("raw"), so a millisecond is 11.6 nanoseconds for each.
#include <memory>
#include <string>
#include <vector>

#include "base/date_text.h"
#include "base/literal_times.h"
#include "base/time_reader.h"
#include "operation.h"

namespace {

using namespace Zq::Gantry::Server::Services::Wattleaf;
using Texts = std::vector<std::string>;

// 2025-06-30 22:00 in UTC: the first of July in the zone of the benchmarks, in which reading a
// summer time costs most.
constexpr std::int64_t kFirstInstant = 1751320800;

std::int64_t Count() { return static_cast<std::int64_t>(Bench::Sized(86'400, 100)); }

std::string TextAt(std::int64_t seconds) {
  return FormatDateTime(LocalTimeOf(kFirstInstant + seconds), kSampleTimeFormat);
}

/// The samples of a day, one a second.
Texts OneDay() {
  Texts texts;
  for (std::int64_t i = 0; i < Count(); ++i) texts.push_back(TextAt(i));
  return texts;
}

/// Rows of 40 applications, each with 30 days.
Texts ByApplication() {
  Texts texts;
  for (std::int64_t i = 0; i < Count(); ++i) texts.push_back(TextAt(i * 1200 % (30 * 86'400)));
  return texts;
}

/// Each text on another of 256 days, so that the reader has forgotten its day.
Texts ForgottenDays() {
  Texts texts;
  for (std::int64_t i = 0; i < Count(); ++i) texts.push_back(TextAt(i % 256 * 86'400));
  return texts;
}

/// Times in a form that only std::get_time reads.
Texts OtherForms() {
  Texts texts = OneDay();
  for (std::string& text : texts) text.insert(0, 1, ' ');
  return texts;
}

/// Registers the reading of some texts. Checks the sum of the instants.
class Reading {
 public:
  Reading(const std::string& name, Texts (*make)())
      : ours_({name + "/ours", [=, this] { Prepare(make); }, [this] { return ReadOurs(); }}),
        raw_({name + "/raw", [=, this] { Prepare(make); }, [this] { return ReadRaw(); }}) {}

 private:
  void Prepare(Texts (*make)()) {
    if (!texts_.empty()) return;
    texts_ = make();
    sum_ = SumRaw();
  }

  [[nodiscard]] std::int64_t SumRaw() const {
    std::int64_t sum = 0;
    for (const std::string& text : texts_) {
      sum += TestSupport::LiteralTime(text.c_str(), kSampleTimeFormat).instant;
    }
    return sum;
  }

  [[nodiscard]] bool ReadRaw() const { return SumRaw() == sum_; }

  [[nodiscard]] bool ReadOurs() const {
    TimeReader reader(kSampleTimeFormat);
    std::int64_t sum = 0;
    for (const std::string& text : texts_) sum += reader.Read(text.c_str()).instant;
    return sum == sum_;
  }

  Texts texts_;
  std::int64_t sum_ = 0;
  Bench::Registration ours_;
  Bench::Registration raw_;
};

const Reading oneDay("one_day", OneDay);
const Reading byApplication("by_application", ByApplication);
const Reading forgottenDays("forgotten_days", ForgottenDays);
const Reading otherForms("other_forms", OtherForms);

constexpr std::size_t kTimeStampChars = 19;

DateTime TimeToWrite(std::int64_t number) {
  return {.tm_sec = static_cast<std::int32_t>(number % 60), .tm_mday = 1, .tm_year = 125};
}

bool WriteOurs() {
  DateBuffer buffer;
  std::size_t chars = 0;
  for (std::int64_t i = 0; i < Count(); ++i) chars += WriteTimeStamp(TimeToWrite(i), buffer).size();
  return chars == static_cast<std::size_t>(Count()) * kTimeStampChars;
}

bool WriteRaw() {
  std::size_t chars = 0;
  for (std::int64_t i = 0; i < Count(); ++i) {
    chars += FormatDateTime(TimeToWrite(i), kTimeStampFormat).size();
  }
  return chars == static_cast<std::size_t>(Count()) * kTimeStampChars;
}

const Bench::Registration writeOurs{{"write/ours", [] {}, WriteOurs}};
const Bench::Registration writeRaw{{"write/raw", [] {}, WriteRaw}};

constexpr int kReaders = 1000;

/// What a reader costs that reads a single time: for files of few samples.
bool ReadAlone() {
  std::int64_t sum = 0;
  for (int i = 0; i < kReaders; ++i) {
    sum += TimeReader(kSampleTimeFormat).Read("2025-01-15T12:00:00").instant;
  }
  return sum == kReaders * std::int64_t{1736938800};
}

bool ReadAloneRaw() {
  std::int64_t sum = 0;
  for (int i = 0; i < kReaders; ++i) {
    sum += TestSupport::LiteralTime("2025-01-15T12:00:00", kSampleTimeFormat).instant;
  }
  return sum == kReaders * std::int64_t{1736938800};
}

const Bench::Registration aloneOurs{{"thousand_readers/ours", [] {}, ReadAlone}};
const Bench::Registration aloneRaw{{"thousand_readers/raw", [] {}, ReadAloneRaw}};

}  // namespace
