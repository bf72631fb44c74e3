#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "base/local_time.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Times whose instants are known, for the comparisons of DateTime that this thread makes while the
/// object exists: they do not ask the C library for these. One at a time on each thread.
class KnownInstants {
 public:
  KnownInstants(const LocalTime& one, const LocalTime& other);
  KnownInstants(const KnownInstants&) = delete;
  KnownInstants& operator=(const KnownInstants&) = delete;
  ~KnownInstants();

  /// The instant of `time`; empty if it is not known on this thread.
  [[nodiscard]] static std::optional<std::int64_t> TryFind(const DateTime& time);

 private:
  std::array<LocalTime, 2> times_;
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
