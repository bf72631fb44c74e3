#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

#include "base/local_time.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The order of a ledger's days: that of their instants, as by operator< of DateTime. It asks the C
/// library for the instants of days that are near each other, unless KnownDays has them.
class DayOrder {
 public:
  class KnownDays;

  [[nodiscard]] bool operator()(const DateTime& left, const DateTime& right) const;

 private:
  /// Shared by the copies of the object: a map returns only a copy of its order.
  std::shared_ptr<const KnownDays*> known_ = std::make_shared<const KnownDays*>(nullptr);
};

/// Two days whose instants are known. While it exists, the order and its copies compare them with
/// each other by these instants. One at a time for an order, on the thread that changes the map.
class DayOrder::KnownDays {
 public:
  /// Borrows the order.
  KnownDays(const DayOrder& order, const LocalTime& one, const LocalTime& other);
  KnownDays(const KnownDays&) = delete;
  KnownDays& operator=(const KnownDays&) = delete;
  ~KnownDays();

  /// Empty for another day than these two.
  [[nodiscard]] std::optional<std::int64_t> TryFind(const DateTime& day) const;

 private:
  const DayOrder& order_;
  std::array<LocalTime, 2> days_;
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
