// First passes of a process that finds a file of the data folder cut, as a full disk or the end of
// an earlier process left it. Each length of ledger and store is in ledger/cut_files_test.cpp and
// reports/cut_files_test.cpp; here are the whole passes.
//
// Without WATTLEAF_ALL_MOMENTS in the environment, only some lengths are tested.

#include <windows.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "collection/notebook_folder.h"
#include "collection/pass_model.h"
#include "collection/whole_pass_fixture.h"
#include "ledger/encrypted_samples.h"
#include "ledger/fake_days.h"

using namespace TestSupport;

namespace {

/// Lengths of cut files below `size`: the first and the last ones, and some between.
std::vector<std::size_t> Lengths(std::size_t size) {
  const std::size_t edge = AreAllMomentsWanted() ? 8 : 1;
  const std::size_t steps = AreAllMomentsWanted() ? 100 : 3;
  std::vector<std::size_t> lengths;
  for (std::size_t i = 0; i < edge; ++i) lengths.push_back(i);
  for (std::size_t i = 1; i < steps; ++i) lengths.push_back(size * i / steps);
  for (std::size_t i = edge; i > 0; --i) lengths.push_back(size - i);
  return lengths;
}

class CutFilesPass : public WholePassFixture {
 protected:
  /// Runs a pass over a folder in which `cut` has put a cut file; the pass must do what it would do
  /// for `found`.
  void ExpectPass(const std::function<void(const NotebookFolder&)>& cut, const FolderState& found) {
    const NotebookFolder data(FolderBeforeThePass());
    cut(data);
    TestHelper helper(data.Path().c_str());
    RunPass(helper, data);
    DayEnergies memory;
    ASSERT_EQ(Describe(data.State()), Describe(AfterPass(found, memory)));
    ASSERT_TRUE(data.Names(L"unencrypt-*").empty());
  }
};

}  // namespace

TEST_F(CutFilesPass, BooksTheDaysThatStillHaveSamplesWhenTheLedgerIsCut) {
  const std::string whole = LedgerText(*FolderBeforeThePass().ledger);
  FolderState found = FolderBeforeThePass();
  found.ledger.reset();
  for (const std::size_t length : Lengths(whole.size())) {
    SCOPED_TRACE(length);
    ExpectPass(
        [&](const NotebookFolder& data) {
          WriteWholeFile(data.LedgerPath(), whole.substr(0, length));
        },
        found);
    if (HasFailure()) return;
  }
  std::printf("figures: whole passes with a cut ledger: %zu\n", Lengths(whole.size()).size());
}

TEST_F(CutFilesPass, StoresTheReportedRowsAndBooksAllDaysWhenTheStoreIsCut) {
  const std::string whole = StoreText(*FolderBeforeThePass().store);
  FolderState found = FolderBeforeThePass();
  found.store.reset();
  for (const std::size_t length : Lengths(whole.size())) {
    SCOPED_TRACE(length);
    ExpectPass(
        [&](const NotebookFolder& data) {
          WriteWholeFile(data.StorePath(), whole.substr(0, length));
        },
        found);
    if (HasFailure()) return;
  }
  std::printf("figures: whole passes with a cut store: %zu\n", Lengths(whole.size()).size());
}

// The collector may be writing while a pass reads. The day is tried again at the next pass, as long
// as its file is there.
TEST_F(CutFilesPass, KeepsACutSampleFileAndBooksTheDayWhenItIsWhole) {
  constexpr int kCutDay = 5;
  const std::string whole = Base64(Utf16(SamplesOfDay(kCutDay)));
  FolderState without = FolderBeforeThePass();
  without.samples.erase(kCutDay);
  for (const std::size_t length : Lengths(whole.size() - 16)) {
    SCOPED_TRACE(length);
    const std::string part = whole.substr(0, length);
    const NotebookFolder data(FolderBeforeThePass());
    WriteWholeFile(data.SamplePath(kCutDay), part);
    TestHelper helper(data.Path().c_str());
    RunPass(helper, data);
    ASSERT_EQ(ReadWholeFile(data.SamplePath(kCutDay)), part);
    ASSERT_TRUE(data.Names(L"unencrypt-*").empty());
    WriteWholeFile(data.SamplePath(kCutDay), whole);

    DayEnergies memory;
    FolderState expected = AfterPass(without, memory);
    ASSERT_EQ(expected.ledger->at(kCutDay), 0.0F);
    expected.samples.insert(kCutDay);
    ASSERT_EQ(Describe(data.State()), Describe(expected));

    RunPass(helper, data);
    expected = AfterPass(expected, memory);
    ASSERT_NE(expected.ledger->at(kCutDay), 0.0F);
    ASSERT_EQ(Describe(data.State()), Describe(expected));
  }
  std::printf("figures: whole passes with cut samples: %zu, and as many with whole ones\n",
              Lengths(whole.size() - 16).size());
}

// With data protection, which a cut file does not pass. The collector's text ends in a line end and
// perhaps in padding, which the system's decoder may do without.
TEST(CutSampleFile, IsADayWithoutSamplesOrAWholeOneAtEachLength) {
  const TempFolder folder;
  const LogCapture log;
  const std::string date = kToday;
  const std::string whole = Encrypted(Utf16(
      List({Sample(date + "T09:00:00"), Sample(date + "T10:00:00"), Sample(date + "T10:05:00")})));
  constexpr std::size_t kPaddingAndLineEnd = 4;
  const std::wstring path = folder.File(L"PcmSampleData_2024-05-08.json");
  const std::size_t step = AreAllMomentsWanted() ? 1 : 29;
  TestHelper helper(folder.Path().c_str());
  int empty = 0;
  int complete = 0;
  for (std::size_t length = 0; length <= whole.size();
       length += length < whole.size() - 40 ? step : 1) {
    const std::string part = whole.substr(0, length);
    WriteWholeFile(path, part);
    const float energyWh = helper.CalculateDailyPowerConsumption(Day(date));
    ASSERT_TRUE(energyWh == 0.0F || energyWh == kThreeWh) << length;
    if (length + kPaddingAndLineEnd < whole.size()) {
      ASSERT_EQ(energyWh, 0.0F) << length;
    }
    ++(energyWh == 0.0F ? empty : complete);
    ASSERT_EQ(ReadWholeFile(path), part);
    ASSERT_FALSE(FileExists(folder.File(L"unencrypt-PcmSampleData_2024-05-08.json")));
  }
  EXPECT_GE(complete, 1);
  std::printf("figures: encrypted samples cut at %d lengths: %d without samples, %d whole\n",
              empty + complete, empty, complete);
}
