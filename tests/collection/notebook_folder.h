#pragma once

#include <string>
#include <vector>

#include "collection/pass_model.h"
#include "support/temp_folder.h"

namespace TestSupport {

/// A data folder on disk with the state that a pass finds. The samples are not encrypted.
class NotebookFolder {
 public:
  explicit NotebookFolder(const FolderState& state);
  /// A copy of all files.
  NotebookFolder(const NotebookFolder& other);
  NotebookFolder& operator=(const NotebookFolder&) = delete;

  [[nodiscard]] const std::wstring& Path() const { return folder_.Path(); }
  [[nodiscard]] std::wstring LedgerPath() const { return folder_.File(L"PowerConsumption.json"); }
  [[nodiscard]] std::wstring StorePath() const { return folder_.File(L"Powerlog.json"); }
  [[nodiscard]] std::wstring ReportPath() const { return folder_.File(L"Powerlog.xml"); }
  [[nodiscard]] std::wstring SamplePath(int back) const;

  /// What is there now. Fails the test if a sample file has changed.
  [[nodiscard]] FolderState State() const;

  /// The names of all files that match, such as L"unencrypt-*".
  [[nodiscard]] std::vector<std::wstring> Names(const std::wstring& pattern) const;

 private:
  const TempFolder folder_;
};

/// The text of a ledger file, and of a store file.
[[nodiscard]] std::string LedgerText(const DayEnergies& ledger);
[[nodiscard]] std::string StoreText(const std::vector<std::string>& rows);

/// Whether WATTLEAF_ALL_MOMENTS is in the environment: tests that take minutes then try all
/// moments, lengths and writes, and otherwise a few.
[[nodiscard]] bool AreAllMomentsWanted();

}  // namespace TestSupport
