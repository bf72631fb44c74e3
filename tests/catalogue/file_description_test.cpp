#include "catalogue/file_description.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "base/text_builders.h"
#include "catalogue/sample_program.h"
#include "support/temp_folder.h"

using TestSupport::Narrow;
using TestSupport::SampleProgram;
using TestSupport::Utf16;
using Zq::Gantry::Server::Services::Wattleaf::GetFileDescription;

// Reads real version resources.

TEST(GetFileDescription, ReturnsTheDescriptionOfTheOnlyTranslation) {
  EXPECT_EQ(GetFileDescription(SampleProgram("one.exe")), "Brook Browser");
}

TEST(GetFileDescription, ReturnsTheFirstDescriptionInTheListsOrder) {
  EXPECT_EQ(GetFileDescription(SampleProgram("several.exe")), "Third of the list");
}

TEST(GetFileDescription, IsEmptyWithoutAListOfTranslations) {
  EXPECT_EQ(GetFileDescription(SampleProgram("unlisted.exe")), "");
}

TEST(GetFileDescription, IsEmptyWithoutAVersionResource) {
  EXPECT_EQ(GetFileDescription(SampleProgram("bare.exe")), "");
}

TEST(GetFileDescription, ReturnsTextOutsideAsciiInTheSystemsCodePage) {
  if (GetACP() != 1252) GTEST_SKIP() << "the expected bytes are those of code page 1252";
  EXPECT_EQ(GetFileDescription(SampleProgram("western.exe")), "Gr\xFCne Wiese");
}

TEST(GetFileDescription, IsEmptyForAFileThatIsNotAProgram) {
  const TestSupport::TempFolder folder;
  TestSupport::WriteWholeFile(folder.File(L"a.exe"), "MZ and no header");
  const std::string path = Narrow(folder.File(L"a.exe"));
  EXPECT_EQ(GetFileDescription(path), "");
  EXPECT_EQ(GetFileDescription(path + ".missing"), "");
  EXPECT_EQ(GetFileDescription("C:\\Windows"), "");
  EXPECT_EQ(GetFileDescription("\\Device\\HarddiskVolume5\\a.exe"), "");
  EXPECT_EQ(GetFileDescription(""), "");
  EXPECT_EQ(GetFileDescription(std::string(32'766, 'p')), "");
}

TEST(GetFileDescription, IsNeverLongerThanADamagedResource) {
  std::string program;
  {
    std::ifstream file(SampleProgram("one.exe"), std::ios::binary);
    program.assign(std::istreambuf_iterator<char>(file), {});
  }
  // The key of the block follows its length, the length of its value and its type, two bytes each.
  const std::size_t block = program.find(Utf16("VS_VERSION_INFO")) - 6;
  const std::size_t length = static_cast<unsigned char>(program.at(block)) +
                             256u * static_cast<unsigned char>(program.at(block + 1));
  ASSERT_GT(length, 200u);
  const TestSupport::TempFolder folder;
  for (std::size_t at = 0; at < length; ++at) {
    std::string damaged = program;
    damaged.at(block + at) = '\xFF';
    TestSupport::WriteWholeFile(folder.File(L"a.exe"), damaged);
    EXPECT_LE(GetFileDescription(Narrow(folder.File(L"a.exe"))).size(), length) << at;
  }
}
