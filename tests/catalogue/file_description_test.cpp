#include "catalogue/file_description.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "catalogue/sample_program.h"
#include "support/temp_folder.h"

using TestSupport::Narrow;
using TestSupport::SampleProgram;
using Zq::Gantry::Server::Services::Wattleaf::GetFileDescription;

// Against real version resources.
namespace {

/// The text as the resource stores it.
std::string AsStored(const std::string& ascii) {
  std::string bytes;
  for (const char c : ascii) bytes += {c, '\0'};
  return bytes;
}

}  // namespace

TEST(GetFileDescription, IsWhatTheOnlyTranslationSays) {
  EXPECT_EQ(GetFileDescription(SampleProgram("one.exe")), "Brook Browser");
}

TEST(GetFileDescription, IsThatOfTheFirstTranslationThatHasOne) {
  EXPECT_EQ(GetFileDescription(SampleProgram("several.exe")), "Third of the list");
}

TEST(GetFileDescription, WithoutAListOfTranslationsIsEmpty) {
  EXPECT_EQ(GetFileDescription(SampleProgram("unlisted.exe")), "");
}

TEST(GetFileDescription, WithoutAVersionResourceIsEmpty) {
  EXPECT_EQ(GetFileDescription(SampleProgram("bare.exe")), "");
}

TEST(GetFileDescription, OutsideAsciiStandsInTheSystemsCodePage) {
  if (GetACP() != 1252) GTEST_SKIP() << "the expected bytes are those of code page 1252";
  EXPECT_EQ(GetFileDescription(SampleProgram("western.exe")), "Gr\xFCne Wiese");
}

TEST(GetFileDescription, OfWhatIsNoProgramIsEmpty) {
  const TestSupport::TempFolder folder;
  TestSupport::WriteWholeFile(folder.File(L"a.exe"), "MZ and nothing behind it");
  const std::string path = Narrow(folder.File(L"a.exe"));
  EXPECT_EQ(GetFileDescription(path), "");
  EXPECT_EQ(GetFileDescription(path + ".missing"), "");
  EXPECT_EQ(GetFileDescription("C:\\Windows"), "");
  EXPECT_EQ(GetFileDescription("\\Device\\HarddiskVolume5\\a.exe"), "");
  EXPECT_EQ(GetFileDescription(""), "");
  EXPECT_EQ(GetFileDescription(std::string(32'766, 'p')), "");
}

TEST(GetFileDescription, OfADamagedResourceIsNeverLongerThanTheResource) {
  std::string program;
  {
    std::ifstream file(SampleProgram("one.exe"), std::ios::binary);
    program.assign(std::istreambuf_iterator<char>(file), {});
  }
  // Before the key of the block stand its length, that of its value, and its type.
  const std::size_t block = program.find(AsStored("VS_VERSION_INFO")) - 6;
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
