#include "support/runtime_text_ledger.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <winstring.h>

using TestSupport::RuntimeTextLedger;

// The watch itself: each fault of a program under test must fail that test.
namespace {

HSTRING MakeText() {
  HSTRING text = nullptr;
  EXPECT_EQ(WindowsCreateString(L"text", 4, &text), S_OK);
  return text;
}

void DeleteATextTwice() {
  const RuntimeTextLedger ledger;
  const HSTRING text = MakeText();
  WindowsDeleteString(text);
  WindowsDeleteString(text);
}

void ReadATextThatWasDeleted() {
  const RuntimeTextLedger ledger;
  const HSTRING text = MakeText();
  WindowsDeleteString(text);
  static_cast<void>(WindowsGetStringRawBuffer(text, nullptr));
}

void LoseAReference() {
  const RuntimeTextLedger ledger;
  const HSTRING text = MakeText();
  HSTRING copy = nullptr;
  WindowsDuplicateString(text, &copy);
  WindowsDeleteString(text);
}

}  // namespace

TEST(RuntimeTextWatch, FailsForATextThatIsDeletedTwice) {
  EXPECT_NONFATAL_FAILURE(DeleteATextTwice(), "WindowsDeleteString of a text without references");
}

TEST(RuntimeTextWatch, FailsForATextThatIsReadAfterItsEnd) {
  EXPECT_NONFATAL_FAILURE(ReadATextThatWasDeleted(), "WindowsGetStringRawBuffer of a text");
}

TEST(RuntimeTextWatch, FailsForAReferenceThatIsNeverDeleted) {
  EXPECT_NONFATAL_FAILURE(LoseAReference(), "references to texts that were never deleted");
}

TEST(RuntimeTextWatch, AcceptsATextThatIsSharedAndDeletedOnceForEachReference) {
  const RuntimeTextLedger ledger;
  const HSTRING text = MakeText();
  HSTRING copy = nullptr;
  EXPECT_EQ(WindowsDuplicateString(text, &copy), S_OK);
  EXPECT_EQ(ledger.Outstanding(), 2U);
  WindowsDeleteString(text);
  EXPECT_STREQ(WindowsGetStringRawBuffer(copy, nullptr), L"text");
  WindowsDeleteString(copy);
  EXPECT_EQ(ledger.Outstanding(), 0U);
}
