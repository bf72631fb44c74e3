// Links to a folder that the build has made for real; the attribute calls are not fake here.

#include <windows.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "base/date_text.h"
#include "base/json_document.h"
#include "base/plain_file.h"
#include "ledger/sample_files.h"
#include "ledger/sample_reader.h"
#include "support/temp_folder.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

const std::wstring kFolder = WATTLEAF_LINKED_FOLDER;
const std::wstring kWitness = kFolder + L"\\target\\witness.txt";

DateTime Day(const char* date) {
  DateTime day;
  return ParseDateTime(day, date, kDateFormat);
}

std::unique_ptr<GenericDocument> SamplesOf(const DateTime& day) {
  return std::unique_ptr<GenericDocument>(
      ReadSamplesOfDay(kFolder, day, [](const std::wstring&) { ADD_FAILURE() << "decrypted"; }));
}

void ExpectLinkWithAttributes(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  ASSERT_NE(attributes, INVALID_FILE_ATTRIBUTES);
  EXPECT_NE(attributes & FILE_ATTRIBUTE_REPARSE_POINT, 0U) << "the link is gone, or never was one";
}

}  // namespace

TEST(RealLinks, ALinkToAFolderIsNoPlainFile) {
  const std::wstring link = kFolder + L"\\link";
  ExpectLinkWithAttributes(link);
  EXPECT_FALSE(IsPlainFile(link));
}

TEST(RealLinks, ALinkToAFolderCountsAsADirectoryThatIsThere) {
  EXPECT_TRUE(CreateDirectoryTree(kFolder + L"\\link"));
}

TEST(RealLinks, AnEncryptedFileThatIsALinkIsTreatedAsNoFile) {
  const DateTime day = Day("2026-01-05");
  ExpectLinkWithAttributes(EncryptedSamplePath(kFolder, day));
  const auto samples = SamplesOf(day);
  ASSERT_NE(samples, nullptr);
  EXPECT_TRUE(samples->IsArray());
  EXPECT_TRUE(samples->Empty());
  ExpectLinkWithAttributes(EncryptedSamplePath(kFolder, day));
}

TEST(RealLinks, APlainCopyThatIsALinkIsNeitherReadNorDeleted) {
  const DateTime day = Day("2026-01-06");
  ExpectLinkWithAttributes(PlainSamplePath(kFolder, day));
  const auto samples = SamplesOf(day);
  ASSERT_NE(samples, nullptr);
  EXPECT_TRUE(samples->IsArray());
  EXPECT_TRUE(samples->Empty());
  ExpectLinkWithAttributes(PlainSamplePath(kFolder, day));
  EXPECT_TRUE(FileExists(kWitness));
}

TEST(RealLinks, ALedgerPathThatIsALinkIsNotWrittenThrough) {
  GenericDocument document;
  document.Parse("[]");
  EXPECT_FALSE(SaveJsonDocument(kFolder + L"\\link", document));
  ExpectLinkWithAttributes(kFolder + L"\\link");
  EXPECT_EQ(ReadWholeFile(kWitness), "untouched");
}
