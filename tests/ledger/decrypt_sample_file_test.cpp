#include "ledger/sample_reader.h"

#include <windows.h>

#include <wincrypt.h>

#include <cstdio>
#include <optional>
#include <random>
#include <utility>

#include <gtest/gtest.h>

#include "base/fake_attributes.h"
#include "base/json_document.h"
#include "import_patch.h"
#include "ledger/encrypted_samples.h"
#include "ledger/platform_base64.h"
#include "ledger/sample_files.h"
#include "support/temp_folder.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace std::string_literals;
using TestSupport::Base64;
using TestSupport::Encrypted;
using TestSupport::FileExists;
using TestSupport::Utf16;

namespace {

class DecryptSampleFileTest : public testing::Test {
 protected:
  /// The content of the plain copy after decryption; "no copy" if there is no such file.
  std::string CopyOf(const std::string& encrypted) {
    TestSupport::WriteWholeFile(input_, encrypted);
    EXPECT_FALSE(DecryptSampleFile(input_));
    EXPECT_EQ(TestSupport::ReadWholeFile(input_), encrypted);
    return FileExists(output_) ? TestSupport::ReadWholeFile(output_) : "no copy";
  }

  const TestSupport::TempFolder folder_;
  const std::wstring input_ = folder_.File(L"a.json");
  const std::wstring output_ = folder_.File(L"unencrypt-a.json");
};

int g_calls = 0;
std::string g_text;  ///< that was decoded last
void* g_plainBlock = nullptr;
Standin::ImportPatch* g_patch = nullptr;

/// The bytes of the last blob that was to be decrypted; empty if there was none.
std::optional<std::string> g_blob;

BOOL WINAPI KeepBlob(DATA_BLOB* encrypted, wchar_t**, DATA_BLOB*, void*, CRYPTPROTECT_PROMPTSTRUCT*,
                     DWORD, DATA_BLOB*) {
  g_blob.emplace(reinterpret_cast<const char*>(encrypted->pbData), encrypted->cbData);
  return FALSE;
}

BOOL WINAPI UnprotectAndCheck(DATA_BLOB* encrypted, wchar_t** description, DATA_BLOB* entropy,
                              void* reserved, CRYPTPROTECT_PROMPTSTRUCT* prompt, DWORD flags,
                              DATA_BLOB* plain) {
  EXPECT_EQ(description, nullptr);
  EXPECT_EQ(entropy, nullptr);
  EXPECT_EQ(reserved, nullptr);
  EXPECT_EQ(prompt, nullptr);
  EXPECT_EQ(flags, 4U);
  const BOOL result = g_patch->Original<decltype(UnprotectAndCheck)>()(
      encrypted, description, entropy, reserved, prompt, flags, plain);
  g_plainBlock = plain->pbData;
  return result;
}

BOOL WINAPI DecodeAndCount(const char* text, DWORD chars, DWORD flags, BYTE* bytes, DWORD* size,
                           DWORD* skipped, DWORD* usedFlags) {
  EXPECT_EQ(flags, static_cast<DWORD>(CRYPT_STRING_BASE64));
  EXPECT_NE(bytes, nullptr);
  EXPECT_EQ(skipped, nullptr);
  EXPECT_EQ(usedFlags, nullptr);
  g_text.assign(text, chars);
  ++g_calls;
  return g_patch->Original<decltype(DecodeAndCount)>()(text, chars, flags, bytes, size, skipped,
                                                       usedFlags);
}

BOOL WINAPI UnprotectAndCount(DATA_BLOB* encrypted, wchar_t** description, DATA_BLOB* entropy,
                              void* reserved, CRYPTPROTECT_PROMPTSTRUCT* prompt, DWORD flags,
                              DATA_BLOB* plain) {
  ++g_calls;
  return g_patch->Original<decltype(UnprotectAndCount)>()(encrypted, description, entropy, reserved,
                                                          prompt, flags, plain);
}

Standin::ImportPatch* g_freePatch = nullptr;

HLOCAL WINAPI CountFree(HLOCAL block) {
  if (block != nullptr && block == g_plainBlock) ++g_calls;
  return g_freePatch->Original<decltype(CountFree)>()(block);
}

std::size_t ReadOneByteLess(void* buffer, std::size_t size, std::size_t count, std::FILE* file) {
  return g_patch->Original<decltype(ReadOneByteLess)>()(buffer, size, count - 1, file);
}

BOOL WINAPI CountDecoding(const char*, DWORD, DWORD, BYTE*, DWORD*, DWORD*, DWORD*) {
  ++g_calls;
  return FALSE;
}

}  // namespace

