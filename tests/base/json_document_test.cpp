#include "base/json_document.h"

#include <gtest/gtest.h>

#include <memory>
#include <string_view>

#include "base/scratch_folder.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::ReadBytes;
using TestSupport::ScratchFolder;
using TestSupport::WriteBytes;

namespace {

std::unique_ptr<GenericDocument> Load(const std::filesystem::path& path) {
  return std::unique_ptr<GenericDocument>(LoadJsonDocument(path.wstring()));
}

std::unique_ptr<GenericDocument> LoadText(std::string_view text) {
  const ScratchFolder folder;
  WriteBytes(folder.File("text.json"), std::string(text));
  return Load(folder.File("text.json"));
}

GenericDocument Parsed(const char* text) {
  GenericDocument document;
  document.Parse(text);
  return document;
}

}  // namespace

TEST(LoadJsonDocument, ReturnsTheContentOfTheFile) {
  const auto document =
      LoadText(R"( [ {"Key":"2024-03-01","Value":1.5}, -7, true, null, "a\"b" ] )");
  ASSERT_TRUE(document);
  EXPECT_TRUE(*document == Parsed(R"([{"Key":"2024-03-01","Value":1.5},-7,true,null,"a\"b"])"));
}

TEST(LoadJsonDocument, IsNullForAMissingFile) {
  const ScratchFolder folder;
  EXPECT_FALSE(Load(folder.File("missing.json")));
  EXPECT_FALSE(Load(folder.File("missing") / "text.json"));
}

TEST(LoadJsonDocument, IsNullForTextThatDoesNotParse) {
  const std::string_view texts[] = {
      "",           " \r\n\t",        "[",           "[1,",           "[1 2]",
      "{\"Key\":",  "{Key:1}",        "\"open",      "\"open\\",      "[1] x",
      "[1][2]",     "[1],",           "]",           "nul",           "[NaN]",
      "[Infinity]", "[01]",           "[1.]",        "[1e]",          "[1e400]",
      "['a']",      "[1] // comment", R"(["\u12"])", R"(["\ud800"])", "[\"\x01\"]",
  };
  for (const std::string_view text : texts) EXPECT_FALSE(LoadText(text)) << text;
}

TEST(LoadJsonDocument, TreatsAZeroByteAsTheEnd) {
  const auto document = LoadText(std::string_view("[12]\0\0\0\0", 8));
  ASSERT_TRUE(document);
  EXPECT_TRUE(*document == Parsed("[12]"));
  EXPECT_TRUE(LoadText(std::string_view("[12] \0 rubbish", 14)));
  EXPECT_FALSE(LoadText(std::string_view("\0[12]", 5)));
  EXPECT_FALSE(LoadText(std::string_view("[12\0]", 5)));
  EXPECT_FALSE(LoadText(std::string_view("[\"12\0\"]", 7)));
}

TEST(LoadJsonDocument, IsNullForOtherEncodings) {
  EXPECT_FALSE(LoadText(std::string_view("[\0]\0", 4)));
  EXPECT_FALSE(LoadText(std::string_view("\xFF\xFE[\0]\0", 6)));
  EXPECT_FALSE(LoadText("\xEF\xBB\xBF[]"));
}

TEST(LoadJsonDocument, KeepsStringsThatAreNotUtf8) {
  const auto document = LoadText("[\"\xC3(\xFF\x80\"]");
  ASSERT_TRUE(document);
  EXPECT_STREQ((*document)[0].GetString(), "\xC3(\xFF\x80");
}

TEST(LoadJsonDocument, ReadsAcrossItsBuffer) {
  std::string text = "[";
  for (int i = 0; i < 50000; ++i) text += std::to_string(i) + ",";
  const auto document = LoadText(text + "\"end\"]");
  ASSERT_TRUE(document);
  ASSERT_EQ(document->Size(), 50001U);
  EXPECT_EQ((*document)[49999].GetInt(), 49999);
  EXPECT_STREQ((*document)[50000].GetString(), "end");
}

TEST(SaveJsonDocument, WritesWithoutWhiteSpace) {
  const ScratchFolder folder;
  auto document = Parsed(R"([ { "Key" : "2024-03-01", "Value" : 0 }, [ ], "a/\"" ])");
  // A 32-bit float is written as a double of the same value.
  document[0]["Value"] = static_cast<double>(0.1F);
  EXPECT_TRUE(SaveJsonDocument(folder.File("out.json").wstring(), document));
  EXPECT_EQ(ReadBytes(folder.File("out.json")),
            R"([{"Key":"2024-03-01","Value":0.10000000149011612},[],"a/\""])");
}

TEST(SaveJsonDocument, ReplacesAnExistingFile) {
  const ScratchFolder folder;
  WriteBytes(folder.File("out.json"), std::string(100000, 'x'));
  EXPECT_TRUE(SaveJsonDocument(folder.File("out.json").wstring(), Parsed("[1]")));
  EXPECT_EQ(ReadBytes(folder.File("out.json")), "[1]");
}

TEST(SaveJsonDocument, FailsInAMissingFolderAndCreatesNothing) {
  const ScratchFolder folder;
  const auto path = folder.File("missing") / "out.json";
  EXPECT_FALSE(SaveJsonDocument(path.wstring(), Parsed("[1]")));
  EXPECT_FALSE(std::filesystem::exists(folder.File("missing")));
}

TEST(SaveJsonDocument, FailsForAFolder) {
  const ScratchFolder folder;
  std::filesystem::create_directory(folder.File("out.json"));
  EXPECT_FALSE(SaveJsonDocument(folder.File("out.json").wstring(), Parsed("[1]")));
  EXPECT_TRUE(std::filesystem::is_directory(folder.File("out.json")));
}

TEST(SaveJsonDocument, WritesAcrossItsBuffer) {
  const ScratchFolder folder;
  std::string text = "[\"" + std::string(70000, 'a') + "\",\"" + std::string(70000, 'b') + "\"]";
  EXPECT_TRUE(SaveJsonDocument(folder.File("out.json").wstring(), Parsed(text.c_str())));
  EXPECT_EQ(ReadBytes(folder.File("out.json")), text);
}

TEST(SaveJsonDocument, KeepsStringsThatAreNotUtf8) {
  const ScratchFolder folder;
  EXPECT_TRUE(SaveJsonDocument(folder.File("out.json").wstring(), Parsed("[\"\xC3(\xFF\"]")));
  EXPECT_EQ(ReadBytes(folder.File("out.json")), "[\"\xC3(\xFF\"]");
}

TEST(JsonDocument, IsSavedAndLoadedUnderAnyUnicodePath) {
  const ScratchFolder folder;
  const std::wstring path =
      folder.File("x").parent_path().wstring() + L"/W\x00E4rme-\x96FB\x529B.json";
  EXPECT_TRUE(SaveJsonDocument(path, Parsed("[1]")));
  EXPECT_TRUE(std::unique_ptr<GenericDocument>(LoadJsonDocument(path)));
  const std::filesystem::path sameFile(u8"W\u00E4rme-\u96FB\u529B.json");
  EXPECT_TRUE(std::filesystem::exists(folder.File("x").parent_path() / sameFile));
}
