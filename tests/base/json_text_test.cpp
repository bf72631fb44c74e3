#include "base/json_text.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "base/json_oracle.h"
#include "base/scratch_folder.h"
#include "base/text_builders.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::DocumentByCharacters;
using TestSupport::Repeated;
using TestSupport::ScratchFolder;
using TestSupport::WrittenJson;

namespace {

constexpr std::size_t kLargest = 64U << 20;

/// The text that is read of a file with these bytes; empty if there is none.
std::optional<std::string> TextOfFile(const std::string& bytes, std::size_t largest = kLargest) {
  const ScratchFolder folder;
  TestSupport::WriteBytes(folder.File("text.json"), bytes);
  std::optional<JsonText> text = JsonText::TryRead(folder.File("text.json").wstring(), largest);
  if (!text) return std::nullopt;
  return std::string(text->Begin(), std::strlen(text->Begin()));
}

/// All lists of one, two and three of the parts, with a comma after each part.
template <std::size_t count>
std::vector<std::string> ListsOfUpToThree(const std::array<std::string, count>& parts) {
  std::vector<std::string> lists;
  for (const std::string& first : parts) {
    lists.push_back(first + ",");
    for (const std::string& second : parts) {
      lists.push_back(first + "," + second + ",");
      for (const std::string& third : parts) {
        lists.push_back(first + "," + second + "," + third + ",");
      }
    }
  }
  return lists;
}

}  // namespace

TEST(JsonText, HoldsTheWholeFile) {
  // Around the size of the chunks in which a file is read.
  for (const std::size_t length : {0U, 1U, 65535U, 65536U, 65537U, 131072U, 200000U}) {
    std::string bytes;
    for (std::size_t i = 0; i < length; ++i) bytes += static_cast<char>('A' + i % 7);
    const auto text = TextOfFile(bytes);
    ASSERT_TRUE(text) << length;
    EXPECT_TRUE(*text == bytes) << length;
  }
}

TEST(JsonText, EndsAtTheFirstZeroByte) {
  for (const std::size_t length : {0U, 5U, 65535U, 65536U, 70000U}) {
    const std::string text(length, ' ');
    EXPECT_TRUE(TextOfFile(text + std::string(3, '\0') + "e1234567890") == text) << length;
  }
}

TEST(JsonText, IsTextOfAFileFromWhichItWouldBeRead) {
  const ScratchFolder folder;
  const std::wstring path = folder.File("text.json").wstring();
  // Around the size of the chunks in which a file is read, with and without zeros after the text.
  for (const std::size_t length : {0U, 1U, 65535U, 65536U, 65537U, 131072U, 200000U}) {
    for (const std::size_t zeros : {0U, 1U, 65536U}) {
      SCOPED_TRACE(std::to_string(length) + " characters, zeros: " + std::to_string(zeros));
      const std::string text(length, 'A');
      TestSupport::WriteBytes(folder.File("text.json"), text + std::string(zeros, '\0'));
      EXPECT_TRUE(JsonText::IsTextOf(path, length + zeros, text));
      EXPECT_FALSE(JsonText::IsTextOf(path, length + zeros, text + "A"));
      if (length > 0) {
        EXPECT_FALSE(JsonText::IsTextOf(path, length + zeros - 1, text)) << "a larger file";
        EXPECT_FALSE(JsonText::IsTextOf(path, length + zeros, text.substr(1)));
        EXPECT_FALSE(JsonText::IsTextOf(path, length + zeros, text.substr(1) + "B"));
        EXPECT_FALSE(JsonText::IsTextOf(path, length + zeros, "B" + text.substr(1)));
      }
    }
  }
  TestSupport::WriteBytes(folder.File("text.json"), std::string("A\0A", 3));
  EXPECT_TRUE(JsonText::IsTextOf(path, kLargest, "A"));
  EXPECT_FALSE(JsonText::IsTextOf(path, kLargest, std::string("A\0A", 3)));
  EXPECT_FALSE(JsonText::IsTextOf(folder.File("missing.json").wstring(), kLargest, ""));
}

TEST(JsonText, IsMissingForAFileThatCannotBeOpened) {
  const ScratchFolder folder;
  EXPECT_FALSE(JsonText::TryRead(folder.File("missing.json").wstring(), kLargest));
}

TEST(JsonText, IsMissingForAFileAboveTheLimit) {
  EXPECT_TRUE(TextOfFile("[1,2]", 5));
  EXPECT_FALSE(TextOfFile("[1,2]", 4));
  EXPECT_FALSE(TextOfFile(std::string("[]\0\0\0", 5), 4));
}

TEST(JsonText, IsMissingForATextThatBreaksALimit) { EXPECT_FALSE(TextOfFile("[1e1234567890]")); }

