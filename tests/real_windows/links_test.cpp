// What happens at a link in the place of each file, with links that the system makes. Elsewhere the
// calls that read a file's attributes are faked.

#include <windows.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "base/json_document.h"
#include "base/plain_file.h"
#include "catalogue/icon_export.h"
#include "catalogue/package_logo.h"
#include "catalogue/png_file.h"
#include "catalogue/sample_program.h"
#include "collection/report_conversion_fixture.h"
#include "files/data_copy.h"
#include "files/private_folder.h"
#include "ledger/fake_days.h"
#include "ledger/sample_folder.h"
#include "ledger/sample_reader.h"
#include "real_windows/real_links.h"
#include "support/real_windows.h"

using namespace TestSupport;
using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

/// Skips where the system cannot make the links.
template <typename Fixture>
class WithRealLinks : public Fixture {
 protected:
  void SetUp() override {
    if (IsWine()) GTEST_SKIP() << "Wine makes no links and shows no reparse point on a file";
    if (!MayMakeSymbolicLinks()) GTEST_SKIP() << "this user may not make symbolic links";
  }
};

/// A folder with a file and a folder that links lead to.
class LinkedPlace : public testing::Test {
 protected:
  LinkedPlace() {
    WriteWholeFile(witness, "untouched");
    EXPECT_TRUE(CreateDirectoryW(target.c_str(), nullptr));
    WriteWholeFile(target + L"\\inside.txt", "untouched");
  }

  /// Makes a link of each kind that can have the name of a file, and returns their paths.
  std::vector<std::wstring> MakeEachLink() const {
    std::vector<std::wstring> links;
    for (const wchar_t* name : {L"file", L"dangling", L"folder", L"junction", L"vendor"}) {
      links.push_back(folder.File(name));
    }
    MakeFileLink(links[0], witness);
    MakeFileLink(links[1], folder.File(L"missing"));
    MakeFolderLink(links[2], target);
    MakeJunction(links[3], target);
    WriteWholeFile(links[4], "text");
    MakeVendorPoint(links[4], kVendorLinkTag);
    return links;
  }

  void ExpectTargetsUntouched() const {
    EXPECT_EQ(ReadWholeFile(witness), "untouched");
    EXPECT_EQ(ReadWholeFile(target + L"\\inside.txt"), "untouched");
  }

  const TempFolder folder;
  const TempFolder elsewhere;
  const std::wstring witness = elsewhere.File(L"witness.txt");
  const std::wstring target = elsewhere.File(L"target");
};

/// Two sample files and their plain copies are links: one to a file, one to a folder.
class LinkedSamples : public testing::Test {
 protected:
  LinkedSamples() { WriteWholeFile(witness, "untouched"); }

  bool HasSamples() const {
    return UseSamplesOfDay(
        samples.folder.Path(), samples.day,
        [](const std::wstring&) { ADD_FAILURE() << "decrypted"; },
        [](const std::wstring&) { ADD_FAILURE() << "used"; });
  }

  const SampleFolder samples;
  const TempFolder elsewhere;
  const std::wstring witness = elsewhere.File(L"witness.txt");
};

bool IsReparsePoint(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

using FilesOnWindows = WithRealLinks<LinkedPlace>;
using SamplesOnWindows = WithRealLinks<LinkedSamples>;
using DailyPassOnWindows = WithRealLinks<DailyPassFixture>;
using ReportConversionOnWindows = WithRealLinks<ReportConversionFixture>;

}  // namespace

TEST_F(FilesOnWindows, NoLinkOfAnyKindIsAPlainFile) {
  for (const std::wstring& link : MakeEachLink()) {
    EXPECT_TRUE(IsReparsePoint(link)) << Narrow(link);
    EXPECT_FALSE(IsPlainFile(link)) << Narrow(link);
    EXPECT_FALSE(IsKnownPlainFile(link)) << Narrow(link);
    EXPECT_EQ(TryIsPlainFile(link), false) << Narrow(link);
  }
}

TEST_F(FilesOnWindows, AReparsePointThatIsNoLinkIsAPlainFile) {
  const std::wstring path = folder.File(L"content");
  WriteWholeFile(path, "text");
  MakeVendorPoint(path, kVendorContentTag);
  EXPECT_TRUE(IsPlainFile(path));
  EXPECT_EQ(TryIsPlainFile(path), true);
}

