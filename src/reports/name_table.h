#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// A map of names that occur again and again, such as the applications of a report. A name that
/// was looked up lately costs one comparison, since a small table in front of the ordered map
/// remembers it. Others choose the names: however they collide in that table, a look-up costs no
/// more than the map's, one comparison for each doubling of the number of names. Used by one
/// thread.
template <typename Value>
class NameTable {
 public:
  /// A name and its value. Stays in place until it is erased.
  using Entry = std::pair<const std::string, Value>;

  NameTable() = default;
  NameTable(NameTable&&) = default;
  NameTable& operator=(NameTable&&) = default;

  /// The entry of `name`, or null.
  [[nodiscard]] Entry* TryFind(std::string_view name) {
    Entry*& recent = RecentOf(name);
    if (recent != nullptr && recent->first == name) return recent;
    const auto found = entries_.find(name);
    if (found == entries_.end()) return nullptr;
    recent = &*found;
    return recent;
  }

  /// The entry of `name`, which is added with `value` if it is new.
  Entry& FindOrAdd(std::string_view name, Value value) {
    if (Entry* known = TryFind(name)) return *known;
    Entry& added = *entries_.try_emplace(std::string(name), std::move(value)).first;
    RecentOf(name) = &added;
    return added;
  }

  void Erase(const Entry& entry) {
    Entry*& recent = RecentOf(entry.first);
    if (recent == &entry) recent = nullptr;
    entries_.erase(entries_.find(entry.first));
  }

 private:
  /// Some ten times the applications of a notebook, so that few share a place.
  static constexpr std::size_t kRecentEntries = 4096;

  Entry*& RecentOf(std::string_view name) {
    return recent_[std::hash<std::string_view>{}(name) % kRecentEntries];
  }

  std::map<std::string, Value, std::less<>> entries_;
  std::vector<Entry*> recent_ = std::vector<Entry*>(kRecentEntries);
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
