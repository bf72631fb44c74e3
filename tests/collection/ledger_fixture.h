#pragma once

#include <windows.h>

#include <time.h>

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "collection/wattleaf_helper.h"
#include "import_patch.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

namespace TestSupport {

/// The helper with its ledger in reach, on a data folder of the test's own.
class TestHelper : public Zq::Gantry::Server::Services::Wattleaf::WattleafHelper {
 public:
  /// `folder` is borrowed for the helper's life.
  explicit TestHelper(const wchar_t* folder) { collectionPath = folder; }

  using WattleafHelper::CalculateDailyPowerConsumption;
  using WattleafHelper::collectionPath;
  using WattleafHelper::dailyLedger;
  using WattleafHelper::dataChanged;
  using WattleafHelper::dataMutex;
  using WattleafHelper::GetDevicePath;
  using WattleafHelper::GetJsonFromDate;
  using WattleafHelper::GetPowerConsumption;
};

/// Stops the clock of the program. One at a time.
class FakeClock {
 public:
  FakeClock();
  FakeClock(const FakeClock&) = delete;
  FakeClock& operator=(const FakeClock&) = delete;

  /// "2024-05-08 14:30:00", local time.
  static void Set(const std::string& localTime);
  /// From now on asking for the time throws, until the next Set: a failure in the middle of an
  /// operation.
  static void Break();

 private:
  Standin::ImportPatch patch_;
};

/// Makes the standard library's status query fail for one path, for as long as it lives. One at a
/// time.
class FakeStatusFailure {
 public:
  explicit FakeStatusFailure(const std::wstring& path);
  FakeStatusFailure(const FakeStatusFailure&) = delete;
  FakeStatusFailure& operator=(const FakeStatusFailure&) = delete;

 private:
  Standin::ImportPatch patch_;
};

/// Makes GetFileAttributesW fail with `error` for one path, for as long as it lives. One at a time,
/// and not beside a FakeStatusFailure.
class FakeAttributesFailure {
 public:
  FakeAttributesFailure(const std::wstring& path, DWORD error);
  FakeAttributesFailure(const FakeAttributesFailure&) = delete;
  FakeAttributesFailure& operator=(const FakeAttributesFailure&) = delete;

 private:
  Standin::ImportPatch patch_;
};

/// A data folder with encrypted samples, a stopped clock (2024-05-08 14:30, a Wednesday), a log.
class LedgerFixture : public testing::Test {
 protected:
  LedgerFixture();

  std::wstring SamplePath(const std::string& date) const;
  std::wstring LedgerPath() const;
  std::wstring PlainCopy(const std::string& date) const;

  /// Writes a day's file as the collector does: 36 watts at each of these times, "10:05:00".
  void WriteSamples(const std::string& date, const std::vector<std::string>& times) const;
  /// The same around any text.
  void WriteEncrypted(const std::string& date, const std::string& json) const;

  /// A file of one interval of 300 seconds that counts; see kThreeWh.
  void WriteOneInterval(const std::string& date) const;

  float Booked(const std::string& date) const;
  std::string LedgerText() const { return ReadWholeFile(LedgerPath()); }

  const TempFolder folder;
  const FakeClock clock;
  LogCapture log;
  TestHelper helper{folder.Path().c_str()};
};

/// The text of the ledger file's element for one day, with its comma or bracket left out.
std::string LedgerElement(const std::string& date, const std::string& value);

/// The energy of one interval of 300 seconds at 36 watts.
inline constexpr float kThreeWh = 3.0F / 0.88F;

/// "2024-05-08" and so many days before it, by the calendar alone.
std::string DateBefore(const std::string& date, int days);

}  // namespace TestSupport
