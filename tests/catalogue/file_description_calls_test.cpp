#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "catalogue/file_description.h"
#include "import_patch.h"

using Standin::ImportPatch;
using Zq::Gantry::Server::Services::Wattleaf::GetFileDescription;

// Fakes the version calls with content that no resource compiler produces.
namespace {

/// Returns blocks of exactly their length, so that a memory checker finds any read beyond them.
class FakeVersion {
 public:
  FakeVersion() { current_ = this; }

  void Add(const std::string& key, const std::string& bytes) {
    Add(key, bytes, static_cast<UINT>(bytes.size()));
  }
  void Add(const std::string& key, const std::string& bytes, UINT length) {
    values_[key] = {std::make_unique<std::vector<char>>(bytes.begin(), bytes.end()), length};
  }
  void AddNull(const std::string& key, UINT length) { values_[key] = {nullptr, length}; }
  /// A value in the last bytes of the resource block, with a reported length of `length`.
  void AddAtTheBlocksEnd(const std::string& key, const std::string& bytes, UINT length) {
    Add(key, bytes, length);
    values_[key].isInBlock = true;
  }

  DWORD size = 64;
  BOOL read = TRUE;
  int sizes = 0;
  int reads = 0;
  std::vector<std::string> queries;

 private:
  struct Value {
    std::unique_ptr<std::vector<char>> bytes;
    UINT length = 0;
    bool isInBlock = false;
  };

  static DWORD WINAPI Size(const char*, DWORD*) {
    ++current_->sizes;
    return current_->size;
  }
  static BOOL WINAPI Read(const char*, DWORD, DWORD bytes, void* block) {
    ++current_->reads;
    EXPECT_EQ(bytes, current_->size);
    EXPECT_NE(block, nullptr);
    return current_->read;
  }
  static BOOL WINAPI Query(const void* block, const char* key, void** value, UINT* length) {
    current_->queries.push_back(key);
    const auto found = current_->values_.find(key);
    if (found == current_->values_.end()) return FALSE;
    const Value& result = found->second;
    *value = result.bytes ? result.bytes->data() : nullptr;
    if (result.isInBlock) *value = CopyToTheEnd(block, *result.bytes);
    *length = result.length;
    return TRUE;
  }
  static void* CopyToTheEnd(const void* block, const std::vector<char>& bytes) {
    char* place = static_cast<char*>(const_cast<void*>(block)) + current_->size - bytes.size();
    return std::copy(bytes.begin(), bytes.end(), place) - bytes.size();
  }

  static inline FakeVersion* current_ = nullptr;
  std::map<std::string, Value> values_;
  const ImportPatch sizePatch_{"GetFileVersionInfoSizeA", &Size};
  const ImportPatch readPatch_{"GetFileVersionInfoA", &Read};
  const ImportPatch queryPatch_{"VerQueryValueA", &Query};
};

constexpr char kList[] = "\\VarFileInfo\\Translation";
constexpr char kEnglish[] = "\\StringFileInfo\\040904b0\\FileDescription";
constexpr char kGerman[] = "\\StringFileInfo\\040704e4\\FileDescription";
const std::string kEnglishEntry("\x09\x04\xB0\x04", 4);
const std::string kGermanEntry("\x07\x04\xE4\x04", 4);

}  // namespace

TEST(GetFileDescription, QueriesTranslationsInTheListsOrderAsLowerCaseHex) {
  FakeVersion version;
  version.Add(kList, kGermanEntry + kEnglishEntry + std::string("\x0C\x00\xEF\xCD", 4));
  EXPECT_EQ(GetFileDescription("x"), "");
  EXPECT_EQ(version.queries,
            (std::vector<std::string>{kList, kGerman, kEnglish,
                                      "\\StringFileInfo\\000ccdef\\FileDescription"}));
}

TEST(GetFileDescription, StopsAtTheFirstDescription) {
  FakeVersion version;
  version.Add(kList, kGermanEntry + kEnglishEntry);
  version.Add(kGerman, std::string("Wiese\0", 6));
  version.Add(kEnglish, std::string("Meadow\0", 7));
  EXPECT_EQ(GetFileDescription("x"), "Wiese");
  EXPECT_EQ(version.queries.size(), 2u);
}

TEST(GetFileDescription, SkipsADescriptionOfLengthZero) {
  FakeVersion version;
  version.Add(kList, kGermanEntry + kEnglishEntry);
  version.Add(kGerman, "Wiese", 0);
  version.Add(kEnglish, std::string("Meadow\0", 7));
  EXPECT_EQ(GetFileDescription("x"), "Meadow");
}

