#include "catalogue/file_description.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "catalogue/sample_program.h"
#include "support/temp_folder.h"

using TestSupport::SampleProgram;
using Zq::Gantry::Server::Services::Wattleaf::GetFileDescription;

// Against real version resources.

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
  std::string path;
  for (const wchar_t c : folder.File(L"a.exe")) path += static_cast<char>(c);
  EXPECT_EQ(GetFileDescription(path), "");
  EXPECT_EQ(GetFileDescription(path + ".missing"), "");
  EXPECT_EQ(GetFileDescription("C:\\Windows"), "");
  EXPECT_EQ(GetFileDescription("\\Device\\HarddiskVolume5\\a.exe"), "");
  EXPECT_EQ(GetFileDescription(""), "");
  EXPECT_EQ(GetFileDescription(std::string(32'766, 'p')), "");
}
