#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "collection/ledger_fixture.h"
#include "collection/open_helper.h"
#include "reports/fake_ranking.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

namespace TestSupport {

/// The low byte of each character.
[[nodiscard]] inline std::string NarrowPath(const std::wstring& ascii) {
  std::string path;
  for (const wchar_t character : ascii) path += static_cast<char>(character);
  return path;
}

/// A path with its backslashes escaped for a JSON text.
[[nodiscard]] inline std::wstring InJson(const std::wstring& path) {
  std::wstring text;
  for (const wchar_t character : path) {
    text += character == L'\\' ? L"\\\\" : std::wstring(1, character);
  }
  return text;
}

/// A helper with an empty data folder and a clock stopped at 14 November 2026, 10:30:15. Checks
/// that the ranking logs nothing.
class RankingFixture : public testing::Test {
 protected:
  RankingFixture() {
    FakeClock::Set("2026-11-14 10:30:15");
    helper.collectionPath = folder.Path().c_str();
  }

  ~RankingFixture() override {
    EXPECT_THAT(log.Records(), testing::IsEmpty()) << "the ranking must not log";
  }

  [[nodiscard]] std::wstring StorePath() const { return folder.File(L"Powerlog.json"); }
  void WriteStore(const std::vector<std::string>& rows) const {
    WriteWholeFile(StorePath(), Store(rows));
  }

  /// A package "Alder" with the name "Meadow" and a logo in the data folder.
  void InstallPackage() {
    WriteWholeFile(folder.File(L"logo.png"), "the logo");
    helper.uwpApps.Replace({{"Alder", {"Meadow", NarrowPath(folder.File(L"logo.png"))}}});
  }

  /// The result for `request`; "untouched" if the operation leaves it as it was.
  [[nodiscard]] std::wstring Rank(std::wstring request) {
    std::wstring result = L"untouched";
    helper.GetTop20PowerApps(request, result);
    return result;
  }

  const TempFolder folder;
  const FakeClock clock;
  const LogCapture log;
  OpenHelper helper;
};

}  // namespace TestSupport