TEST(GetFileDescription, StopsAtAnEmptyTextWithALength) {
  FakeVersion version;
  version.Add(kList, kGermanEntry + kEnglishEntry);
  version.Add(kGerman, std::string(1, '\0'));
  version.Add(kEnglish, std::string("Meadow\0", 7));
  EXPECT_EQ(GetFileDescription("x"), "");
}

TEST(GetFileDescription, KeepsTheBytesOfAnyCodePage) {
  FakeVersion version;
  version.Add(kList, kEnglishEntry);
  version.Add(kEnglish, std::string("\xFF\x80\xFCn\0", 5));
  EXPECT_EQ(GetFileDescription("x"), "\xFF\x80\xFCn");
}

TEST(GetFileDescription, EndsATextAtItsFirstZeroOrItsLength) {
  FakeVersion version;
  version.Add(kList, kEnglishEntry);
  version.Add(kEnglish, std::string("Shown\0hidden", 12));
  EXPECT_EQ(GetFileDescription("x"), "Shown");
  version.Add(kEnglish, "No end");
  EXPECT_EQ(GetFileDescription("x"), "No end");
  version.Add(kEnglish, "Longer than reported", 6);
  EXPECT_EQ(GetFileDescription("x"), "Longer");
}

TEST(GetFileDescription, IgnoresAPartialEntryOfTheList) {
  for (const UINT length : {0u, 1u, 3u}) {
    FakeVersion version;
    version.Add(kList, kEnglishEntry.substr(0, length));
    version.Add(kEnglish, std::string("Meadow\0", 7));
    EXPECT_EQ(GetFileDescription("x"), "") << length;
    EXPECT_EQ(version.queries.size(), 1u) << length;
  }
  for (const UINT length : {4u, 5u, 7u}) {
    FakeVersion version;
    version.Add(kList, (kEnglishEntry + kGermanEntry).substr(0, length));
    EXPECT_EQ(GetFileDescription("x"), "") << length;
    EXPECT_EQ(version.queries.size(), 2u) << length;
  }
}

TEST(GetFileDescription, LimitsLengthsToTheEndOfTheResource) {
  FakeVersion version;
  version.AddAtTheBlocksEnd(kList, kGermanEntry + kEnglishEntry, 65'535);
  version.AddAtTheBlocksEnd(kEnglish, "Meadow", 65'535);
  EXPECT_EQ(GetFileDescription("x"), "Meadow");
  EXPECT_EQ(version.queries, (std::vector<std::string>{kList, kGerman, kEnglish}));
}

TEST(GetFileDescription, SkipsAValueThatBeginsAtTheEndOfTheResource) {
  FakeVersion version;
  version.Add(kList, kEnglishEntry + kGermanEntry);
  version.AddAtTheBlocksEnd(kEnglish, "", 5);
  version.Add(kGerman, std::string("Wiese\0", 6));
  EXPECT_EQ(GetFileDescription("x"), "Wiese");
}

TEST(GetFileDescription, TreatsANullValueAsMissing) {
  FakeVersion version;
  version.AddNull(kList, 4);
  EXPECT_EQ(GetFileDescription("x"), "");
  version.Add(kList, kGermanEntry + kEnglishEntry);
  version.AddNull(kGerman, 9);
  version.Add(kEnglish, std::string("Meadow\0", 7));
  EXPECT_EQ(GetFileDescription("x"), "Meadow");
}

TEST(GetFileDescription, DoesNotReadAResourceOfSizeZero) {
  FakeVersion version;
  version.size = 0;
  EXPECT_EQ(GetFileDescription("x"), "");
  EXPECT_EQ(version.reads, 0);
  EXPECT_TRUE(version.queries.empty());
}

TEST(GetFileDescription, DoesNotQueryAResourceThatCannotBeRead) {
  FakeVersion version;
  version.read = FALSE;
  EXPECT_EQ(GetFileDescription("x"), "");
  EXPECT_EQ(version.reads, 1);
  EXPECT_TRUE(version.queries.empty());
}

TEST(GetFileDescription, IsEmptyForAPathAboveTheSystemsLimit) {
  FakeVersion version;
  version.Add(kList, kEnglishEntry);
  version.Add(kEnglish, std::string("Meadow\0", 7));
  EXPECT_EQ(GetFileDescription(std::string(32'766, 'p')), "Meadow");
  EXPECT_EQ(version.sizes, 1);
  for (const std::size_t bytes : {32'767, 1'000'000}) {
    EXPECT_EQ(GetFileDescription(std::string(bytes, 'p')), "") << bytes;
  }
  EXPECT_EQ(version.sizes, 1);
}
