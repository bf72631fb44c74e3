// Operations of the core in which one allocation fails: each of them, one after another. A program
// of its own, because it replaces operator new and, by the linker, the allocation of the C library.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <map>
#include <new>
#include <string>
#include <vector>

#include "base/json_rows.h"
#include "base/scratch_folder.h"
#include "catalogue/package_logo.h"
#include "catalogue/recording_icon_maker.h"
#include "ledger/base64_text.h"
#include "ledger/day_energy.h"
#include "ledger/fake_days.h"
#include "ledger/ledger_file.h"
#include "ledger/power_ledger.h"
#include "ledger/series.h"
#include "platform/wmi/support_decision.h"
#include "reports/display_names.h"
#include "reports/log_rows.h"
#include "reports/power_report.h"
#include "reports/power_store.h"
#include "reports/ranking.h"
#include "reports/ranking_text.h"
#include "reports/report_times.h"
#include "security/access/rule_judges.h"
#include "security/pattern/pattern.h"

namespace {

/// Allocations until one fails; 0 if none is to fail.
long untilFailure = 0;
long allocations = 0;
long live = 0;
/// Otherwise nothing is counted and nothing fails.
bool isArmed = false;

bool MayAllocate() {
  if (!isArmed) return true;
  ++allocations;
  return untilFailure == 0 || allocations != untilFailure;
}

}  // namespace

extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* block, std::size_t size);
void __real_free(void* block);

void* __wrap_malloc(std::size_t size) {
  void* const block = MayAllocate() ? __real_malloc(size) : nullptr;
  if (block != nullptr) ++live;
  return block;
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
  void* const block = MayAllocate() ? __real_calloc(count, size) : nullptr;
  if (block != nullptr) ++live;
  return block;
}

void* __wrap_realloc(void* block, std::size_t size) {
  void* const moved = MayAllocate() ? __real_realloc(block, size) : nullptr;
  if (block == nullptr && moved != nullptr) ++live;
  return moved;
}

void __wrap_free(void* block) {
  if (block != nullptr) --live;
  __real_free(block);
}
}

// The compiler takes them for a pair of other functions than these.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

void* operator new(std::size_t size) {
  if (void* block = __wrap_malloc(size)) return block;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return __wrap_malloc(size); }
