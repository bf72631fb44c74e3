#include "ledger/sample_reader.h"

#include <windows.h>

#include <io.h>
#include <wincrypt.h>

#include <optional>
#include <utility>

#include "base/json_limits.h"
#include "base/plain_file.h"
#include "base/wide_file.h"
#include "ledger/base64_text.h"
#include "ledger/recent_samples.h"
#include "ledger/sample_files.h"
#include "platform/win32/owners.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr wchar_t kPlainCopyNames[] = L"unencrypt-PcmSampleData_??????????.json";

/// An encrypted file, compared with those in `recent`. No text if it is missing, empty, too large
/// or cannot be read whole.
RecentSamples::Samples ReadEncrypted(const std::wstring& path, const RecentSamples& recent) {
  const UniqueFile file = OpenForReading(path);
  if (!file) return {};
  const std::int64_t length = LengthBytes(file.get());
  if (length <= 0 || static_cast<std::uint64_t>(length) > kLargestDataFileBytes) return {};
  return recent.Read(file.get(), static_cast<std::size_t>(length));
}

/// The most bytes that Base64 text of so many characters decodes to: three for every four that were
/// begun.
constexpr std::size_t MostDecodedBytes(std::size_t chars) { return (chars + 3) / 4 * 3; }

/// The blob inside Base64 text; empty if the text is not Base64. Only the platform's call knows all
/// forms of such a text, but it is slow.
std::optional<std::string> DecodeBase64(const std::string& text) {
  if (auto blob = TryDecodeBase64(text)) return blob;
  std::string blob(MostDecodedBytes(text.size()), '\0');
  auto sizeBytes = static_cast<DWORD>(blob.size());
  if (!CryptStringToBinaryA(text.data(), static_cast<DWORD>(text.size()), CRYPT_STRING_BASE64,
                            reinterpret_cast<BYTE*>(blob.data()), &sizeBytes, nullptr, nullptr)) {
    return std::nullopt;
  }
  blob.resize(sizeBytes);
  return blob;
}

/// The content of the plain copy for the text of an encrypted file; empty if it cannot be
/// decrypted.
std::optional<std::string> TryDecrypt(const std::string& text) {
  std::optional<std::string> blob = DecodeBase64(text);
  if (!blob) return std::nullopt;
  DATA_BLOB encrypted{static_cast<DWORD>(blob->size()), reinterpret_cast<BYTE*>(blob->data())};
  DATA_BLOB decrypted{};
  if (!CryptUnprotectData(&encrypted, /*description=*/nullptr, /*entropy=*/nullptr,
                          /*reserved=*/nullptr, /*prompt=*/nullptr, CRYPTPROTECT_LOCAL_MACHINE,
                          &decrypted)) {
    return std::nullopt;
  }
  const Platform::UniqueLocalBlock owner(decrypted.pbData);
  return PlainCopyContent({reinterpret_cast<const char*>(decrypted.pbData), decrypted.cbData},
                          std::move(*blob));
}

void WritePlainCopy(const std::wstring& path, const std::string& content) {
  const UniqueFile file = OpenForWriting(path);
  if (file) std::fwrite(content.data(), 1, content.size(), file.get());
}

/// Deletes the plain copy at the end of its scope, whether it parsed or not.
class PlainCopyRemoval {
 public:
  explicit PlainCopyRemoval(const std::wstring& path) : path_(path) {}
  PlainCopyRemoval(const PlainCopyRemoval&) = delete;
  PlainCopyRemoval& operator=(const PlainCopyRemoval&) = delete;
  ~PlainCopyRemoval() { _wunlink(path_.c_str()); }

 private:
  const std::wstring& path_;
};

}  // namespace

bool DecryptSampleFile(const std::wstring& path) {
  RecentSamples none;
  return DecryptSampleFile(path, none);
}

bool DecryptSampleFile(const std::wstring& path, RecentSamples& recent) {
  const std::wstring plainPath = PlainCopyPath(path);
  if (plainPath.empty()) return false;
  RecentSamples::Samples samples = ReadEncrypted(path, recent);
  if (samples.plainCopy != nullptr) {
    WritePlainCopy(plainPath, *samples.plainCopy);
    return false;
  }
  if (samples.encrypted.empty()) return false;
  std::optional<std::string> content = TryDecrypt(samples.encrypted);
  if (!content) return false;
  WritePlainCopy(plainPath, *content);
  recent.Keep(std::move(samples.encrypted), std::move(*content));
  return false;
}

bool UseSamplesOfDay(const std::wstring& folder, const DateTime& day,
                     const std::function<void(const std::wstring& path)>& decrypt,
                     const PlainCopyUse& use) {
  const std::wstring encrypted = EncryptedSamplePath(folder, day);
  if (IsPlainFile(encrypted)) decrypt(encrypted);
  // If the decryption failed, a copy that an earlier failure left is used instead.
  return UseLeftoverCopyOfDay(folder, day, use);
}

bool UseLeftoverCopyOfDay(const std::wstring& folder, const DateTime& day,
                          const PlainCopyUse& use) {
  const std::wstring plain = PlainSamplePath(folder, day);
  if (!IsPlainFile(plain)) return false;
  const PlainCopyRemoval removal(plain);
  use(plain);
  return true;
}

// By search, not by date: the pass that left a copy may have read other days than this one.
void RemoveLeftoverCopies(const std::wstring& folder) {
  WIN32_FIND_DATAW entry{};
  const Platform::UniqueFindHandle search(
      FindFirstFileW((folder + L"\\" + kPlainCopyNames).c_str(), &entry));
  if (!search) return;
  do {
    const std::wstring path = folder + L"\\" + entry.cFileName;
    if (IsKnownPlainFile(path)) _wunlink(path.c_str());
  } while (FindNextFileW(search.get(), &entry));
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
