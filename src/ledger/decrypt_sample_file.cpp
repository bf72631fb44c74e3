#include "ledger/decrypt_sample_file.h"

#include <windows.h>

#include <wincrypt.h>

#include <cstdlib>
#include <string_view>

#include "base/json_document.h"
#include "base/wide_file.h"
#include "ledger/plain_copy.h"
#include "platform/win32/owners.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// Empty for a file that is missing, empty, too large or gives fewer bytes than it has.
std::string ReadEncrypted(const std::wstring& path) {
  const UniqueFile file = OpenForReading(path);
  if (!file) return {};
  const std::int64_t length = LengthBytes(file.get());
  if (length <= 0 || static_cast<std::uint64_t>(length) > kLargestDataFileBytes) return {};

  std::string text(static_cast<std::size_t>(length), '\0');
  if (std::fread(text.data(), 1, text.size(), file.get()) != text.size()) return {};
  return text;
}

struct Blob {
  Platform::UniqueHeapBlock block;
  DWORD sizeBytes = 0;
};

/// An empty block for a text that is no Base64.
Blob DecodeBase64(const std::string& text) {
  const auto chars = static_cast<DWORD>(text.size());
  Blob blob;
  if (!CryptStringToBinaryA(text.data(), chars, CRYPT_STRING_BASE64, nullptr, &blob.sizeBytes,
                            nullptr, nullptr)) {
    return {};
  }
  blob.block.reset(std::malloc(blob.sizeBytes));
  if (!blob.block) return {};
  if (!CryptStringToBinaryA(text.data(), chars, CRYPT_STRING_BASE64,
                            static_cast<BYTE*>(blob.block.get()), &blob.sizeBytes, nullptr,
                            nullptr)) {
    return {};
  }
  return blob;
}

void WritePlainCopy(const std::wstring& path, std::string_view opened) {
  const UniqueFile file = OpenForWriting(path);
  if (!file) return;
  const std::string content = PlainCopyContent(opened);
  std::fwrite(content.data(), 1, content.size(), file.get());
}

void OpenBlob(const Blob& blob, const std::wstring& plainPath) {
  DATA_BLOB closed{blob.sizeBytes, static_cast<BYTE*>(blob.block.get())};
  DATA_BLOB opened{};
  if (!CryptUnprotectData(&closed, /*description=*/nullptr, /*entropy=*/nullptr,
                          /*reserved=*/nullptr, /*prompt=*/nullptr, CRYPTPROTECT_LOCAL_MACHINE,
                          &opened)) {
    return;
  }
  const Platform::UniqueLocalBlock owner(opened.pbData);
  WritePlainCopy(plainPath, {reinterpret_cast<const char*>(opened.pbData), opened.cbData});
}

}  // namespace

bool DecryptSampleFile(const std::wstring& path) {
  const std::wstring plainPath = PlainCopyPath(path);
  if (plainPath.empty()) return false;
  const std::string text = ReadEncrypted(path);
  if (text.empty()) return false;
  const Blob blob = DecodeBase64(text);
  if (blob.block) OpenBlob(blob, plainPath);
  return false;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