TEST_F(DecryptSampleFileTest, WritesACopyAsLongAsTheBlob) {
  // 13 characters.
  const std::string text = "[{\"Power\":1}]";
  EXPECT_EQ(CopyOf(Encrypted(Utf16(text))), text + std::string(13, '\0'));
}

TEST_F(DecryptSampleFileTest, KeepsTheLowByteOfEachCharacter) {
  EXPECT_EQ(CopyOf(Encrypted("\x41\x4E\xE4\x00"s)), "\x41\xE4\0\0"s);
}

TEST_F(DecryptSampleFileTest, ReplacesAnExistingCopy) {
  TestSupport::WriteWholeFile(output_, std::string(1000, 'x'));
  EXPECT_EQ(CopyOf(Encrypted(Utf16("[]"))), "[]\0\0"s);
}

TEST_F(DecryptSampleFileTest, WritesNoCopyOfInvalidInput) {
  const std::string whole = Encrypted(Utf16("[{\"Power\":1}]"));
  const std::pair<const char*, std::string> cases[] = {
      {"empty", ""},
      {"not Base64", "!!!!"},
      {"garbage after the start", whole.substr(0, 40) + "!!\x01\xFF" + whole.substr(40)},
      {"zero bytes", std::string(1000, '\0')},
      {"plain JSON", "[{\"Power\":1}]"},
      {"Base64 of something else", Base64("something else")},
      {"cut in half", whole.substr(0, whole.size() / 2)},
      {"a page of one letter", std::string(4096, 'A')},
  };
  for (const auto& [label, encrypted] : cases) EXPECT_EQ(CopyOf(encrypted), "no copy") << label;
}

TEST_F(DecryptSampleFileTest, DoesNothingForAMissingFile) {
  EXPECT_FALSE(DecryptSampleFile(input_));
  EXPECT_FALSE(FileExists(output_));
  CreateDirectoryW(input_.c_str(), nullptr);
  EXPECT_FALSE(DecryptSampleFile(input_));
  EXPECT_FALSE(FileExists(output_));
}

TEST_F(DecryptSampleFileTest, DoesNothingForAPathWithoutAFolder) {
  wchar_t before[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, before);
  SetCurrentDirectoryW(folder_.Path().c_str());
  TestSupport::WriteWholeFile(input_, Encrypted(Utf16("[]")));
  {
    g_calls = 0;
    Standin::ImportPatch patch("CryptUnprotectData", &UnprotectAndCount);
    g_patch = &patch;
    EXPECT_FALSE(DecryptSampleFile(L"a.json"));
    EXPECT_EQ(g_calls, 0) << "the file was decrypted";
  }
  EXPECT_FALSE(FileExists(output_));
  EXPECT_FALSE(DecryptSampleFile(L"./a.json"));
  EXPECT_TRUE(FileExists(output_));
  SetCurrentDirectoryW(before);
}

TEST_F(DecryptSampleFileTest, DecodesTheCollectorsTextsWithoutThePlatform) {
  g_calls = 0;
  const Standin::ImportPatch patch("CryptStringToBinaryA", &CountDecoding);
  // Blobs of some lengths, so that each amount of padding occurs.
  for (std::size_t count = 1; count <= 40; ++count) {
    const std::string plain(2 * count, 'x');
    EXPECT_EQ(CopyOf(Encrypted(plain)), PlainCopyContent(plain)) << count;
  }
  EXPECT_EQ(g_calls, 0);
}

TEST_F(DecryptSampleFileTest, LeavesTextsOfOtherFormsToOneCallOfThePlatform) {
  const std::string encrypted = Encrypted(Utf16("[]"));
  std::string withBlank = encrypted;
  withBlank.insert(5, " ");
  std::string withLineFeeds = encrypted;
  std::erase(withLineFeeds, '\r');
  Standin::ImportPatch patch("CryptStringToBinaryA", &DecodeAndCount);
  g_patch = &patch;
  for (const std::string& text :
       {"\r\n" + encrypted, encrypted + "\r\n", withBlank, withLineFeeds}) {
    g_calls = 0;
    g_text.clear();
    EXPECT_EQ(CopyOf(text), "[]\0\0"s) << text;
    EXPECT_EQ(g_text, text);
    EXPECT_EQ(g_calls, 1);
    DeleteFileW(output_.c_str());
  }
}