void operator delete(void* block) noexcept { __wrap_free(block); }
void operator delete(void* block, std::size_t) noexcept { __wrap_free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { __wrap_free(block); }

namespace {

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::At;
using TestSupport::List;
using TestSupport::Sample;
using TestSupport::ScratchFolder;
using TestSupport::Summarized;
using TestSupport::WriteBytes;
using Zq::Gantry::Security::BeginsWithFromExpandedList;
using Zq::Gantry::Security::IsContainedInList;
using Zq::Gantry::Security::LiesInNumericRange;
using Zq::Gantry::Security::PassesRegex;

constexpr char kBadAlloc[] = "std::bad_alloc";

/// The operation's text; kBadAlloc if it throws that.
std::string RunWithFailureAt(long allocation, const std::function<std::string()>& operation) {
  std::string text;
  untilFailure = allocation;
  allocations = 0;
  isArmed = true;
  try {
    std::string result = operation();
    isArmed = false;
    text = std::move(result);
  } catch (const std::bad_alloc&) {
    isArmed = false;
    text = kBadAlloc;
  }
  return text;
}

/// Lets each allocation of the operation fail, one after another. It must throw std::bad_alloc or
/// return what it returns otherwise, or `withoutMemory`; nothing may leak, and the next run must be
/// as if nothing had happened.
void ExpectSurvivesEachFailure(const std::function<std::string()>& operation,
                               const std::string& withoutMemory = kBadAlloc) {
  // Before it counts: what is allocated once and stays.
  static_cast<void>(RunWithFailureAt(0, operation));
  const std::string expected = RunWithFailureAt(0, operation);
  const long all = allocations;
  ASSERT_GT(all, 0);
  ASSERT_NE(expected, withoutMemory);
  std::map<std::string, int> outcomes;
  for (long allocation = 1; allocation <= all; ++allocation) {
    const long liveBefore = live;
    {
      const std::string text = RunWithFailureAt(allocation, operation);
      const bool isFine = text == kBadAlloc || text == withoutMemory || text == expected;
      ASSERT_TRUE(isFine) << "allocation " << allocation << ": " << text;
    }
    ASSERT_EQ(live, liveBefore) << "allocation " << allocation << " of " << all << " leaks";
    outcomes[RunWithFailureAt(allocation, operation)] += 1;
  }
  EXPECT_GT(outcomes[kBadAlloc] + outcomes[withoutMemory], 0);
  EXPECT_EQ(RunWithFailureAt(0, operation), expected);
  std::printf("allocations: %ld, of which %d throw, %d end in the documented result\n", all,
              outcomes[kBadAlloc], withoutMemory == kBadAlloc ? 0 : outcomes[withoutMemory]);
}

std::string DaySamples() {
  std::vector<std::string> samples;
  for (const char* minute : {"00", "05", "10", "15", "20"}) {
    samples.push_back(Sample("2026-11-14T09:" + std::string(minute) + ":00", "36.5"));
  }
  return List(samples);
}

PowerLedger SomeDays() {
  PowerLedger ledger;
  for (const char* day : {"2026-11-10", "2026-11-12", "2026-11-13"}) {
    ledger[At((std::string(day) + ":00:00:00").c_str())] = 12.5F;
  }
  return ledger;
}

std::string TextOf(const PowerLedger& ledger) {
  std::string text;
  for (const auto& [day, energyWh] : ledger) {
    text += std::to_string(day.tm_mday) + "=" + std::to_string(energyWh) + " ";
  }
  return text;
}

class AllocationFaults : public testing::Test {
 protected:
  std::wstring Write(const char* name, const std::string& bytes) const {
    WriteBytes(folder.File(name), bytes);
    return folder.File(name).wstring();
  }
  std::wstring Path(const char* name) const { return folder.File(name).wstring(); }

  const ScratchFolder folder;
  const DateTime today = At("2026-11-14:00:00:00");
};

TEST_F(AllocationFaults, DayAndHoursOfASampleFile) {
  const std::wstring path = Write("samples.json", DaySamples());
  const DayReader read = [&](const DateTime& day, JsonRowSink& sink) {
    return day.tm_mday == 14 && ReadJsonRows(path, kSampleMembers, sink) == JsonRowsOutcome::kRows;
  };
  ExpectSurvivesEachFailure([&] {
    const float energyWh = DayEnergyWh(today, Summarized(read));
    return std::to_string(energyWh) + " " + std::to_string(HourlyEnergyWh(today, read).size());
  });
}

TEST_F(AllocationFaults, Base64Text) {
  std::string text;
  for (int i = 0; i < 20; ++i) text += "TWVhZG93";
  ExpectSurvivesEachFailure([&] { return TryDecodeBase64(text).value(); });
}

TEST_F(AllocationFaults, LedgerThatIsLoadedUpdatedAndSaved) {
  const PowerLedger saved = SomeDays();
  const std::wstring path = Path("ledger.json");
  ASSERT_TRUE(SaveLedger(path, saved));
  ExpectSurvivesEachFailure([&] {
    PowerLedger ledger;
    LoadLedger(path, OldestDay(today), ledger);
    UpdateLedger(today, ledger, {[](const DateTime&) { return 0.0F; }, [](const DateTime&) {}});
    const std::wstring copy = Path("copy.json");
    if (!SaveLedger(copy, ledger) || !HoldsLedger(copy, ledger)) return std::string("not saved");
    return TextOf(ledger);
  });
}

TEST_F(AllocationFaults, SeriesOfDaysAndMonths) {
  const PowerLedger ledger = SomeDays();
  ExpectSurvivesEachFailure([&] {
    const std::wstring text = SeriesText(DaySeries(today, ledger), kDayLabelKey) +
                              SeriesText(MonthSeries(today, today, ledger), kMonthLabelKey);
    return std::string(text.begin(), text.end());
  });
}

/// The report of five applications.
std::string ReportText() {
  std::string text = "<Report>";
  for (const char* name : {"Orchard.Notes_7", "Finch.Music_3", "Ember.Video_12",
                           "\\Device\\C\\a.exe", "\\Device\\C\\long\\name\\of\\b.exe"}) {
    text += "<Row AppId=\"" + std::string(name) +
            "\" TimeStamp=\"2026-11-14:09:00:00\"><TotalEnergyConsumption Value=\"120\"/></Row>";
  }
  return text + "</Report>";
}

TEST_F(AllocationFaults, ReportThatIsConvertedAndStored) {
  const std::wstring report = Write("report.xml", ReportText());
  const std::wstring store = Path("store.json");
  const PackagedApps packages{{"Orchard.Notes", {"Orchard Notes", "C:\\logo.png"}}};
  const ReportingPeriod period(At("2026-11-14:10:30:15"), 30);
  const auto convert = [&] {
    PowerLog log;
    DisplayNames names("\\Device\\C", packages, [](const std::string&) { return "A file"; });
    ReadPowerReport(report, period, names, log);
    if (!WritePowerStore(store, log)) return std::string("not written");
    const auto rows = TryReadPowerStore(store, period);
    if (!rows) return std::string("not read");
    PowerLog merged;
    MergePowerStore(*rows, merged);
    return std::to_string(merged.Size()) + " rows";
  };
  // A report whose tree finds no memory is like one that cannot be parsed: it has no rows.
  ExpectSurvivesEachFailure(convert, "0 rows");
}

TEST_F(AllocationFaults, RankingOfAStore) {
  const std::wstring store = Path("store.json");
  const ReportingPeriod period(At("2026-11-14:10:30:15"), 30);
  {
    PowerLog log;
    const PackagedApps none;
    DisplayNames names("\\Device\\C", none, [](const std::string&) { return "A file"; });
    ReadPowerReport(Write("report.xml", ReportText()), period, names, log);
    ASSERT_TRUE(WritePowerStore(store, log));
  }
  const DesktopApps desktopApps{{L"A file", L"C:\\a.exe"}};
  const PackagedApps packages{{"Orchard.Notes", {"Orchard Notes", "C:\\logo.png"}}};
  ExpectSurvivesEachFailure([&] {
    TestSupport::RecordingIconMaker icons;
    const auto rows = TryReadPowerStore(store, period);
    if (!rows) return std::string("not read");
    const std::wstring text = RankingText(
        RankApplications(*rows, desktopApps, packages, TestSupport::kIconDirectory, icons));
    return std::string(text.begin(), text.end());
  });
}

TEST_F(AllocationFaults, Rules) {
  const std::wstring list = L"alpha,beta with many more characters,gamma";
  ExpectSurvivesEachFailure([&] {
    const auto expand = [](const std::wstring& path) { return L"C:\\folder of a user\\" + path; };
    const auto limit = [](const wchar_t*) { return std::optional<std::wstring>(L"5"); };
    std::string verdicts;
    for (const bool passes :
         {PassesRegex(L"(a|b)+[c-e]{2,9}", L"abababcde"), IsContainedInList(list, L"gamma"),
          BeginsWithFromExpandedList(list, L"beta with many more characters indeed", expand),
          LiesInNumericRange(5.0, limit)}) {
      verdicts += passes ? '1' : '0';
    }
    return verdicts;
  });
}

TEST_F(AllocationFaults, ManifestOfAPackage) {
  const std::wstring manifest =
      Write("AppxManifest.xml",
            "<Package><Applications><Application><uap:VisualElements Square44x44Logo=\"Assets\\A "
            "logo.png\"/></Application></Applications></Package>");
  const auto read = [&] {
    const std::wstring logo = TryReadManifestLogo(manifest).value_or(L"none");
    return std::string(logo.begin(), logo.end());
  };
  // A tree without memory is a manifest that cannot be parsed.
  ExpectSurvivesEachFailure(read, "none");
}

TEST_F(AllocationFaults, MarkerOfTheMachine) {
  namespace WMI = Zq::Gantry::Server::Shared::WMI;
  ExpectSurvivesEachFailure([&] {
    WMI::WideDocument document;
    document.SetObject();
    WMI::WideValue texts(rapidjson::kArrayType);
    for (const wchar_t* text : {L"one text of the machine", L"CarbonSupport=1"}) {
      texts.PushBack(WMI::WideValue(text, document.GetAllocator()), document.GetAllocator());
    }
    document.AddMember(L"result", texts, document.GetAllocator());
    return std::string(WMI::HoldsCarbonMarker(document) ? "found" : "not found");
  });
}

}  // namespace
