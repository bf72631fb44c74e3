#include "ledger/sample_reader.h"

#include <windows.h>

#include <io.h>

#include <memory>

#include "base/plain_file.h"
#include "ledger/decrypt_sample_file.h"
#include "ledger/sample_files.h"
#include "platform/win32/owners.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr wchar_t kPlainCopyNames[] = L"unencrypt-PcmSampleData_??????????.json";

/// Deletes the plain copy at the end of its reading, whatever the reading came to.
class PlainCopyRemoval {
 public:
  explicit PlainCopyRemoval(const std::wstring& path) : path_(path) {}
  PlainCopyRemoval(const PlainCopyRemoval&) = delete;
  PlainCopyRemoval& operator=(const PlainCopyRemoval&) = delete;
  ~PlainCopyRemoval() { _wunlink(path_.c_str()); }

 private:
  const std::wstring& path_;
};

GenericDocument* EmptyArray() {
  auto document = std::make_unique<GenericDocument>();
  document->Parse("[]");
  return document.release();
}

}  // namespace

GenericDocument* ReadSamplesOfDay(
    const std::wstring& folder, const DateTime& day,
    const std::function<void(const std::wstring& path)>& beforeDecrypting) {
  const std::wstring encrypted = EncryptedSamplePath(folder, day);
  if (IsPlainFile(encrypted)) {
    beforeDecrypting(encrypted);
    DecryptSampleFile(encrypted);
  }
  // Where the decryption failed, a copy that an earlier failure left behind is as good.
  return ReadLeftoverCopyOfDay(folder, day);
}

GenericDocument* ReadLeftoverCopyOfDay(const std::wstring& folder, const DateTime& day) {
  const std::wstring plain = PlainSamplePath(folder, day);
  if (!IsPlainFile(plain)) return EmptyArray();
  const PlainCopyRemoval removal(plain);
  return LoadJsonDocument(plain);
}

// By search, not by date: the days that a pass reads need not be those of the pass that was ended.
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
