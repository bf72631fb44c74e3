#include "host/notebook/notebook_days.h"

#include <time.h>

namespace TestSupport {

namespace {

constexpr std::int64_t kDaySeconds = 86400;
constexpr std::size_t kSamplesOfSomeHours = 20;

}  // namespace

NotebookDays::NotebookDays() : today_(Standin::DayOf(_time64(nullptr))) {}

Standin::CalendarDay NotebookDays::DayBack(int back) const {
  return Standin::DayAfter(today_, -back);
}

NotebookDays::Samples NotebookDays::SamplesOf(std::uint64_t seed, int back) const {
  const Standin::CalendarDay day = DayBack(back);
  return Standin::MakeDay({seed, kPeriodSeconds}, {day.number, day.end - day.begin});
}

bool NotebookDays::HasEnergy(std::uint64_t seed, int back) const {
  const Samples samples = SamplesOf(seed, back);
  return samples && samples->size() > kSamplesOfSomeHours;
}

bool NotebookDays::ClocksChange() const {
  for (int back = 0; back < 10; ++back) {
    const Standin::CalendarDay day = DayBack(back);
    if (day.end - day.begin != kDaySeconds) return true;
  }
  return false;
}

}  // namespace TestSupport
