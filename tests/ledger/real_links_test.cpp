// The build creates real symbolic links to a folder. No attribute call is faked here.

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "base/json_document.h"
#include "base/plain_file.h"
#include "ledger/fake_days.h"
#include "ledger/sample_files.h"
#include "ledger/sample_reader.h"
#include "support/temp_folder.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

const std::wstring kFolder = WATTLEAF_LINKED_FOLDER;
const std::wstring kWitness = kFolder + L"\\target\\witness.txt";

bool HasSamples(const DateTime& day) {
  return UseSamplesOfDay(
      kFolder, day, [](const std::wstring&) { ADD_FAILURE() << "decrypted"; },
      [](const std::wstring&) { ADD_FAILURE() << "used"; });
}

void ExpectLink(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  ASSERT_NE(attributes, INVALID_FILE_ATTRIBUTES);
  EXPECT_NE(attributes & FILE_ATTRIBUTE_REPARSE_POINT, 0U) << "not a link";
}

/// Not so where the program runs without the build folder, as from the zip of tests.
bool HasLinksOfTheBuild() { return FileExists(kWitness); }

}  // namespace

TEST(IsPlainFile, IsFalseForARealLinkToAFolder) {
  if (!HasLinksOfTheBuild()) GTEST_SKIP() << "the links of the build are not here";
  const std::wstring link = kFolder + L"\\link";
  ExpectLink(link);
  EXPECT_FALSE(IsPlainFile(link));
}

TEST(CreateDirectoryTree, SucceedsForARealLinkToAFolder) {
  if (!HasLinksOfTheBuild()) GTEST_SKIP() << "the links of the build are not here";
  EXPECT_TRUE(CreateDirectoryTree(kFolder + L"\\link"));
}

TEST(UseSamplesOfDay, TreatsARealLinkAsAMissingEncryptedFile) {
  if (!HasLinksOfTheBuild()) GTEST_SKIP() << "the links of the build are not here";
  const DateTime day = Day("2026-01-05");
  ExpectLink(EncryptedSamplePath(kFolder, day));
  EXPECT_FALSE(HasSamples(day));
  ExpectLink(EncryptedSamplePath(kFolder, day));
}

TEST(UseSamplesOfDay, NeitherUsesNorDeletesACopyThatIsARealLink) {
  if (!HasLinksOfTheBuild()) GTEST_SKIP() << "the links of the build are not here";
  const DateTime day = Day("2026-01-06");
  ExpectLink(PlainSamplePath(kFolder, day));
  EXPECT_FALSE(HasSamples(day));
  ExpectLink(PlainSamplePath(kFolder, day));
  EXPECT_TRUE(FileExists(kWitness));
}

TEST(SaveJsonDocument, DoesNotWriteThroughARealLink) {
  if (!HasLinksOfTheBuild()) GTEST_SKIP() << "the links of the build are not here";
  GenericDocument document;
  document.Parse("[]");
  EXPECT_FALSE(SaveJsonDocument(kFolder + L"\\link", document));
  ExpectLink(kFolder + L"\\link");
  EXPECT_EQ(ReadWholeFile(kWitness), "untouched");
}
