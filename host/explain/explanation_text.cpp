#include "explain/explanation_text.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ranges>
#include <string_view>

#include "ledger/sample_energy.h"
#include "text/printable.h"

namespace WattleafHost {

namespace {

using Zq::Gantry::Server::Services::Wattleaf::kEnergyDivisor;
using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer>;
using Kind = ExplainedInterval::Kind;

/// A float as the ledger's file has it.
std::string FloatText(float value) {
  rapidjson::StringBuffer buffer;
  JsonWriter writer(buffer);
  writer.Double(static_cast<double>(value));
  return buffer.GetString();
}

std::string FourDigits(double value) {
  std::array<char, 320> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%.4f", value);
  return buffer.data();
}

/// The time of day of a sample, or its whole text if that is not of `date`.
std::string TimeText(const std::string& time, const std::string& date) {
  constexpr std::size_t kLongestChars = 19;
  if (time.empty()) return "(none)";
  const bool isOfDate = time.starts_with(date + "T");
  return OneLine(isOfDate ? time.substr(date.size() + 1) : time, kLongestChars);
}

const char* KindText(Kind kind) {
  switch (kind) {
    case Kind::kInner:
      return "";
    case Kind::kLinkToDayBefore:
      return "link to the day before: ";
    case Kind::kLinkToDayAfter:
      return "link to the day after: ";
  }
  return "";
}

/// Neighbouring intervals with the same fate.
struct Group {
  std::size_t begin = 0;
  std::size_t end = 0;
};

std::string GroupLine(const std::vector<ExplainedInterval>& intervals, const Group& group,
                      const std::string& date) {
  const ExplainedInterval& first = intervals[group.begin];
  const ExplainedInterval& last = intervals[group.end - 1];
  std::int64_t seconds = 0;
  double energyWh = 0.0;
  for (std::size_t i = group.begin; i < group.end; ++i) {
    seconds += intervals[i].seconds;
    energyWh += static_cast<double>(intervals[i].energyWh);
  }
  const bool isBooked = first.booking == Booking::kBooked;
  std::string line = PadLeft(std::to_string(group.end - group.begin), 6);
  line += isBooked ? "  booked      " : "  not booked  ";
  line += TimeText(first.from, date) + " - " + TimeText(last.to, date) + ", " +
          std::to_string(seconds) + " s: " + KindText(first.kind);
  if (!isBooked) return line + BookingText(first.booking) + "\n";
  line += FourDigits(energyWh) + " Wh";
  if (group.end - group.begin == 1) {
    line += " at " + FourDigits(static_cast<double>(first.watts)) + " W";
  }
  return line + ", sum " + FourDigits(static_cast<double>(last.sumWh)) + " Wh\n";
}

/// The lines of the intervals that `isShown` accepts. A sum that begins ends a group.
template <typename IsShown, typename BeginsSum>
std::string GroupLines(const std::vector<ExplainedInterval>& intervals, const std::string& date,
                       bool eachInterval, IsShown isShown, BeginsSum beginsSum) {
  std::string lines;
  for (std::size_t i = 0; i < intervals.size();) {
    if (!isShown(i)) {
      ++i;
      continue;
    }
    Group group{i, i + 1};
    while (!eachInterval && group.end < intervals.size() && isShown(group.end) &&
           !beginsSum(group.end) && intervals[group.end].kind == intervals[i].kind &&
           intervals[group.end].booking == intervals[i].booking) {
      ++group.end;
    }
    lines += GroupLine(intervals, group, date);
    i = group.end;
  }
  return lines;
}

std::string FileLines(const std::vector<SampleFile>& files) {
  std::string lines;
  for (const SampleFile& file : files) {
    lines += "  samples of " + file.date + "   " + SampleFileText(file) + "\n";
  }
  return lines;
}

std::string CountLine(const std::vector<ExplainedSample>& samples) {
  const auto counted = std::ranges::count_if(samples, &ExplainedSample::isCounted);
  return "  counted                 " + std::to_string(counted) +
         " (PCM_CHARGER and PCM_SENSOR); of other types " +
         std::to_string(static_cast<std::ptrdiff_t>(samples.size()) - counted) + "\n";
}

std::string QuotientText(float sumWh, float energyWh) {
  return FloatText(sumWh) + " Wh / 0.88 = " + FloatText(energyWh) + " Wh";
}

bool IsIn(const HourSum& sum, std::size_t interval) {
  return sum.firstInterval <= interval && interval < sum.endInterval;
}

/// Whether an interval begins in the hour of the report or is in one of its sums.
bool ConcernsHour(const HourReport& report, std::size_t interval) {
  const auto& time = report.hours.samples[interval].time;
  if (time && time->hour == report.hour) return true;
  return std::ranges::any_of(report.hours.sums, [&](const HourSum& sum) {
    return sum.hour == report.hour && IsIn(sum, interval);
  });
}

/// Another hour that has the energy of intervals that begin in the hour of the report.
std::string CarriedText(const HourReport& report) {
  std::string text;
  for (const HourSum& sum : report.hours.sums) {
    if (sum.hour == report.hour) continue;
    for (std::size_t i = sum.firstInterval; i < sum.endInterval; ++i) {
      const bool isOfHour = report.hours.samples[i].time &&
                            report.hours.samples[i].time->hour == report.hour &&
                            report.hours.intervals[i].booking == Booking::kBooked;
      if (!isOfHour) continue;
      text += "  counted with hour " + std::to_string(sum.hour) +
              ": the hour ended on a sample that does not count\n";
      break;
    }
  }
  const auto unended = report.hours.unendedFrom;
  if (unended && ConcernsHour(report, *unended)) {
    text += "  the last sum is in no hour: the list ends on a sample that does not count\n";
  }
  return text;
}

std::string ResultLines(const HourReport& report) {
  std::string lines;
  for (const HourSum& sum : report.hours.sums) {
    if (sum.hour != report.hour) continue;
    lines += "  hour " + std::to_string(sum.hour) + ":  " + QuotientText(sum.sumWh, sum.energyWh) +
             (sum.isDropped ? " (dropped: the hour has a sum already)" : "") + "\n";
  }
  if (lines.empty()) {
    lines = "  hour " + std::to_string(report.hour) + ":  no sum; command 4 shows 0.0\n";
  }
  return lines + CarriedText(report);
}

void WriteText(JsonWriter& writer, const char* name, std::string_view text) {
  writer.Key(name);
  writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

void WriteTextOrNull(JsonWriter& writer, const char* name, std::string_view text) {
  if (!text.empty()) return WriteText(writer, name, text);
  writer.Key(name);
  writer.Null();
}

/// Null for an infinity, which JSON does not have.
void WriteFloat(JsonWriter& writer, const char* name, float value) {
  writer.Key(name);
  if (!writer.Double(static_cast<double>(value))) writer.Null();
}

const char* KindName(Kind kind) {
  switch (kind) {
    case Kind::kInner:
      return "inner";
    case Kind::kLinkToDayBefore:
      return "linkToDayBefore";
    case Kind::kLinkToDayAfter:
      return "linkToDayAfter";
  }
  return "";
}

void WriteFiles(JsonWriter& writer, const std::vector<SampleFile>& files) {
  writer.Key("files");
  writer.StartArray();
  for (const SampleFile& file : files) {
    writer.StartObject();
    WriteText(writer, "date", file.date);
    WriteText(writer, "state", SampleFileText(file));
    writer.Key("samples");
    writer.Uint64(file.samples);
    writer.EndObject();
  }
  writer.EndArray();
}

void WriteCounts(JsonWriter& writer, const std::vector<ExplainedSample>& samples) {
  writer.Key("samples");
  writer.Uint64(samples.size());
  writer.Key("counted");
  writer.Int64(std::ranges::count_if(samples, &ExplainedSample::isCounted));
}

void WriteIntervals(JsonWriter& writer, const std::vector<ExplainedInterval>& intervals) {
  writer.Key("intervals");
  writer.StartArray();
  for (const ExplainedInterval& interval : intervals) {
    writer.StartObject();
    WriteText(writer, "kind", KindName(interval.kind));
    WriteTextOrNull(writer, "from", interval.from);
    WriteTextOrNull(writer, "to", interval.to);
    writer.Key("seconds");
    writer.Int(interval.seconds);
    WriteFloat(writer, "watts", interval.watts);
    WriteFloat(writer, "energyWh", interval.energyWh);
    WriteFloat(writer, "sumWh", interval.sumWh);
    WriteTextOrNull(writer, "notBooked", BookingText(interval.booking));
    writer.EndObject();
  }
  writer.EndArray();
}

void BeginReport(JsonWriter& writer, const std::string& version, const std::string& date) {
  writer.StartObject();
  writer.Key("format");
  writer.Int(1);
  WriteText(writer, "host", version);
  WriteText(writer, "date", date);
}

}  // namespace

std::string ToText(const DayReport& report, bool eachInterval) {
  const DayExplanation& day = report.day;
  std::string text = "Energy of " + report.date + "\n" + FileLines(report.files);
  if (!day.samples.empty()) {
    text += CountLine(day.samples) + "\nIntervals, in the order of the arithmetic\n";
    text += GroupLines(
        day.intervals, report.date, eachInterval, [](std::size_t) { return true; },
        [](std::size_t) { return false; });
  }
  text += "\n  samples of now   " + QuotientText(day.sumWh, day.energyWh) + "\n  ledger           ";
  if (report.ledger != LedgerState::kRead) {
    text += std::string(LedgerStateText(report.ledger)) + "\n";
  } else {
    text += (report.bookedWh ? FloatText(*report.bookedWh) + " Wh" : "no value") + "\n";
  }
  return text + "  that is          " + LedgerRelationText(report.relation) + "\n";
}

std::string ToText(const HourReport& report, bool eachInterval) {
  std::string text = "Energy of " + report.date + ", hour " + std::to_string(report.hour) +
                     " (command 4)\n" + FileLines(report.files);
  const auto beginsSum = [&](std::size_t interval) {
    return std::ranges::any_of(
        report.hours.sums, [interval](const HourSum& sum) { return sum.endInterval == interval; });
  };
  const std::string lines = GroupLines(
      report.hours.intervals, report.date, eachInterval,
      [&](std::size_t interval) { return ConcernsHour(report, interval); }, beginsSum);
  if (!lines.empty()) text += "\nIntervals, in the order of the arithmetic\n" + lines;
  return text + "\n" + ResultLines(report);
}

std::string ToJson(const DayReport& report) {
  rapidjson::StringBuffer buffer;
  JsonWriter writer(buffer);
  BeginReport(writer, report.version, report.date);
  WriteFiles(writer, report.files);
  WriteCounts(writer, report.day.samples);
  WriteIntervals(writer, report.day.intervals);
  WriteFloat(writer, "sumWh", report.day.sumWh);
  WriteFloat(writer, "divisor", kEnergyDivisor);
  WriteFloat(writer, "energyWh", report.day.energyWh);
  writer.Key("ledgerWh");
  if (report.bookedWh) {
    writer.Double(static_cast<double>(*report.bookedWh));
  } else {
    writer.Null();
  }
  WriteText(writer, "ledger",
            report.ledger == LedgerState::kRead ? "read" : LedgerStateText(report.ledger));
  WriteText(writer, "relation", LedgerRelationText(report.relation));
  writer.EndObject();
  return buffer.GetString();
}

std::string ToJson(const HourReport& report) {
  rapidjson::StringBuffer buffer;
  JsonWriter writer(buffer);
  BeginReport(writer, report.version, report.date);
  writer.Key("hour");
  writer.Int(report.hour);
  WriteFiles(writer, report.files);
  WriteCounts(writer, report.hours.samples);
  WriteIntervals(writer, report.hours.intervals);
  writer.Key("sums");
  writer.StartArray();
  for (const HourSum& sum : report.hours.sums) {
    writer.StartObject();
    writer.Key("hour");
    writer.Int(sum.hour);
    WriteFloat(writer, "sumWh", sum.sumWh);
    WriteFloat(writer, "energyWh", sum.energyWh);
    writer.Key("dropped");
    writer.Bool(sum.isDropped);
    writer.EndObject();
  }
  writer.EndArray();
  WriteFloat(writer, "divisor", kEnergyDivisor);
  writer.EndObject();
  return buffer.GetString();
}

}  // namespace WattleafHost