TEST_F(FilesOnWindows, AFileBelowAJunctionIsAPlainFile) {
  MakeJunction(folder.File(L"junction"), target);
  EXPECT_TRUE(IsPlainFile(folder.File(L"junction\\inside.txt")));
}

TEST_F(FilesOnWindows, ALinkCountsAsAFolderWhenFoldersAreMade) {
  for (const std::wstring& link : MakeEachLink()) {
    EXPECT_TRUE(CreateDirectoryTree(link)) << Narrow(link);
  }
  EXPECT_TRUE(CreateDirectoryTree(folder.File(L"junction\\made\\below")));
  EXPECT_TRUE(FileExists(target + L"\\made\\below"));
  EXPECT_FALSE(CreateDirectoryTree(folder.File(L"file\\below")));
  ExpectTargetsUntouched();
}

TEST_F(FilesOnWindows, NoDocumentIsWrittenThroughALink) {
  GenericDocument document;
  document.SetArray();
  for (const std::wstring& link : MakeEachLink()) {
    EXPECT_FALSE(SaveJsonDocument(link, document)) << Narrow(link);
    EXPECT_TRUE(IsReparsePoint(link)) << Narrow(link);
  }
  EXPECT_FALSE(FileExists(folder.File(L"missing")));
  ExpectTargetsUntouched();
}

TEST_F(FilesOnWindows, APrivateCopyLeavesOutLinks) {
  MakeFileLink(folder.File(L"PowerConsumption.json"), witness);
  MakeJunction(folder.File(L"Powerlog.json"), target);
  WattleafHost::DataCopy copy(folder.Path());
  EXPECT_FALSE(copy.Add(L"PowerConsumption.json"));
  EXPECT_FALSE(copy.Add(L"Powerlog.json"));
  ASSERT_EQ(copy.LeftOut().size(), 2U);
  EXPECT_EQ(copy.LeftOut()[0].reason, WattleafHost::LeftOutReason::kLink);
  EXPECT_EQ(copy.LeftOut()[1].reason, WattleafHost::LeftOutReason::kLink);
}

TEST_F(FilesOnWindows, AFolderIsRemovedWithItsLinksButNotWithTheirTargets) {
  const std::wstring removed = folder.File(L"removed");
  ASSERT_TRUE(CreateDirectoryW(removed.c_str(), nullptr));
  MakeFileLink(removed + L"\\file", witness);
  MakeFolderLink(removed + L"\\folder", target);
  MakeJunction(removed + L"\\junction", target);
  WattleafHost::RemoveFolderTree(removed);
  EXPECT_FALSE(FileExists(removed));
  ExpectTargetsUntouched();
}

TEST_F(FilesOnWindows, AnIconIsWrittenThroughALinkAtItsPath) {
  const std::wstring link = folder.File(L"a.png");
  MakeFileLink(link, witness);
  ASSERT_TRUE(SaveIconAsPng(SampleIcon().get(), link));
  EXPECT_TRUE(IsReparsePoint(link));
  EXPECT_EQ(ReadPng(witness).width, 32U);
}

TEST_F(FilesOnWindows, ALogoIsCopiedThroughALinkAtItsPath) {
  const std::wstring link = folder.File(L"a.png");
  MakeFileLink(link, witness);
  WriteWholeFile(folder.File(L"logo.png"), "logo");
  EXPECT_TRUE(SystemIconMaker("").CopyLogo(Narrow(folder.File(L"logo.png")), Narrow(link)));
  EXPECT_TRUE(IsReparsePoint(link));
  EXPECT_EQ(ReadWholeFile(witness), "logo");
}

TEST_F(FilesOnWindows, ALogoIsFoundInALinkedFolder) {
  WriteWholeFile(target + L"\\Logo.scale-100.png", "logo");
  MakeJunction(folder.File(L"Assets"), target);
  EXPECT_EQ(FindLogoVariant(folder.Path(), L"Assets\\Logo.png"),
            folder.File(L"Assets\\Logo.scale-100.png"));
}

TEST_F(FilesOnWindows, ALinkedLogoIsFound) {
  ASSERT_TRUE(CreateDirectoryW(folder.File(L"Assets").c_str(), nullptr));
  MakeFileLink(folder.File(L"Assets\\Logo.scale-100.png"), witness);
  EXPECT_EQ(FindLogoVariant(folder.Path(), L"Assets\\Logo.png"),
            folder.File(L"Assets\\Logo.scale-100.png"));
}

