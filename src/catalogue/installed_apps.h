#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

// The two catalogues of installed applications, and how they are shared between threads.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// Desktop programs that the registry lists as installed. Key: display name, as in the registry.
/// Value: the raw text of the icon's location, empty if the registry has none.
using DesktopApps = std::map<std::wstring, std::wstring>;

/// What clients see of one packaged application. Both texts hold the low byte of each UTF-16 unit.
struct UwpAppRecord {
  std::string DisplayName;
  std::string Logo;  ///< absolute path of a small logo file
};

/// Packaged applications. Key: the package name without its version, ordered by bytes, then length.
using PackagedApps = std::map<std::string, UwpAppRecord>;

/// A value that is built separately and then replaced as a whole. A reader keeps the value that it
/// got, even if it is replaced later. Both operations may be called on any thread.
template <typename Value>
class Published {
 public:
  /// Never null; a default-constructed value before the first Replace.
  [[nodiscard]] std::shared_ptr<const Value> Current() const {
    const std::lock_guard guard(lock_);
    return current_;
  }
  void Replace(Value value) {
    auto other = std::make_shared<const Value>(std::move(value));
    const std::lock_guard guard(lock_);
    current_.swap(other);  // the old value is released after the lock
  }

 private:
  // Not std::atomic<std::shared_ptr>: in libstdc++ 12 its load races with a store.
  mutable std::mutex lock_;
  std::shared_ptr<const Value> current_ = std::make_shared<const Value>();
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
