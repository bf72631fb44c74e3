// Stand-in: the days that the collector has written.

#include "sample_store.h"

#include <stdexcept>

#include "whole_file.h"

namespace Standin {

namespace {

constexpr wchar_t kSamplePathStart[] =
    L"C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector\\PcmSampleData_";

void WriteWholeFile(const std::wstring& path, const std::string& bytes) {
  if (!TryWriteWholeFile(path, bytes)) {
    throw std::runtime_error("the collector cannot write a file");
  }
}

}  // namespace

void SampleStore::WriteFirstDays() {
  current_ = DayOf(settings_.now);
  for (int back = settings_.days - 1; back >= 0; --back) {
    WriteDay(DayAfter(current_, -back), settings_.now);
  }
  WriteTruth();
}

void SampleStore::Advance(std::int64_t now) {
  const CalendarDay today = DayOf(now);
  for (CalendarDay day = current_; day.number <= today.number; day = DayAfter(day, 1)) {
    WriteDay(day, now);
  }
  current_ = today;
  WriteTruth();
}

void SampleStore::WriteDay(const CalendarDay& day, std::int64_t now) {
  auto samples = TakeSamples(settings_.model, day, now);
  if (!samples) return;
  const std::wstring date(day.date.begin(), day.date.end());
  WriteWholeFile(kSamplePathStart + date + L".json", SampleFileBytes(*samples));
  days_[day.date] = std::move(*samples);
}

void SampleStore::WriteTruth() const { WriteWholeFile(settings_.truthPath, TruthText(days_)); }

}  // namespace Standin
