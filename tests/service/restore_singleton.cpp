// Restores the fields of the WattleafHelper singleton after each test, so that no test depends on
// the state that another one left. Linked into the programs that use the singleton.

#include <gtest/gtest.h>

#include <optional>

#include "collection/open_helper.h"

namespace {

using TestSupport::OfSingleton;
using TestSupport::OpenHelper;

struct State {
  bool running = OfSingleton(&OpenHelper::running);
  bool dataAvailable = OfSingleton(&OpenHelper::dataAvailable);
  bool dataChanged = OfSingleton(&OpenHelper::dataChanged);
  int platformSupportState = OfSingleton(&OpenHelper::PlatformSupportState);
  const wchar_t* collectionPath = OfSingleton(&OpenHelper::collectionPath);

  void Restore() const {
    OfSingleton(&OpenHelper::running) = running;
    OfSingleton(&OpenHelper::dataAvailable) = dataAvailable;
    OfSingleton(&OpenHelper::dataChanged) = dataChanged;
    OfSingleton(&OpenHelper::PlatformSupportState) = platformSupportState;
    OfSingleton(&OpenHelper::collectionPath) = collectionPath;
    OfSingleton(&OpenHelper::dailyLedger).clear();
    // Only a worker that the test has joined may be deleted.
    auto& worker = OfSingleton(&OpenHelper::worker);
    if (worker != nullptr && !worker->joinable()) worker.reset();
  }
};

class SingletonRestorer : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo&) override { before_.emplace(); }
  void OnTestEnd(const testing::TestInfo&) override { before_->Restore(); }

 private:
  std::optional<State> before_;
};

[[maybe_unused]] const bool isListening = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new SingletonRestorer);
  return true;
}();

}  // namespace