TEST_F(SamplesOnWindows, AnEncryptedFileThatIsALinkIsMissing) {
  MakeFileLink(samples.encrypted, witness);
  EXPECT_FALSE(HasSamples());
  EXPECT_TRUE(IsReparsePoint(samples.encrypted));
  EXPECT_EQ(ReadWholeFile(witness), "untouched");
}

TEST_F(SamplesOnWindows, APlainCopyThatIsALinkIsNeitherUsedNorDeleted) {
  MakeFileLink(samples.plain, witness);
  EXPECT_FALSE(HasSamples());
  EXPECT_TRUE(IsReparsePoint(samples.plain));
  EXPECT_EQ(ReadWholeFile(witness), "untouched");
}

TEST_F(SamplesOnWindows, ALeftoverCopyThatIsALinkStays) {
  const std::wstring junction = samples.folder.File(L"unencrypt-PcmSampleData_2024-03-02.json");
  const std::wstring file = samples.folder.File(L"unencrypt-PcmSampleData_2024-03-03.json");
  MakeFileLink(samples.plain, witness);
  MakeJunction(junction, elsewhere.Path());
  WriteWholeFile(file, "[]");
  RemoveLeftoverCopies(samples.folder.Path());
  EXPECT_TRUE(IsReparsePoint(samples.plain));
  EXPECT_TRUE(IsReparsePoint(junction));
  EXPECT_FALSE(FileExists(file));
  EXPECT_EQ(ReadWholeFile(witness), "untouched");
}

TEST_F(DailyPassOnWindows, ALedgerThatIsALinkIsNeitherReadNorWritten) {
  const TempFolder elsewhere;
  const std::wstring witness = elsewhere.File(L"witness.json");
  const std::string content = R"([{"Key":"2024-05-01","Value":12.5}])";
  WriteWholeFile(witness, content);
  MakeFileLink(LedgerPath(), witness);
  Run();
  EXPECT_EQ(Booked("2024-05-01"), 0.0F);
  EXPECT_EQ(Problems(), std::vector<LogRecord>{Error(kSaveFailed)});
  EXPECT_EQ(ReadWholeFile(witness), content);
}

TEST_F(DailyPassOnWindows, ALinkNamedLikeSamplesStaysWhenALeftoverCopyIsBooked) {
  const TempFolder elsewhere;
  const std::wstring witness = elsewhere.File(L"witness.json");
  WriteWholeFile(witness, "untouched");
  MakeFileLink(SamplePath("2024-05-03"), witness);
  WriteWholeFile(PlainCopy("2024-05-03"),
                 List({Sample("2024-05-03T09:00:00"), Sample("2024-05-03T10:00:00"),
                       Sample("2024-05-03T10:05:00")}));
  Run();
  EXPECT_EQ(Booked("2024-05-03"), kThreeWh);
  EXPECT_TRUE(IsReparsePoint(SamplePath("2024-05-03")));
  EXPECT_EQ(ReadWholeFile(witness), "untouched");
}

TEST_F(ReportConversionOnWindows, AReportThatIsALinkIsNeitherReadNorDeleted) {
  const TempFolder elsewhere;
  const std::wstring witness = elsewhere.File(L"witness.xml");
  WriteWholeFile(witness, kReport);
  MakeFileLink(reportPath, witness);
  WriteStore(Array(kOldRow));
  Convert();
  EXPECT_EQ(StoreText(), Array(kOldRow));
  EXPECT_TRUE(IsReparsePoint(reportPath));
  EXPECT_EQ(ReadWholeFile(witness), kReport);
}

TEST_F(ReportConversionOnWindows, AStoreThatIsALinkIsNeitherReadNorWritten) {
  const TempFolder elsewhere;
  const std::wstring witness = elsewhere.File(L"witness.json");
  WriteWholeFile(witness, Array(kOldRow));
  MakeFileLink(storePath, witness);
  WriteReport(kReport);
  Convert();
  EXPECT_TRUE(IsReparsePoint(storePath));
  EXPECT_EQ(ReadWholeFile(witness), Array(kOldRow));
}
