#pragma once

#include <atomic>
#include <memory>
#include <utility>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// A value that is made aside and handed over whole: a reader keeps the one it took, whatever is
/// handed over later. Any thread may call either operation.
template <typename Value>
class Published {
 public:
  std::shared_ptr<const Value> Current() const { return current_.load(); }
  void Replace(Value value) { current_.store(std::make_shared<const Value>(std::move(value))); }

 private:
  std::atomic<std::shared_ptr<const Value>> current_{std::make_shared<const Value>()};
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
