// Input that the loader must refuse, or must read in spite of its size.

#include <gtest/gtest.h>

#include <memory>

#include "base/json_document.h"
#include "base/scratch_folder.h"
#include "base/text_builders.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::Repeated;
using TestSupport::ScratchFolder;

namespace {

std::unique_ptr<GenericDocument> LoadText(const std::string& text) {
  const ScratchFolder folder;
  TestSupport::WriteBytes(folder.File("text.json"), text);
  return std::unique_ptr<GenericDocument>(LoadJsonDocument(folder.File("text.json").wstring()));
}

std::string NestedArrays(std::size_t depth) {
  return std::string(depth, '[') + std::string(depth, ']');
}

std::string NestedObjects(std::size_t depth) {
  return Repeated("{\"a\":", depth) + "1" + std::string(depth, '}');
}

std::string ArrayOfZeros(std::size_t count) { return "[" + Repeated("0,", count - 1) + "0]"; }

}  // namespace

TEST(LoadJsonDocument, AcceptsNestingUpTo64Levels) {
  EXPECT_TRUE(LoadText(NestedArrays(64)));
  EXPECT_FALSE(LoadText(NestedArrays(65)));
  EXPECT_TRUE(LoadText(NestedObjects(64)));
  EXPECT_FALSE(LoadText(NestedObjects(65)));
}

TEST(LoadJsonDocument, LimitsTheDepthNotTheNumberOfArrays) {
  EXPECT_TRUE(LoadText("[" + Repeated("[[]],{\"a\":[]},", 1000) + "1]"));
}

TEST(LoadJsonDocument, IsNullForMegabytesOfOpeningBrackets) {
  EXPECT_FALSE(LoadText(std::string(30U << 20, '[')));
  EXPECT_FALSE(LoadText(Repeated("{\"\":", 1U << 20)));
  EXPECT_FALSE(LoadText(std::string(64U << 20, '[')));
}

TEST(LoadJsonDocument, AcceptsFilesUpTo64Mebibytes) {
  const std::size_t limit = 64U * 1024 * 1024;
  EXPECT_TRUE(LoadText("[]" + std::string(limit - 2, ' ')));
  EXPECT_FALSE(LoadText("[]" + std::string(limit - 1, ' ')));
}

TEST(LoadJsonDocument, AcceptsFilesUpToTheCallersLimit) {
  const ScratchFolder folder;
  TestSupport::WriteBytes(folder.File("text.json"), "[1,2]");
  const std::wstring path = folder.File("text.json").wstring();
  EXPECT_TRUE(std::unique_ptr<GenericDocument>(LoadJsonDocument(path, {5})));
  EXPECT_FALSE(std::unique_ptr<GenericDocument>(LoadJsonDocument(path, {4})));
}

TEST(LoadJsonDocument, AcceptsUpToEightMillionValues) {
  // The array itself is one of them.
  const auto most = LoadText(ArrayOfZeros(7'999'999));
  ASSERT_TRUE(most);
  EXPECT_EQ(most->Size(), 7'999'999U);
  EXPECT_FALSE(LoadText(ArrayOfZeros(8'000'000)));
}

TEST(LoadJsonDocument, AcceptsOpenValuesUpToTheCallersLimit) {
  const ScratchFolder folder;
  const std::wstring path = folder.File("text.json").wstring();
  const auto isRead = [&](const std::string& text, std::size_t mostOpenValues) {
    TestSupport::WriteBytes(folder.File("text.json"), text);
    return std::unique_ptr<GenericDocument>(
               LoadJsonDocument(path, {kLargestDataFileBytes, mostOpenValues})) != nullptr;
  };
  // Open are the array, the values of the current inner array, and each inner array that has ended.
  EXPECT_TRUE(isRead("[1,2,3]", 4));
  EXPECT_FALSE(isRead("[1,2,3]", 3));
  EXPECT_TRUE(isRead("[[1,2,3],[1,2,3],[1,2,3]]", 7));
  EXPECT_FALSE(isRead("[[1,2,3],[1,2,3],[1,2,3]]", 6));
  EXPECT_TRUE(isRead(R"([{"a":1,"b":2},{"a":1,"b":2}])", 7));
  EXPECT_FALSE(isRead(R"([{"a":1,"b":2},{"a":1,"b":2}])", 6));
}

TEST(LoadJsonDocument, AcceptsStringsUpTo16Mebibytes) {
  // The limit counts bytes of the file, so an escape counts twice. It applies to each string alone.
  const std::string longest = Repeated("\\n", 4U << 20) + std::string(8U << 20, 'n');
  EXPECT_TRUE(LoadText("[\"n\",\"" + longest + "\"]"));
  EXPECT_FALSE(LoadText("[\"" + longest + "n\"]"));
}

TEST(LoadJsonDocument, IsNullForAnExponentThatOverflowsInTheParser) {
  // The exponent minus the ten decimal places is below -2^31.
  EXPECT_FALSE(LoadText("[1.0000000000e-2147483639]"));
  EXPECT_FALSE(LoadText("1.0000000000E-2147483639"));
  EXPECT_FALSE(LoadText("{\"Power\":0.0000000000e-2147483639}"));
  EXPECT_FALSE(LoadText("[\"\\\"\",1e-1000000000]"));
}

TEST(LoadJsonDocument, ReadsTinyAndLongNumbers) {
  const auto document =
      LoadText("[1e-999999999,0." + std::string(100000, '0') + "1e-999999999,1e308,25e-1]");
  ASSERT_TRUE(document);
  EXPECT_EQ((*document)[0].GetDouble(), 0.0);
  EXPECT_EQ((*document)[1].GetDouble(), 0.0);
  EXPECT_EQ((*document)[2].GetDouble(), 1e308);
  EXPECT_EQ((*document)[3].GetDouble(), 2.5);
}

TEST(LoadJsonDocument, ReadsStringsThatLookLikeExponents) {
  const auto document = LoadText(R"(["1e-2147483639","\\",{"\"e99999999999":"e1234567890"}])");
  ASSERT_TRUE(document);
  EXPECT_STREQ((*document)[0].GetString(), "1e-2147483639");
}
