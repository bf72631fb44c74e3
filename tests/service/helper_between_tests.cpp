// Puts the one helper of the process back after each test as it was before, so that no test sees
// what another has set.

#include <gtest/gtest.h>

#include <optional>

#include "collection/open_helper.h"

namespace {

using TestSupport::OpenHelper;
using Zq::Gantry::Server::Services::Wattleaf::WattleafHelper;

template <typename Field>
Field& Of(Field WattleafHelper::*field) {
  return WattleafHelper::Instance().*field;
}

struct State {
  bool running = Of(&OpenHelper::running);
  bool dataAvailable = Of(&OpenHelper::dataAvailable);
  bool dataChanged = Of(&OpenHelper::dataChanged);
  int platformSupportState = Of(&OpenHelper::PlatformSupportState);
  const wchar_t* collectionPath = Of(&OpenHelper::collectionPath);

  void Restore() const {
    Of(&OpenHelper::running) = running;
    Of(&OpenHelper::dataAvailable) = dataAvailable;
    Of(&OpenHelper::dataChanged) = dataChanged;
    Of(&OpenHelper::PlatformSupportState) = platformSupportState;
    Of(&OpenHelper::collectionPath) = collectionPath;
    Of(&OpenHelper::dailyLedger).clear();
    // A worker that its test has joined.
    auto& worker = Of(&OpenHelper::worker);
    if (worker != nullptr && !worker->joinable()) worker.reset();
  }
};

class RestoresTheHelper : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo&) override { before_.emplace(); }
  void OnTestEnd(const testing::TestInfo&) override { before_->Restore(); }

 private:
  std::optional<State> before_;
};

[[maybe_unused]] const bool isListening = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new RestoresTheHelper);
  return true;
}();

}  // namespace
