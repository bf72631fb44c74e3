#pragma once

#include <windows.h>

#include <time.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "collection/wattleaf_helper.h"
#include "import_patch.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

namespace TestSupport {

/// The date of the passes in most tests.
inline constexpr char kToday[] = "2024-05-08";

/// A helper on a given data folder, with public access to its ledger.
class TestHelper : public Zq::Gantry::Server::Services::Wattleaf::WattleafHelper {
 public:
  /// `folder` must outlive the helper.
  explicit TestHelper(const wchar_t* folder) { collectionPath = folder; }

  using WattleafHelper::CalculateDailyPowerConsumption;
  using WattleafHelper::collectionPath;
  using WattleafHelper::dailyLedger;
  using WattleafHelper::dataChanged;
  using WattleafHelper::dataMutex;
  using WattleafHelper::GetDevicePath;
  using WattleafHelper::GetJsonFromDate;
  using WattleafHelper::GetPowerConsumption;
  using WattleafHelper::OnGetTop20PowerApps;
};

/// Stops the program's clock. One at a time.
class FakeClock {
 public:
  FakeClock();
  FakeClock(const FakeClock&) = delete;
  FakeClock& operator=(const FakeClock&) = delete;

  /// "2024-05-08 14:30:00", local time.
  static void Set(const std::string& localTime);
  /// Makes reading the time throw until the next Set: a failure in the middle of an operation.
  static void Break();

 private:
  Standin::ImportPatch patch_;
};

/// Makes GetFileAttributesW fail with `error` for one path while it exists. One at a time.
class FakeAttributesFailure {
 public:
  FakeAttributesFailure(const std::wstring& path, DWORD error);
  FakeAttributesFailure(const FakeAttributesFailure&) = delete;
  FakeAttributesFailure& operator=(const FakeAttributesFailure&) = delete;

 private:
  Standin::ImportPatch patch_;
};

/// A helper with an empty data folder, a clock stopped at 2024-05-08 14:30 (a Wednesday), a log.
class LedgerFixture : public testing::Test {
 protected:
  LedgerFixture();

  [[nodiscard]] std::wstring SamplePath(const std::string& date) const;
  [[nodiscard]] std::wstring LedgerPath() const;
  [[nodiscard]] std::wstring PlainCopy(const std::string& date) const;

  /// Writes a day's samples as the collector does: 36 watts at each of `times` ("10:05:00").
  void WriteSamples(const std::string& date, const std::vector<std::string>& times) const;
  /// Writes a day's samples file with any content.
  void WriteEncrypted(const std::string& date, const std::string& json) const;

  /// Writes samples with one counted interval of 300 seconds, so kThreeWh.
  void WriteOneInterval(const std::string& date) const;

  /// The day's energy in the helper's ledger; -1 without an entry.
  [[nodiscard]] float Booked(const std::string& date) const;
  [[nodiscard]] std::string LedgerText() const { return ReadWholeFile(LedgerPath()); }

  const TempFolder folder;
  const FakeClock clock;
  LogCapture log;
  TestHelper helper{folder.Path().c_str()};
};

/// What the tests of the daily pass share. Their suites are named after the function.
class DailyPassFixture : public LedgerFixture {
 protected:
  void Run() { helper.CalculateDailyPowerConsumption(); }
  /// Sets the clock, "2024-05-08 14:30:00", and runs a pass.
  void RunAt(const std::string& localTime);

  /// Writes samples from two minutes after midnight to two minutes before the next, with one
  /// counted interval of 300 seconds at noon; the 240 seconds across midnight link neighbouring
  /// days.
  void WriteFromMidnightToMidnight(const std::string& date) const;

  [[nodiscard]] bool HasSamples(const std::string& date) const {
    return FileExists(SamplePath(date));
  }
  void WriteLedger(const std::vector<std::string>& elements) const;
  [[nodiscard]] bool LedgerFileHolds(const std::string& date, const std::string& value) const;

  /// The dates whose samples were decrypted, by the log.
  [[nodiscard]] std::vector<std::wstring> DecryptedDates() const;
  /// The warnings and errors of the log.
  [[nodiscard]] std::vector<LogRecord> Problems() const;

  /// Runs a first pass while the object that `fail` returns makes a status query of the ledger
  /// fail, and a second one in the same process without it. Checks that only the second one saves.
  void ExpectNoSaveWhile(const std::function<std::shared_ptr<void>()>& fail);
};

inline constexpr wchar_t kSaveFailed[] =
    L"Error in CalculateDailyPowerConsumption() : Save Json failed";

/// One day's element of the ledger file, without comma or bracket.
[[nodiscard]] std::string LedgerElement(const std::string& date, const std::string& value);

/// The booked energy of one interval of 300 seconds at 36 watts.
inline constexpr float kThreeWh = 3.0F / 0.88F;
/// The same with the 240 seconds across one midnight, which are 2.4 watt-hours.
inline constexpr float kThreeAndLinkWh = (3.0F + 2.4F) / 0.88F;

/// The date `days` days before `date` ("2024-05-08"), by the calendar alone.
[[nodiscard]] std::string DateBefore(const std::string& date, int days);

}  // namespace TestSupport
