#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/automation_ledger.h"
#include "platform/platform_calls.h"
#include "platform/win32/com_owners.h"
#include "platform/wmi/public_wmi.h"
#include "support/log_capture.h"
#include "variants.h"

using namespace Zq::Gantry::Server::Shared::WMI;
using namespace Standin::Firmware;
using TestSupport::AutomationLedger;
using TestSupport::LogRecord;
using TestSupport::Result;
using Zq::Gantry::Platform::ScopedVariant;
using Zq::Gantry::Platform::UniqueBstr;

namespace {

LogRecord ArrayWarning(const std::wstring& call, const std::wstring& result) {
  return TestSupport::Warning(
      L"class Zq::Gantry::Server::Shared::WMI::PublicWmi.GetSafeArrayData - failed on function " +
      call + L" with HRESULT " + result);
}

class GetSafeArrayData : public testing::Test {
 protected:
  GetSafeArrayData() { target.SetArray(); }
  void TearDown() override {
    owner_.reset();
    EXPECT_EQ(ledger.Outstanding(), 0U);
    EXPECT_EQ(ledger.unaccessCalls, ledger.accessResult == S_OK ? ledger.accessCalls : 0);
  }

  bool Read() { return PublicWmi().GetSafeArrayData(source, target, document); }

  TestSupport::LogCapture log;
  AutomationLedger ledger;

 private:
  std::optional<ScopedVariant> owner_{std::in_place};

 protected:
  VARIANT& source = *owner_->get();
  WideDocument document;
  WideValue target;
};

}  // namespace

