#include "support/runtime_text_ledger.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <winstring.h>

using TestSupport::RuntimeTextLedger;

// Each of these functions makes one mistake that the ledger must report as a failure.
namespace {

HSTRING MakeString() {
  HSTRING text = nullptr;
  EXPECT_EQ(WindowsCreateString(L"text", 4, &text), S_OK);
  return text;
}

void DeleteAStringTwice() {
  const RuntimeTextLedger ledger;
  const HSTRING text = MakeString();
  WindowsDeleteString(text);
  WindowsDeleteString(text);
}

void ReadADeletedString() {
  const RuntimeTextLedger ledger;
  const HSTRING text = MakeString();
  WindowsDeleteString(text);
  static_cast<void>(WindowsGetStringRawBuffer(text, nullptr));
}

void LeakAReference() {
  const RuntimeTextLedger ledger;
  const HSTRING text = MakeString();
  HSTRING copy = nullptr;
  WindowsDuplicateString(text, &copy);
  WindowsDeleteString(text);
}

}  // namespace

TEST(RuntimeTextLedger, FailsTheTestWhenAStringIsDeletedTwice) {
  EXPECT_NONFATAL_FAILURE(DeleteAStringTwice(),
                          "WindowsDeleteString of a string without references");
}

TEST(RuntimeTextLedger, FailsTheTestWhenADeletedStringIsRead) {
  EXPECT_NONFATAL_FAILURE(ReadADeletedString(), "WindowsGetStringRawBuffer of a string");
}

TEST(RuntimeTextLedger, FailsTheTestWhenAReferenceIsNeverDeleted) {
  EXPECT_NONFATAL_FAILURE(LeakAReference(), "references to strings that were never deleted");
}

TEST(RuntimeTextLedger, AcceptsASharedStringDeletedOncePerReference) {
  const RuntimeTextLedger ledger;
  const HSTRING text = MakeString();
  HSTRING copy = nullptr;
  EXPECT_EQ(WindowsDuplicateString(text, &copy), S_OK);
  EXPECT_EQ(ledger.Outstanding(), 2U);
  WindowsDeleteString(text);
  EXPECT_STREQ(WindowsGetStringRawBuffer(copy, nullptr), L"text");
  WindowsDeleteString(copy);
  EXPECT_EQ(ledger.Outstanding(), 0U);
}