TEST(KeepsJsonLimits, RejectsAnExponentOfTenDigits) {
  for (const char* text : {"1e1234567890", "1E1234567890", "1e+1234567890", "1e-1234567890",
                           "[12345,1E-0000000001]", "e1234567890", "1e12345678901234567890",
                           "[\"\\\\\",1e1234567890]", "[\"\\\"\",1e1234567890]"}) {
    EXPECT_FALSE(KeepsJsonLimits(text)) << text;
  }
}

TEST(KeepsJsonLimits, AcceptsOtherDigits) {
  for (const char* text :
       {"1e123456789", "1e-123456789", "12345678901234567890", "-12345678901234567890",
        "0.12345678901234567890", "a-1234567890", "+1234567890", "1234567890", "1234567890e1",
        "1e 1234567890", "[1e5,1234567890,2e+1,-1234567890]", "\"2026-11-14T02:10:46\""}) {
    EXPECT_TRUE(KeepsJsonLimits(text)) << text;
  }
}

TEST(KeepsJsonLimits, AcceptsTextsThatLookLikeExponents) {
  for (const char* text : {R"(["e1234567890"])", R"({"\\\"e1234567890":"\\\\","e":1e123456789})",
                           R"(["\"e-1234567890"])"}) {
    EXPECT_TRUE(KeepsJsonLimits(text)) << text;
  }
}

TEST(KeepsJsonLimits, FindsALongExponentAtEveryPlace) {
  for (std::size_t blanks = 0; blanks < 25; ++blanks) {
    const std::string before(blanks, ' ');
    EXPECT_FALSE(KeepsJsonLimits(before + "1e1234567890")) << blanks;
    EXPECT_FALSE(KeepsJsonLimits(before + "12345678901234567890 1e1234567890")) << blanks;
    EXPECT_TRUE(KeepsJsonLimits(before + "1e123456789,1e987654321")) << blanks;
  }
}

TEST(KeepsJsonLimits, AcceptsStringsUpTo16Mebibytes) {
  const std::size_t most = 16U << 20;
  const std::string begin = "[\"a\",\"";
  EXPECT_TRUE(KeepsJsonLimits(begin + std::string(most, 'a') + "\"]"));
  EXPECT_FALSE(KeepsJsonLimits(begin + std::string(most + 1, 'a') + "\"]"));
  EXPECT_FALSE(KeepsJsonLimits(begin + std::string(most + 1, 'a')));
}

TEST(KeepsJsonLimits, CountsTheBytesOfEscapes) {
  const std::string escapes = Repeated("\\\"", 8U << 20);
  EXPECT_TRUE(KeepsJsonLimits("[\"" + escapes + "\",\"" + escapes + "\"]"));
  EXPECT_FALSE(KeepsJsonLimits("[\"" + escapes + "a\"]"));
}

TEST(KeepsJsonLimits, CountsEachStringAlone) {
  const std::string string = '"' + std::string(9U << 20, 'a') + '"';
  EXPECT_TRUE(KeepsJsonLimits("[" + string + "," + string + "," + string + "]"));
  EXPECT_TRUE(KeepsJsonLimits("[" + std::string(40U << 20, ' ') + "]"));
}

// All 1,884 lists of up to three strings, numbers and exponents.
TEST(LoadJsonDocument, DecidesLikeAStreamThatLooksAtEachCharacter) {
  const std::array<std::string, 12> parts{"1e1234567890",
                                          "\"e1234567890\"",
                                          "\"a\\\"e-0000000001\"",
                                          "0.0000000001e-2147483639",
                                          "1e-123456789",
                                          "12345678901234567890",
                                          "\"\\\\\"",
                                          "{\"e1\":1E5}",
                                          "[1.5e+0000000001]",
                                          "\"\\u0041\"",
                                          "-0.1e-9999999999",
                                          "\"x\""};
  const ScratchFolder folder;
  const std::wstring path = folder.File("text.json").wstring();
  int readable = 0;
  for (const std::string& list : ListsOfUpToThree(parts)) {
    const std::string text = "[" + list + "0]";
    TestSupport::WriteBytes(folder.File("text.json"), text);
    const std::unique_ptr<GenericDocument> fast(LoadJsonDocument(path));
    const auto careful = DocumentByCharacters(path);
    ASSERT_EQ(fast == nullptr, careful == nullptr) << text;
    if (fast) {
      ASSERT_EQ(WrittenJson(*fast), WrittenJson(*careful)) << text;
    }
    readable += fast != nullptr ? 1 : 0;
  }
  // Four of the parts have an exponent of more than nine digits, which is not accepted.
  EXPECT_EQ(readable, 8 + 8 * 8 + 8 * 8 * 8);
}
