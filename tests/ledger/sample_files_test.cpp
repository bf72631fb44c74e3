#include "ledger/sample_files.h"

#include <gtest/gtest.h>

#include "base/date_time_text.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace std::string_literals;

TEST(SamplePaths, ContainTheDate) {
  const DateTime day = TestSupport::LocalTime(2024, 3, 1);
  EXPECT_EQ(EncryptedSamplePath(L"C:\\Data", day), L"C:\\Data\\PcmSampleData_2024-03-01.json");
  EXPECT_EQ(PlainSamplePath(L"C:\\Data", day),
            L"C:\\Data\\unencrypt-PcmSampleData_2024-03-01.json");
}

TEST(PlainCopyPath, PrefixesTheFileName) {
  EXPECT_EQ(PlainCopyPath(L"C:\\Data\\a.json"), L"C:\\Data\\unencrypt-a.json");
  EXPECT_EQ(PlainCopyPath(L"C:\\Data/a.json"), L"C:\\Data/unencrypt-a.json");
  EXPECT_EQ(PlainCopyPath(L"C:/Da\\ta/"), L"C:/Da\\ta/unencrypt-");
  EXPECT_EQ(PlainCopyPath(L"a.json"), L"");
  EXPECT_EQ(PlainCopyPath(L""), L"");
}

TEST(PlainCopyPath, AgreesWithPlainSamplePath) {
  const DateTime day = TestSupport::LocalTime(2024, 3, 1);
  EXPECT_EQ(PlainCopyPath(EncryptedSamplePath(L"C:\\Data", day)),
            PlainSamplePath(L"C:\\Data", day));
}

TEST(PlainCopyContent, IsAsLongAsTheBlob) {
  EXPECT_EQ(PlainCopyContent("[\0]\0"s), "[]\0\0"s);
  EXPECT_EQ(PlainCopyContent(""), "");
}

TEST(PlainCopyContent, KeepsTheLowByteOfEachCharacter) {
  // U+4E41 is the bytes 41 4E, U+00E4 is E4 00.
  EXPECT_EQ(PlainCopyContent("\x41\x4E\xE4\x00"s), "\x41\xE4\0\0"s);
}

TEST(PlainCopyContent, KeepsATrailingOddByte) {
  EXPECT_EQ(PlainCopyContent("a\0b\0c"s), "abc\0\0"s);
  EXPECT_EQ(PlainCopyContent("a"), "a");
}

TEST(PlainCopyContent, IsTheSameInUsedMemory) {
  for (const std::size_t length : {0U, 1U, 3U, 6U, 7U, 9U}) {
    EXPECT_EQ(PlainCopyContent("a\0b\0c\0d"s, std::string(length, 'x')), "abcd\0\0\0"s) << length;
  }
  EXPECT_EQ(PlainCopyContent("", "xxx"), "");
}
