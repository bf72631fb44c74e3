#include "ledger/sample_reader.h"

#include <io.h>

#include <memory>

#include "ledger/decrypt_sample_file.h"
#include "ledger/plain_file.h"
#include "ledger/sample_files.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

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
  const std::wstring plain = PlainSamplePath(folder, day);
  if (IsPlainFile(encrypted)) {
    beforeDecrypting(encrypted);
    DecryptSampleFile(encrypted);
  }
  // A copy that an earlier failure left behind is as good.
  if (!IsPlainFile(plain)) return EmptyArray();
  const PlainCopyRemoval removal(plain);
  return LoadJsonDocument(plain);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
