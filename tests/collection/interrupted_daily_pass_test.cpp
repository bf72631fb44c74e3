// A host that ends in the middle of a first pass over 211 days, at a hundred moments from the first
// file call to the last, and the pass of the next process. The samples are not encrypted: data
// protection would take most of the time. The pass runs in ledger_pass_probe.
//
// Each moment takes more than a second. Without WATTLEAF_ALL_MOMENTS in the environment, only every
// tenth is tested.

#include <windows.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/json_document.h"
#include "collection/ledger_fixture.h"
#include "ledger/encrypted_samples.h"
#include "ledger/fake_days.h"
#include "platform/win32/owners.h"

using namespace TestSupport;
using Zq::Gantry::Platform::UniqueHandle;
using Zq::Gantry::Server::Services::Wattleaf::GenericDocument;
using Zq::Gantry::Server::Services::Wattleaf::LoadJsonDocument;

namespace {

constexpr int kOldest = 210;
constexpr int kMoments = 100;
constexpr int kShares = 10;
constexpr DWORD kInterrupted = 9;

using Energies = std::map<std::string, float>;

std::wstring Wide(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

std::string DateOfDay(int back) { return DateBefore(kToday, back); }

// Three powers for each day, which differ between days less than 37 days apart.
float EarlyWatts(int back) { return 20.0F + static_cast<float>(back % 37); }
float NoonWatts(int back) { return 30.0F + static_cast<float>(back % 41); }
float LateWatts(int back) { return 40.0F + static_cast<float>(back % 43); }

std::string DaySamples(int back) {
  const std::string date = DateOfDay(back);
  const auto at = [&](const char* time, float watts) {
    return Sample(date + "T" + time, std::to_string(static_cast<int>(watts)));
  };
  return List({at("00:02:00", EarlyWatts(back)), at("12:00:00", NoonWatts(back)),
               at("12:05:00", 5000.0F), at("23:58:00", LateWatts(back))});
}

/// The booked energy: from the last sample of the day before to the first of this day, the five
/// minutes at noon, and from the last sample to the first of the day after if that day still has
/// samples.
float DayEnergy(int back, bool hasDayBefore, bool hasDayAfter) {
  float sumWh = 0.0F;
  if (hasDayBefore) sumWh += 240.0F * LateWatts(back + 1) / 3600.0F;
  sumWh += 300.0F * NoonWatts(back) / 3600.0F;
  if (hasDayAfter) sumWh += 240.0F * EarlyWatts(back - 1) / 3600.0F;
  return sumWh / 0.88F;
}

/// The ledger of an uninterrupted pass. Only today and yesterday keep their samples, so only
/// yesterday and the day before it are linked to the day after.
Energies UninterruptedLedger() {
  Energies energies;
  for (int back = 0; back <= kOldest; ++back) {
    energies[DateOfDay(back)] = DayEnergy(back, back < kOldest, back == 1 || back == 2);
  }
  return energies;
}

/// A data folder with the samples of all days.
class DataFolder {
 public:
  DataFolder() {
    for (int back = 0; back <= kOldest; ++back) {
      WriteWholeFile(SamplePath(back), Base64(Utf16(DaySamples(back))));
    }
  }

  std::wstring Path() const { return folder_.Path(); }

  bool HasSamples(int back) const { return FileExists(SamplePath(back)); }

  std::vector<int> DaysWithSamples() const {
    std::vector<int> days;
    for (int back = 0; back <= kOldest; ++back) {
      if (HasSamples(back)) days.push_back(back);
    }
    return days;
  }

  int PlainCopies() const {
    int count = 0;
    WIN32_FIND_DATAW entry{};
    const Zq::Gantry::Platform::UniqueFindHandle search(
        FindFirstFileW(folder_.File(L"unencrypt-*").c_str(), &entry));
    if (!search) return 0;
    do ++count;
    while (FindNextFileW(search.get(), &entry));
    return count;
  }

  /// Empty if the file is missing or truncated.
  std::optional<Energies> SavedLedger() const {
    const std::unique_ptr<GenericDocument> document(
        LoadJsonDocument(folder_.File(L"PowerConsumption.json")));
    if (!document) return std::nullopt;
    Energies energies;
    for (const auto& element : document->GetArray()) {
      energies[element["Key"].GetString()] = element["Value"].GetFloat();
    }
    return energies;
  }

 private:
  std::wstring SamplePath(int back) const {
    return folder_.File(L"PcmSampleData_" + Wide(DateOfDay(back)) + L".json");
  }

  const TempFolder folder_;
};

/// Runs ledger_pass_probe, from the folder of this program, for one pass. Returns its exit status.
DWORD RunPass(const DataFolder& data, const std::vector<std::wstring>& steps) {
  std::array<wchar_t, MAX_PATH> path{};
  GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size() - 1));
  const std::wstring self = path.data();
  std::wstring line = L"\"" + self.substr(0, self.find_last_of(L'\\')) +
                      L"\\ledger_pass_probe.exe\" \"" + data.Path() + L"\" unprotected";
  for (const std::wstring& step : steps) line += L" \"" + step + L"\"";
  line += L" pass=2024-05-08T14:30:00";

  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                      nullptr, &startup, &process)) {
    ADD_FAILURE() << "cannot start the probe, Windows error " << GetLastError();
    return 0;
  }
  const UniqueHandle thread(process.hThread);
  const UniqueHandle owner(process.hProcess);
  WaitForSingleObject(process.hProcess, INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(process.hProcess, &status);
  return status;
}

