// The rules of the core on many threads at once, as clients and the worker call them. Under
// ThreadSanitizer (preset native-threads) this shows that they share nothing without protection.

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "base/calendar.h"
#include "base/date_text.h"
#include "base/json_rows.h"
#include "base/scratch_folder.h"
#include "catalogue/installed_apps.h"
#include "ledger/base64_text.h"
#include "ledger/day_energy.h"
#include "ledger/ledger_file.h"
#include "ledger/sample_energy.h"
#include "ledger/series.h"
#include "reports/power_store.h"
#include "reports/ranking.h"
#include "reports/ranking_text.h"
#include "security/access/rule_judges.h"
#include "security/pattern/pattern.h"
#include "security/trust/path_rules.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
namespace Security = Zq::Gantry::Security;
using TestSupport::ScratchFolder;

namespace {

constexpr int kThreads = 8;

/// Runs `body` on all threads, which begin together: what is made on first use is made by several
/// at once.
void OnAllThreads(const std::function<void(int thread)>& body) {
  std::atomic<int> arrived = 0;
  std::vector<std::jthread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&arrived, &body, i] {
      ++arrived;
      while (arrived < kThreads) std::this_thread::yield();
      body(i);
    });
  }
}

/// Expects the same text of `rule` on each thread, in each of some rounds.
template <typename Text>
void ExpectEverywhere(const Text& expected, const std::function<Text()>& rule) {
  constexpr int kRounds = 20;
  std::vector<int> wrong(kThreads, 0);
  OnAllThreads([&](int thread) {
    for (int round = 0; round < kRounds; ++round) {
      if (rule() != expected) ++wrong[static_cast<std::size_t>(thread)];
    }
  });
  for (const int count : wrong) EXPECT_EQ(count, 0);
}

DateTime Day(const char* date) {
  DateTime day;
  return ParseDateTime(day, date, kDateFormat);
}

std::wstring WriteFile(const ScratchFolder& folder, const char* name, const std::string& content) {
  TestSupport::WriteBytes(folder.File(name), content);
  return folder.File(name).wstring();
}

class NoIcons final : public IconMaker {
 public:
  std::string ExportAppIcon(const std::string&, const IconFile&) override { return {}; }
  bool CopyLogo(const std::string&, const std::string&) override { return false; }
};

}  // namespace

TEST(CoreThreads, EachFormatsAndShiftsDates) {
  ExpectEverywhere<std::string>("2024-02-29 Thu", [] {
    DateTime day = Day("2024-03-01");
    DateTime before;
    AddDays(day, before, -1);
    return FormatDateTime(before, "%Y-%m-%d %a");
  });
}

TEST(CoreThreads, EachHasTheCurrentTimeForItself) {
  OnAllThreads([](int thread) {
    DateTime* const now = GetCurrentDateTime();
    now->tm_sec = thread;
    std::this_thread::yield();
    EXPECT_EQ(now->tm_sec, thread);
    EXPECT_EQ(GetCurrentDate()->tm_hour, 0);
  });
}

// 10:05 to 10:10 and 10:10 to 10:15 at 36 W are 6 Wh, and 6 / 0.88 = 6.8181820 in 32 bits.
TEST(CoreThreads, EachComputesTheEnergyOfOneSharedFile) {
  const ScratchFolder folder;
  std::string samples;
  for (const char* clock : {"10:00:00", "10:05:00", "10:10:00", "10:15:00"}) {
    samples += (samples.empty() ? "[" : ",") +
               (R"({"TelemetryType":"PCM_SENSOR","Power":36,"SampleTime":"2024-05-08T)" +
                std::string(clock) + "\"}");
  }
  const std::wstring path = WriteFile(folder, "samples.json", samples + "]");
  ExpectEverywhere<std::string>("10:6.818182", [&path] {
    const auto hours =
        HourlyEnergyWh(Day("2024-05-08"), [&path](const DateTime&, JsonRowSink& sink) {
          return ReadJsonRows(path, kSampleMembers, sink) == JsonRowsOutcome::kRows;
        });
    std::string text;
    for (const auto& [hour, energyWh] : hours) {
      text += std::to_string(hour) + ":" + std::to_string(energyWh);
    }
    return text;
  });
}

TEST(CoreThreads, EachReadsAndWritesALedger) {
  const ScratchFolder folder;
  const std::wstring shared =
      WriteFile(folder, "shared.json",
                R"([{"Key":"2024-05-06","Value":7.5},{"Key":"2024-05-07","Value":3.25}])");
  std::atomic<int> files = 0;
  ExpectEverywhere<std::string>("7.5 3.25 held", [&] {
    PowerLedger ledger;
    LoadLedger(shared, Day("2024-05-01"), ledger);
    const auto own = folder.File("own" + std::to_string(++files) + ".json");
    if (!SaveLedger(own.wstring(), ledger)) return std::string("not saved");
    std::string text;
    for (const auto& [day, energyWh] : ledger) {
      text += std::to_string(energyWh);
      text.erase(text.find_last_not_of('0') + 1);
      text += ' ';
    }
    return text + (HoldsLedger(own.wstring(), ledger) ? "held" : "lost");
  });
}