TEST_F(GetSafeArrayData, CopiesStringsAndReadsNullAsEmpty) {
  MakeTexts(&source, {L"one", L"two", L"three"});
  auto* texts = static_cast<BSTR*>(source.parray->pvData);
  UniqueBstr(std::exchange(texts[1], nullptr)).reset();
  EXPECT_TRUE(Read());
  ASSERT_EQ(target.Size(), 3U);
  EXPECT_STREQ(target[0].GetString(), L"one");
  EXPECT_STREQ(target[1].GetString(), L"");
  EXPECT_STREQ(target[2].GetString(), L"three");
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(GetSafeArrayData, ReadsSignedNumbers) {
  MakeElements<LONG>(&source, VT_I4, 0, {-1, 0, 2147483647});
  EXPECT_TRUE(Read());
  ASSERT_EQ(target.Size(), 3U);
  EXPECT_EQ(target[0].GetInt(), -1);
  EXPECT_EQ(target[2].GetInt(), 2147483647);
}

TEST_F(GetSafeArrayData, ReadsBooleans) {
  MakeElements<VARIANT_BOOL>(&source, VT_BOOL, 0, {VARIANT_TRUE, VARIANT_FALSE, 1});
  EXPECT_TRUE(Read());
  ASSERT_EQ(target.Size(), 3U);
  EXPECT_TRUE(target[0].IsTrue());
  EXPECT_TRUE(target[1].IsFalse());
  EXPECT_TRUE(target[2].IsTrue());
}

TEST_F(GetSafeArrayData, MakesNoCallForUnsupportedTypes) {
  MakeElements<std::uint8_t>(&source, VT_UI1, 0, {1, 2});
  EXPECT_FALSE(Read());
  EXPECT_EQ(ledger.accessCalls, 0);
  EXPECT_EQ(target.Size(), 0U);
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(GetSafeArrayData, FailsSilentlyForAnEmptyArrayAndUnaccessesIt) {
  MakeTexts(&source, {});
  EXPECT_FALSE(Read());
  EXPECT_EQ(ledger.accessCalls, 1);
  EXPECT_EQ(ledger.unaccessCalls, 1);
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(GetSafeArrayData, SucceedsWithoutElementsForANegativeCount) {
  MakeElements<LONG>(&source, VT_I4, 0, {1, 2});
  source.parray->rgsabound[0].cElements = 0x80000000UL;
  EXPECT_TRUE(Read());
  EXPECT_EQ(ledger.getElementCalls, 0);
  EXPECT_EQ(target.Size(), 0U);
  source.parray->rgsabound[0].cElements = 2;
}

TEST_F(GetSafeArrayData, LogsTheSameTextForANullArrayOfAnyType) {
  source.vt = VT_ARRAY | VT_BSTR;
  source.parray = nullptr;
  ledger.accessResult = E_INVALIDARG;
  EXPECT_FALSE(Read());
  EXPECT_EQ(log.Records(), std::vector<LogRecord>{ArrayWarning(
                               L"SafeArrayAccessData(VT_ARRAY | VT_UI1)", L"0x80070057")});
}

TEST_F(GetSafeArrayData, LogsAFailedUnaccessAndKeepsTheElements) {
  MakeElements<LONG>(&source, VT_I4, 0, {5});
  ledger.unaccessResult = Result(0x8000FFFF);
  EXPECT_TRUE(Read());
  EXPECT_EQ(target.Size(), 1U);
  EXPECT_EQ(log.Records(),
            std::vector<LogRecord>{ArrayWarning(L"SafeArrayUnaccessData", L"0x8000ffff")});
}

TEST_F(GetSafeArrayData, StopsAtTheFirstFailingElementAndKeepsEarlierOnes) {
  MakeTexts(&source, {L"a", L"b", L"c", L"d"});
  ledger.getElementResult = Result(0x8007000E);
  ledger.refusedIndex = 2;
  EXPECT_FALSE(Read());
  EXPECT_EQ(ledger.getElementCalls, 3);
  EXPECT_EQ(target.Size(), 2U);
  EXPECT_EQ(log.Records(),
            std::vector<LogRecord>{ArrayWarning(L"SafeArrayGetElement", L"0x8007000e")});
}

TEST_F(GetSafeArrayData, FailsAtIndexZeroForALowerBoundOfOne) {
  MakeElements<LONG>(&source, VT_I4, 1, {1, 2});
  EXPECT_FALSE(Read());
  EXPECT_EQ(target.Size(), 0U);
  EXPECT_EQ(log.Records(),
            std::vector<LogRecord>{ArrayWarning(L"SafeArrayGetElement", L"0x8002000b")});
}

TEST_F(GetSafeArrayData, ReadsFromIndexZeroForANegativeLowerBound) {
  MakeElements<LONG>(&source, VT_I4, -1, {1, 2});
  EXPECT_FALSE(Read());
  ASSERT_EQ(target.Size(), 1U);
  EXPECT_EQ(target[0].GetInt(), 2);
  EXPECT_EQ(log.Records(),
            std::vector<LogRecord>{ArrayWarning(L"SafeArrayGetElement", L"0x8002000b")});
}

TEST_F(GetSafeArrayData, RejectsAnArrayWhoseTypeDiffersFromItsVariant) {
  // Elements of 8 bytes, the size of a pointer: only the array's type shows that they are not
  // strings.
  MakeElements<LONGLONG>(&source, VT_I8, 0, {0x4141414141414141, 1});
  source.vt = VT_ARRAY | VT_BSTR;
  EXPECT_FALSE(Read());
  EXPECT_EQ(ledger.getElementCalls, 0);
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(GetSafeArrayData, RejectsATwoDimensionalArray) {
  SAFEARRAYBOUND bounds[] = {{2, 0}, {3, 0}};
  source.vt = VT_ARRAY | VT_I4;
  source.parray = SafeArrayCreate(VT_I4, 2, bounds);
  EXPECT_FALSE(Read());
  EXPECT_EQ(ledger.getElementCalls, 0);
}

TEST_F(GetSafeArrayData, RejectsElementsOfAnotherSize) {
  MakeElements<LONG>(&source, VT_I4, 0, {1, 2});
  source.parray->cbElements = 8;
  EXPECT_FALSE(Read());
  EXPECT_EQ(ledger.getElementCalls, 0);
  source.parray->cbElements = 4;
}
