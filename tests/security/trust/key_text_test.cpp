#include "security/trust/zq_authenticode_helper.h"

#include <gtest/gtest.h>

#include <stdexcept>

using Helper = Zq::Gantry::Security::ZQAuthenticodeHelper;

namespace {

constexpr const char* kBlanks = " \f\n\r\t\v";

}  // namespace

TEST(BytesToHexText, WritesEachByteAsTwoLowerCaseDigitsAndABlank) {
  const std::uint8_t bytes[] = {0x00, 0x09, 0x0a, 0x30, 0x82, 0xff};
  EXPECT_EQ(Helper::BytesToHexText(bytes, 6), "00 09 0a 30 82 ff ");
}

TEST(BytesToHexText, IsEmptyForNullAndForNoBytes) {
  const std::uint8_t byte = 1;
  EXPECT_EQ(Helper::BytesToHexText(nullptr, 4), "");
  EXPECT_EQ(Helper::BytesToHexText(&byte, 0), "");
}

TEST(BytesToHexText, HasTheFormOfTheKeyListsAfterTrimText) {
  const std::uint8_t bytes[] = {0x30, 0x82, 0x01, 0x0a};
  EXPECT_EQ(Helper::TrimText(Helper::BytesToHexText(bytes, 4), kBlanks), "30 82 01 0a");
}

TEST(TrimText, RemovesTheGivenCharactersAtBothEndsOnly) {
  EXPECT_EQ(Helper::TrimText("\t\v 30 82 \f\r\n", kBlanks), "30 82");
  EXPECT_EQ(Helper::TrimText("30 82", kBlanks), "30 82");
  EXPECT_EQ(Helper::TrimText("xxaxbxx", "x"), "axb");
  EXPECT_EQ(Helper::TrimText(" a ", "x"), " a ");
}

TEST(TrimText, KeepsASingleCharacter) {
  EXPECT_EQ(Helper::TrimText(" a", " "), "a");
  EXPECT_EQ(Helper::TrimText("a", " "), "a");
}

TEST(TrimText, ThrowsOutOfRangeForAnEmptyText) {
  EXPECT_THROW(static_cast<void>(Helper::TrimText("", kBlanks)), std::out_of_range);
}

TEST(TrimText, ThrowsOutOfRangeWhenNothingRemains) {
  EXPECT_THROW(static_cast<void>(Helper::TrimText(" \t\r\n", kBlanks)), std::out_of_range);
}
