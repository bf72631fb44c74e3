#include "explain/explain.h"

#include <string>

#include "base/calendar.h"
#include "base/date_text.h"
#include "base/utf8_text.h"
#include "command_line/console.h"
#include "command_line/places.h"
#include "days/sample_days.h"
#include "days/stored_ledger.h"
#include "explain/day_explanation.h"
#include "explain/explanation_text.h"
#include "explain/ledger_comparison.h"
#include "files/data_copy.h"

namespace WattleafHost {

namespace {

using namespace Zq::Gantry::Server::Services::Wattleaf;

DateTime DayOf(const std::string& date) {
  DateTime day;
  return ParseDateTime(day, date.c_str(), kDateFormat);
}

DayReport MakeDayReport(const ExplainRequest& request, DataCopy& copy) {
  const DateTime day = DayOf(request.date);
  for (const int distance : {-1, 0, 1}) {
    copy.AddSamplesOf(ShiftKeepingHour(day, distance * kSecondsPerDay));
  }
  const StoredLedger ledger = ReadStoredLedger(copy);
  SampleDays samples(copy);

  DayReport report;
  report.version = WATTLEAF_HOST_VERSION;
  report.date = request.date;
  report.day = ExplainDay(day, samples.Reader());
  report.files = samples.Files();
  report.ledger = ledger.state;
  report.bookedWh = ledger.Find(day);
  report.relation =
      CompareWithLedger(day, *GetCurrentDate(), ledger.state, report.bookedWh, report.day);
  return report;
}

HourReport MakeHourReport(const ExplainRequest& request, DataCopy& copy) {
  const DateTime day = DayOf(request.date);
  copy.AddSamplesOf(day);
  SampleDays samples(copy);

  HourReport report;
  report.version = WATTLEAF_HOST_VERSION;
  report.date = request.date;
  report.hour = *request.hour;
  report.hours = ExplainHours(day, samples.Reader());
  report.files = samples.Files();
  return report;
}

template <typename Report>
void PrintReport(const Report& report, const ExplainRequest& request, const Options& options) {
  Print(options.json ? ToJson(report) + "\n" : ToText(report, request.eachInterval));
}

}  // namespace

int Run(const ExplainRequest& request, const Options& options) {
  DataCopy copy(FromUtf8(kDataFolder));
  if (request.hour) {
    PrintReport(MakeHourReport(request, copy), request, options);
  } else {
    PrintReport(MakeDayReport(request, copy), request, options);
  }
  return kDone;
}

}  // namespace WattleafHost
