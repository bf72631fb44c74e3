#include "days/sample_days.h"

#include <windows.h>

#include <cstddef>

#include "base/date_text.h"
#include "base/plain_file.h"
#include "ledger/sample_energy.h"
#include "ledger/sample_files.h"
#include "ledger/sample_reader.h"

namespace WattleafHost {

namespace {

using namespace Zq::Gantry::Server::Services::Wattleaf;

class CountingSink final : public JsonRowSink {
 public:
  explicit CountingSink(JsonRowSink& next) : next_(next) {}
  void Take(JsonRow row) override {
    ++count_;
    next_.Take(row);
  }
  [[nodiscard]] std::size_t Count() const { return count_; }

 private:
  JsonRowSink& next_;
  std::size_t count_ = 0;
};

/// A plain copy that was there before a day is read. The library uses it if the encrypted file
/// cannot be decrypted, and deletes it; this object puts it back.
class LeftoverCopy {
 public:
  explicit LeftoverCopy(std::wstring path) : path_(std::move(path)), aside_(path_ + L".aside") {
    exists_ = IsKnownPlainFile(path_) && CopyFileW(path_.c_str(), aside_.c_str(), FALSE);
  }
  LeftoverCopy(const LeftoverCopy&) = delete;
  LeftoverCopy& operator=(const LeftoverCopy&) = delete;
  ~LeftoverCopy() {
    if (exists_) MoveFileExW(aside_.c_str(), path_.c_str(), MOVEFILE_REPLACE_EXISTING);
  }

  /// Decrypts a file. Whether that made a plain copy; if not, the one from before is in place.
  [[nodiscard]] bool Decrypt(const std::wstring& encrypted) {
    DeleteFileW(path_.c_str());
    static_cast<void>(DecryptSampleFile(encrypted));
    if (IsKnownPlainFile(path_)) return true;
    if (exists_) CopyFileW(aside_.c_str(), path_.c_str(), FALSE);
    return false;
  }

 private:
  const std::wstring path_;
  const std::wstring aside_;
  bool exists_ = false;
};

}  // namespace

DayReader SampleDays::Reader() {
  return [this](const DateTime& day, JsonRowSink& sink) { return Read(day, sink); };
}

bool SampleDays::Read(const DateTime& day, JsonRowSink& sink) {
  SampleFile file;
  file.date = FormatDateTime(day, kDateFormat);
  const std::wstring name = EncryptedSamplePath(std::wstring(), day).substr(1);
  if (const auto leftOut = copy_.FindLeftOut(name)) {
    file.state = SampleFileState::kLeftOut;
    file.leftOut = LeftOutText(leftOut->reason);
  }
  CountingSink counting(sink);
  auto outcome = JsonRowsOutcome::kUnreadable;
  bool isDecrypted = false;
  LeftoverCopy leftover(PlainSamplePath(copy_.Folder(), day));
  const bool isUsed = UseSamplesOfDay(
      copy_.Folder(), day,
      [&](const std::wstring& path) {
        isDecrypted = leftover.Decrypt(path);
        if (!isDecrypted) file.state = SampleFileState::kNotDecrypted;
      },
      [&](const std::wstring& path) { outcome = ReadJsonRows(path, kSampleMembers, counting); });
  const bool isRead = isUsed && outcome == JsonRowsOutcome::kRows;
  if (isUsed) file.state = isRead ? SampleFileState::kRead : SampleFileState::kNoList;
  file.samples = isRead ? counting.Count() : 0;
  file.isLeftoverCopy = isUsed && !isDecrypted;
  files_.push_back(std::move(file));
  return isRead;
}

}  // namespace WattleafHost