// As the helper does: a pass writes the ledger while clients read it, all under one lock.
TEST(CoreThreads, SeriesOfALedgerThatAPassWritesMeanwhileAreOldOrNew) {
  std::mutex lock;
  PowerLedger ledger;
  const DateTime today = Day("2024-05-08");
  const std::wstring zeros =
      LR"({"Range":[0.0,0.0],"Value":[{"Day":"Wed","Value":0.0},{"Day":"Thu","Value":0.0},)"
      LR"({"Day":"Fri","Value":0.0},{"Day":"Sat","Value":0.0},{"Day":"Sun","Value":0.0},)"
      LR"({"Day":"Mon","Value":0.0},{"Day":"Tue","Value":0.0}]})";
  std::wstring sevens = zeros;
  for (auto at = sevens.find(L"0.0"); at != sevens.npos; at = sevens.find(L"0.0", at)) {
    sevens[at] = L'7';
  }
  OnAllThreads([&](int thread) {
    for (int round = 0; round < 20; ++round) {
      const std::lock_guard guard(lock);
      if (thread == 0) {
        ledger.clear();
        UpdateLedger(today, ledger, {[](const DateTime&) { return 7.0F; }, [](const DateTime&) {}});
        continue;
      }
      const std::wstring text = SeriesText(DaySeries(today, ledger), kDayLabelKey);
      EXPECT_TRUE(text == zeros || text == sevens);
    }
  });
  EXPECT_EQ(SeriesText(DaySeries(today, ledger), kDayLabelKey), sevens);
  EXPECT_EQ(AverageDayEnergyWh(today, ledger), 7.0F);
}

TEST(CoreThreads, EachRanksOneSharedStore) {
  const ScratchFolder folder;
  const std::wstring path = WriteFile(
      folder, "Powerlog.json",
      R"([{"Name":"Oak.One","DisplayName":"Oak","TimeStamp":"2024-05-08:10:00:00","TotalEnergy":30},)"
      R"({"Name":"Elm.One","DisplayName":"Elm","TimeStamp":"2024-05-08:10:00:00","TotalEnergy":10}])");
  ExpectEverywhere<std::wstring>(
      LR"([{"Name":"Oak","Icon":"","Value":75.0},{"Name":"Elm","Icon":"","Value":25.0}])", [&path] {
        const auto store = TryReadPowerStore(path, ReportingPeriod(Day("2024-05-09"), 7));
        NoIcons icons;
        return store ? RankingText(RankApplications(*store, {}, {}, "", icons)) : std::wstring();
      });
}

TEST(CoreThreads, EachDecodesBase64) {
  ExpectEverywhere<std::string>("Meadow",
                                [] { return TryDecodeBase64("TWVhZG93").value_or("not Base64"); });
}

TEST(CoreThreads, EachJudgesParameters) {
  ExpectEverywhere<std::string>("yes yes yes no", [] {
    const auto text = [](bool answer) { return std::string(answer ? "yes" : "no"); };
    return text(Security::PassesRegex(L"[a-z]+\\d*", L"abc123")) + " " +
           text(Security::IsContainedInList(L"a,b,c", L"b")) + " " +
           text(Security::BeginsWithFromList(L"Oak,Elm", L"ELMTREE")) + " " +
           text(Security::IsClimbingPath(L"Oak\\..\\Elm"));
  });
}

TEST(CoreThreads, EachFindsThePackagedFolderOfAPath) {
  ExpectEverywhere<std::wstring>(L"D:\\WindowsApps", [] {
    return Security::TryFindPackagedFolder(L"D:\\WindowsApps\\Oak\\oak.exe").value_or(L"none");
  });
}

TEST(CoreThreads, ReadersOfACatalogueSeeItWholeWhileItIsReplaced) {
  Published<DesktopApps> apps;
  OnAllThreads([&apps](int thread) {
    for (int round = 0; round < 200; ++round) {
      if (thread == 0) {
        apps.Replace({{L"Oak", std::to_wstring(round)}, {L"Elm", std::to_wstring(round)}});
        continue;
      }
      const auto current = apps.Current();
      if (current->empty()) continue;  // before the first Replace
      EXPECT_EQ(current->at(L"Oak"), current->at(L"Elm"));
    }
  });
  EXPECT_EQ(apps.Current()->at(L"Oak"), L"199");
}
