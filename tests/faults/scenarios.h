#pragma once

#include <functional>
#include <string>
#include <vector>

#include "data_folder.h"
#include "loaded_library.h"

namespace Faults {

/// What the operations of a run returned or threw, one text each.
class Results {
 public:
  /// Runs one operation and adds "<name>=<what it returned>" or "<name> throws <type>".
  template <typename Operation>
  void Add(const std::string& name, Operation operation) {
    texts_.push_back(name + Outcome([&] { return "=" + operation(); }));
  }
  /// The same for an operation without a result.
  template <typename Operation>
  void AddVoid(const std::string& name, Operation operation) {
    texts_.push_back(name + Outcome([&] {
                       operation();
                       return std::string(" done");
                     }));
  }

  [[nodiscard]] const std::vector<std::string>& Texts() const { return texts_; }

 private:
  static std::string Outcome(const std::function<std::string()>& operation);

  std::vector<std::string> texts_;
};

struct Scenario {
  const char* name;
  /// What the data folder holds at the start.
  enum class Folder { kMissing, kSamples, kBooked } folder;
  LoadedLibrary::Replacements replacements;
  /// Before a call fails.
  void (*prepare)(LoadedLibrary& library);
  /// The operations in which a call fails.
  void (*run)(LoadedLibrary& library, Results& results);
  /// The next use, in which all calls work again.
  void (*next)(LoadedLibrary& library, Results& results);
};

[[nodiscard]] const std::vector<Scenario>& AllScenarios();

/// Contents of the data folder. kSamples: a ledger and a store of earlier days, and samples of five
/// days up to today; kBooked: the same after a pass.
struct PreparedFolders {
  Files samples;
  Files booked;
};
[[nodiscard]] PreparedFolders PrepareFolders();

}  // namespace Faults