TEST_F(DecryptSampleFileTest, DecodesAnyTextLikeTwoCallsOfWhichTheFirstReturnsTheSize) {
  const Standin::ImportPatch patch("CryptUnprotectData", &KeepBlob);
  std::mt19937 random(1);
  int decoded = 0;
  for (int i = 0; i < 1000; ++i) {
    const std::string text = i < 50 ? std::string(static_cast<std::size_t>(i + 1), "A \n="[i % 4])
                                    : TestSupport::AlmostBase64(random);
    TestSupport::WriteWholeFile(input_, text);
    g_blob.reset();
    EXPECT_FALSE(DecryptSampleFile(input_));
    EXPECT_EQ(g_blob, TestSupport::PlatformBase64(text)) << testing::PrintToString(text);
    decoded += g_blob ? 1 : 0;
  }
  EXPECT_GT(decoded, 300);
  EXPECT_LT(decoded, 900);
}

TEST_F(DecryptSampleFileTest, DecryptsAFileOnceAsLongAsItsTextIsRecent) {
  g_calls = 0;
  Standin::ImportPatch patch("CryptUnprotectData", &UnprotectAndCount);
  g_patch = &patch;
  RecentSamples recent;
  TestSupport::WriteWholeFile(input_, Encrypted(Utf16("[1]")));
  for (int i = 0; i < 3; ++i) {
    EXPECT_FALSE(DecryptSampleFile(input_, recent));
    EXPECT_EQ(TestSupport::ReadWholeFile(output_), "[1]\0\0\0"s);
    DeleteFileW(output_.c_str());
  }
  EXPECT_EQ(g_calls, 1);
  TestSupport::WriteWholeFile(input_, Encrypted(Utf16("[22]")));
  EXPECT_FALSE(DecryptSampleFile(input_, recent));
  EXPECT_EQ(TestSupport::ReadWholeFile(output_), "[22]\0\0\0\0"s);
  EXPECT_EQ(g_calls, 2);
}

TEST_F(DecryptSampleFileTest, DecryptsEachTimeWithoutRecentSamples) {
  g_calls = 0;
  Standin::ImportPatch patch("CryptUnprotectData", &UnprotectAndCount);
  g_patch = &patch;
  const std::string encrypted = Encrypted(Utf16("[]"));
  EXPECT_EQ(CopyOf(encrypted), "[]\0\0"s);
  EXPECT_EQ(CopyOf(encrypted), "[]\0\0"s);
  EXPECT_EQ(g_calls, 2);
}

TEST_F(DecryptSampleFileTest, UnprotectsAtMachineScopeAndReleasesTheBlobOnce) {
  const std::string encrypted = Encrypted(Utf16("[]"));
  g_calls = 0;
  Standin::ImportPatch patch("CryptUnprotectData", &UnprotectAndCheck);
  g_patch = &patch;
  Standin::ImportPatch freePatch("LocalFree", &CountFree);
  g_freePatch = &freePatch;
  EXPECT_EQ(CopyOf(encrypted), "[]\0\0"s);
  EXPECT_EQ(g_calls, 1);
}

TEST_F(DecryptSampleFileTest, WritesNoCopyAfterAShortRead) {
  TestSupport::WriteWholeFile(input_, Encrypted(Utf16("[]")));
  {
    Standin::ImportPatch patch("fread", &ReadOneByteLess);
    g_patch = &patch;
    EXPECT_FALSE(DecryptSampleFile(input_));
  }
  EXPECT_FALSE(FileExists(output_));
}

TEST_F(DecryptSampleFileTest, DoesNotDecodeAFileAboveTheSizeLimit) {
  g_calls = 0;
  const Standin::ImportPatch patch("CryptStringToBinaryA", &CountDecoding);
  TestSupport::WriteWholeFile(input_, std::string(kLargestDataFileBytes, '!'));
  EXPECT_FALSE(DecryptSampleFile(input_));
  EXPECT_EQ(g_calls, 1);
  TestSupport::WriteWholeFile(input_, std::string(kLargestDataFileBytes + 1, '!'));
  EXPECT_FALSE(DecryptSampleFile(input_));
  EXPECT_EQ(g_calls, 1);
}

TEST_F(DecryptSampleFileTest, DoesNotWriteThroughALink) {
  TestSupport::WriteWholeFile(output_, "untouched");
  const TestSupport::FakeReparsePoint fake(output_, IO_REPARSE_TAG_SYMLINK);
  EXPECT_EQ(CopyOf(Encrypted(Utf16("[]"))), "untouched");
}

TEST_F(DecryptSampleFileTest, LeavesAFolderAtTheCopysPath) {
  CreateDirectoryW(output_.c_str(), nullptr);
  TestSupport::WriteWholeFile(input_, Encrypted(Utf16("[]")));
  EXPECT_FALSE(DecryptSampleFile(input_));
  EXPECT_EQ(GetFileAttributesW(output_.c_str()) & FILE_ATTRIBUTE_DIRECTORY,
            static_cast<DWORD>(FILE_ATTRIBUTE_DIRECTORY));
}