/// The counted calls of an uninterrupted pass; call numbers begin at 1.
struct PassCalls {
  int all = 0;
  /// The number of the call that opens the ledger to save it; the next two write and close it.
  int save = 0;
};

PassCalls CountCallsOfAnUninterruptedPass() {
  const DataFolder data;
  const TempFolder reports;
  EXPECT_EQ(RunPass(data, {L"report=" + reports.File(L"report.txt")}), 0U);
  EXPECT_EQ(data.SavedLedger(), UninterruptedLedger());
  EXPECT_EQ(data.DaysWithSamples(), (std::vector<int>{0, 1}));
  PassCalls calls;
  std::sscanf(ReadWholeFile(reports.File(L"report.txt")).c_str(), "%d %d", &calls.all, &calls.save);
  return calls;
}

const PassCalls& CallsOfAnUninterruptedPass() {
  static const PassCalls calls = CountCallsOfAnUninterruptedPass();
  return calls;
}

/// What the next pass writes for the oldest day, whose saved value is not loaded.
float OldestEnergyAfter(const DataFolder& data) {
  if (!data.HasSamples(kOldest)) return 0.0F;
  return DayEnergy(kOldest, false, data.HasSamples(kOldest - 1));
}

/// Ends a pass at call number `call`, runs the next pass and checks the folder after each.
void InterruptAt(int call, const PassCalls& calls) {
  SCOPED_TRACE("ended at call " + std::to_string(call));
  const DataFolder data;
  ASSERT_EQ(RunPass(data, {L"end-at=" + std::to_wstring(call)}), kInterrupted);

  const std::vector<int> left = data.DaysWithSamples();
  Energies expected = UninterruptedLedger();
  std::vector<int> expectedDays = {0, 1};
  const bool isSaved = call > calls.save + 2;
  if (isSaved) {
    ASSERT_EQ(data.SavedLedger(), expected);
    // Samples of booked days that were not deleted before the end stay.
    expected[DateOfDay(kOldest)] = OldestEnergyAfter(data);
    expectedDays = left;
    if (data.HasSamples(kOldest)) expectedDays.pop_back();
  } else {
    EXPECT_EQ(left.size(), 211U);
    EXPECT_EQ(data.SavedLedger(), std::nullopt);
  }

  ASSERT_EQ(RunPass(data, {}), 0U);
  EXPECT_EQ(data.SavedLedger(), expected);
  EXPECT_EQ(data.DaysWithSamples(), expectedDays);
  EXPECT_EQ(data.PlainCopies(), 0);
}

/// The parameter chooses every tenth of the hundred moments.
class InterruptedDailyPass : public testing::TestWithParam<int> {};

auto Shares() {
  return testing::Range(std::getenv("WATTLEAF_ALL_MOMENTS") == nullptr ? kShares - 1 : 0, kShares);
}

}  // namespace

TEST_P(InterruptedDailyPass, IsRepairedByTheNextPass) {
  const PassCalls& calls = CallsOfAnUninterruptedPass();
  ASSERT_GT(calls.save, 4000);
  ASSERT_GT(calls.all, calls.save + 400);
  for (int moment = GetParam(); moment < kMoments; moment += kShares) {
    InterruptAt(1 + moment * (calls.all - 1) / (kMoments - 1), calls);
  }
}

INSTANTIATE_TEST_SUITE_P(Share, InterruptedDailyPass, Shares());

TEST(InterruptedLedgerSave, KeepsAllSamplesUntilTheLedgerIsClosed) {
  const PassCalls& calls = CallsOfAnUninterruptedPass();
  // Before the ledger is opened, halfway through its only write, before it is closed, and after.
  for (int call = calls.save; call <= calls.save + 3; ++call) InterruptAt(call, calls);
}
