#include "base/plain_file.h"

#include <windows.h>

#include <filesystem>

#include <gtest/gtest.h>

#include "base/failing_status.h"
#include "base/fake_attributes.h"
#include "base/json_document.h"
#include "import_patch.h"
#include "support/temp_folder.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::FailingStatus;
using TestSupport::FakeReparsePoint;
using TestSupport::TempFolder;

namespace {

struct TagCase {
  const char* label;
  DWORD tag;
  bool isPlain;
};

const TagCase kTags[] = {
    {"symbolic link", 0xA000000C, false},
    {"mount point", 0xA0000003, false},
    {"link of the Linux subsystem", 0xA000001D, false},
    {"name surrogate of a vendor", 0x20001234, false},
    {"link on a network file system", 0x80000014, false},
    {"application execution link", 0x8000001B, false},
    {"no tag", 0, false},
    {"deduplicated content", 0x80000013, true},
    {"content compressed by the system", 0x80000017, true},
    {"content in the cloud", 0x9000001A, true},
};

DWORD WINAPI RefuseAttributes(const wchar_t*) {
  SetLastError(ERROR_ACCESS_DENIED);
  return INVALID_FILE_ATTRIBUTES;
}

}  // namespace

TEST(IsPlainFile, IsTrueForAFile) {
  const TempFolder folder;
  TestSupport::WriteWholeFile(folder.File(L"a.json"), "x");
  EXPECT_TRUE(IsPlainFile(folder.File(L"a.json")));
  TestSupport::WriteWholeFile(folder.File(L"empty.json"), "");
  EXPECT_TRUE(IsPlainFile(folder.File(L"empty.json")));
}

TEST(IsPlainFile, IsFalseForAFolder) {
  const TempFolder folder;
  EXPECT_FALSE(IsPlainFile(folder.Path()));
}

TEST(IsPlainFile, IsFalseForAMissingPath) {
  const TempFolder folder;
  EXPECT_FALSE(IsPlainFile(folder.File(L"missing.json")));
  EXPECT_FALSE(IsPlainFile(folder.File(L"missing") + L"\\a.json"));
  EXPECT_FALSE(IsPlainFile(L""));
}

TEST(IsPlainFile, IsFalseForAWildcard) {
  const TempFolder folder;
  TestSupport::WriteWholeFile(folder.File(L"a.json"), "x");
  EXPECT_FALSE(IsPlainFile(folder.File(L"*.json")));
  EXPECT_FALSE(IsPlainFile(folder.File(L"?.json")));
}

TEST(IsPlainFile, IsFalseForReparsePointsThatMayLeadElsewhere) {
  const TempFolder folder;
  const std::wstring path = folder.File(L"a.json");
  TestSupport::WriteWholeFile(path, "x");
  for (const auto& [label, tag, isPlain] : kTags) {
    const FakeReparsePoint fake(path, tag);
    EXPECT_EQ(IsPlainFile(path), isPlain) << label;
  }
}

TEST(IsPlainFile, IsFalseForAReparsePointWhoseTagCannotBeRead) {
  const TempFolder folder;
  const std::wstring path = folder.File(L"a.json");
  TestSupport::WriteWholeFile(path, "x");
  FakeReparsePoint fake(path, 0x80000013);
  ASSERT_TRUE(IsPlainFile(path));
  fake.FailSearch();
  EXPECT_FALSE(IsPlainFile(path));
}

TEST(IsPlainFile, IsFalseForAReparsePointThatChangedMeanwhile) {
  const TempFolder folder;
  const std::wstring path = folder.File(L"a.json");
  TestSupport::WriteWholeFile(path, "x");
  FakeReparsePoint fake(path, 0x80000013);
  fake.SearchFindsNoReparsePoint();
  EXPECT_FALSE(IsPlainFile(path));
}

TEST(IsPlainFile, ThrowsWhenTheStatusCannotBeRead) {
  const TempFolder folder;
  const std::wstring path = folder.File(L"a.json");
  TestSupport::WriteWholeFile(path, "x");
  const FailingStatus failure;
  try {
    static_cast<void>(IsPlainFile(path));
    FAIL() << "no exception";
  } catch (const std::filesystem::filesystem_error& error) {
    EXPECT_NE(std::string(error.what()).find("symlink_status"), std::string::npos) << error.what();
  }
}

TEST(IsPlainFile, IsFalseWhenTheAttributesCannotBeRead) {
  const Standin::ImportPatch patch("GetFileAttributesW", &RefuseAttributes);
  EXPECT_FALSE(IsPlainFile(L"C:\\a.json"));
}

TEST(IsKnownPlainFile, IsFalseWhenTheStatusCannotBeRead) {
  const TempFolder folder;
  const std::wstring path = folder.File(L"a.json");
  TestSupport::WriteWholeFile(path, "x");
  EXPECT_TRUE(IsKnownPlainFile(path));
  const FailingStatus failure;
  EXPECT_FALSE(IsKnownPlainFile(path));
}

TEST(TryIsPlainFile, AgreesWithIsPlainFileWhenAllQueriesSucceed) {
  const TempFolder folder;
  const std::wstring path = folder.File(L"a.json");
  TestSupport::WriteWholeFile(path, "x");
  EXPECT_EQ(TryIsPlainFile(path), true);
  EXPECT_EQ(TryIsPlainFile(folder.Path()), false);
  EXPECT_EQ(TryIsPlainFile(folder.File(L"missing.json")), false);
  EXPECT_EQ(TryIsPlainFile(folder.File(L"missing") + L"\\a.json"), false);
  for (const auto& [label, tag, isPlain] : kTags) {
    const FakeReparsePoint fake(path, tag);
    EXPECT_EQ(TryIsPlainFile(path), isPlain) << label;
  }
}

TEST(TryIsPlainFile, IsEmptyWhenAQueryFails) {
  const TempFolder folder;
  const std::wstring path = folder.File(L"a.json");
  TestSupport::WriteWholeFile(path, "x");
  {
    const Standin::ImportPatch patch("GetFileAttributesW", &RefuseAttributes);
    EXPECT_EQ(TryIsPlainFile(path), std::nullopt);
  }
  {
    const FailingStatus failure;
    EXPECT_EQ(TryIsPlainFile(path), std::nullopt);
  }
  {
    FakeReparsePoint changed(path, 0x80000013);
    changed.SearchFindsNoReparsePoint();
    EXPECT_EQ(TryIsPlainFile(path), std::nullopt);
  }
  FakeReparsePoint failing(path, 0x80000013);
  failing.FailSearch();
  EXPECT_EQ(TryIsPlainFile(path), std::nullopt);
}

TEST(SaveJsonDocument, DoesNotWriteThroughAFakeLink) {
  const TempFolder folder;
  const std::wstring path = folder.File(L"a.json");
  TestSupport::WriteWholeFile(path, "untouched");
  GenericDocument document;
  document.SetArray();
  {
    const FakeReparsePoint fake(path, IO_REPARSE_TAG_SYMLINK);
    EXPECT_FALSE(SaveJsonDocument(path, document));
  }
  EXPECT_EQ(TestSupport::ReadWholeFile(path), "untouched");
  {
    const FakeReparsePoint fake(path, 0x80000013);
    EXPECT_TRUE(SaveJsonDocument(path, document));
  }
  EXPECT_EQ(TestSupport::ReadWholeFile(path), "[]");
}
