#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/calendar.h"

namespace WattleafHost {

/// Why a file of the data folder is not in the copy.
enum class LeftOutReason {
  kFolder,
  /// A symbolic link, a junction or another reparse point that leads elsewhere.
  kLink,
  /// A pipe or a device.
  kNoFile,
  /// Larger than the library reads from any file of the data folder.
  kTooLarge,
  /// It exists, but the system does not let this user read it.
  kUnreadable,
};

/// The reason in words: "a link".
[[nodiscard]] const char* LeftOutText(LeftOutReason reason);

struct LeftOutFile {
  std::wstring name;
  LeftOutReason reason;
  std::uint32_t systemError = 0;  ///< why it is unreadable; 0 for the other reasons
};

/// A private copy of a few files of a data folder, in a new folder below the user's folder for
/// temporary files that only this user, the system and administrators can enter. The library's code
/// may write and delete there; nothing in the data folder changes. The destructor removes the
/// folder with all that it holds.
///
/// Files keep the time of their last change. Other programs keep their access to the data folder,
/// so that a file may be copied while it is being written.
class DataCopy {
 public:
  /// Copies nothing yet. `dataFolder` has no separator at its end and need not exist. Throws
  /// FileFailure if the new folder cannot be made.
  explicit DataCopy(std::wstring dataFolder);
  DataCopy(const DataCopy&) = delete;
  DataCopy& operator=(const DataCopy&) = delete;
  ~DataCopy();

  /// Absolute, without a separator at its end.
  [[nodiscard]] const std::wstring& Folder() const { return folder_; }
  /// The path in the copy of a file by its name.
  [[nodiscard]] std::wstring File(const std::wstring& name) const { return folder_ + L"\\" + name; }

  /// Copies the file of this name, without following a link. A missing file is skipped; one that
  /// cannot be copied is added to LeftOut. True if the file is in the copy. A second call for a
  /// file does nothing. Throws FileFailure if the copy cannot be written.
  bool Add(const std::wstring& name);

  /// Copies the encrypted sample file of a day, and a plain copy that a broken-off pass left.
  void AddSamplesOf(const Zq::Gantry::Server::Services::Wattleaf::DateTime& day);

  /// In the order in which they were asked for.
  [[nodiscard]] const std::vector<LeftOutFile>& LeftOut() const { return leftOut_; }
  /// The file of this name, if it was left out.
  [[nodiscard]] std::optional<LeftOutFile> FindLeftOut(const std::wstring& name) const;

 private:
  /// Both return false.
  bool LeaveOutNoPlainFile(const std::wstring& name, const std::wstring& source);
  bool LeaveOut(const std::wstring& name, LeftOutReason reason, std::uint32_t systemError = 0);

  const std::wstring dataFolder_;
  std::wstring folder_;
  std::vector<LeftOutFile> leftOut_;
};

}  // namespace WattleafHost
