#include "security/access/tool_launch.h"

#include <windows.h>

#include <shellapi.h>

#include <gmock/gmock.h>

#include <algorithm>

#include "security/access/tool_arguments_fixture.h"

// The common behaviour of both checks.
namespace Zq::Gantry::Security {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::kGood;
using TestSupport::ToolArguments;

std::vector<std::wstring> splitTexts;
std::vector<HLOCAL> freedBlocks;
HLOCAL lastBlock = nullptr;
decltype(&CommandLineToArgvW) realSplit = nullptr;
decltype(&LocalFree) realFree = nullptr;

LPWSTR* WINAPI RecordSplit(LPCWSTR text, int* count) {
  splitTexts.push_back(text);
  LPWSTR* const words = realSplit(text, count);
  lastBlock = words;
  return words;
}

LPWSTR* WINAPI FailSplit(LPCWSTR, int* count) {
  *count = 5;
  SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return nullptr;
}

LPWSTR* WINAPI SplitIntoNothing(LPCWSTR text, int* count) {
  LPWSTR* const words = realSplit(text, count);
  *count = 0;
  return words;
}

HLOCAL WINAPI RecordFree(HLOCAL block) {
  freedBlocks.push_back(block);
  return realFree(block);
}

TEST_F(ToolArguments, AreVerifiedAsWrittenAndLocatedAfterExpansion) {
  EXPECT_TRUE(CheckRegsvr32Arguments(L"%windir%\\good.dll"));
  EXPECT_TRUE(CheckRundll32Arguments(L"%windir%\\other.dll,Entry"));
  EXPECT_THAT(Verified(), ElementsAre(L"%windir%\\good.dll", L"%windir%\\other.dll"));
}

TEST_F(ToolArguments, IncludeTheFirstWord) {
  EXPECT_FALSE(CheckRegsvr32Arguments(L"regsvr32.exe"));
  EXPECT_THAT(Verified(), ElementsAre(L"regsvr32.exe"));
}

TEST_F(ToolArguments, AreSplitAfterAProgramNameAndFreedOnce) {
  const Standin::ImportPatch split("CommandLineToArgvW", &RecordSplit);
  const Standin::ImportPatch free("LocalFree", &RecordFree);
  realSplit = split.Original<std::remove_pointer_t<decltype(&CommandLineToArgvW)>>();
  realFree = free.Original<std::remove_pointer_t<decltype(&LocalFree)>>();
  using Check = bool (*)(const std::wstring&);
  for (const Check check : {Check{CheckRegsvr32Arguments}, Check{CheckRundll32Arguments}}) {
    for (const wchar_t* line : {L"", L"/s", L"C:\\Windows\\good.dll", L"D:\\bad.dll"}) {
      splitTexts.clear();
      freedBlocks.clear();
      check(line);
      EXPECT_THAT(splitTexts, ElementsAre(std::wstring(L"test.exe ") + line));
      EXPECT_EQ(std::count(freedBlocks.begin(), freedBlocks.end(), lastBlock), 1) << line;
    }
  }
}

TEST_F(ToolArguments, AreRefusedWhenTheLineCannotBeSplit) {
  const Standin::ImportPatch split("CommandLineToArgvW", &FailSplit);
  for (const wchar_t* line : {L"", L"/s", kGood}) {
    EXPECT_FALSE(CheckRegsvr32Arguments(line));
    EXPECT_FALSE(CheckRundll32Arguments(line));
  }
  EXPECT_THAT(Verified(), IsEmpty());
}

TEST_F(ToolArguments, AreRefusedWhenTheLineSplitsIntoNothing) {
  const Standin::ImportPatch split("CommandLineToArgvW", &SplitIntoNothing);
  realSplit = split.Original<std::remove_pointer_t<decltype(&CommandLineToArgvW)>>();
  for (const wchar_t* line : {L"", L"/s", kGood}) {
    EXPECT_FALSE(CheckRegsvr32Arguments(line));
    EXPECT_FALSE(CheckRundll32Arguments(line));
  }
}

TEST_F(ToolArguments, AreRefusedInHostileLines) {
  const std::wstring longText(1'000'000, L'\\');
  EXPECT_FALSE(CheckRegsvr32Arguments(longText));
  EXPECT_FALSE(CheckRundll32Arguments(longText));
  EXPECT_FALSE(CheckRegsvr32Arguments(longText + L'"'));
  EXPECT_FALSE(CheckRundll32Arguments(std::wstring(1'000'000, L',')));
  EXPECT_FALSE(CheckRegsvr32Arguments(L"\xD800\xDFFF\xDC00"));
  EXPECT_FALSE(CheckRundll32Arguments(L"\xD800,\xDC00"));
}

TEST_F(ToolArguments, EndAtTheFirstNullCharacter) {
  EXPECT_TRUE(CheckRegsvr32Arguments(std::wstring(L"/s\0D:\\bad.dll", 13)));
}

}  // namespace
}  // namespace Zq::Gantry::Security
