#pragma once

#include <cstdint>
#include <functional>
#include <span>

namespace Zq::Gantry::Server::Shared::WMI {

struct BiosCommand {
  std::int32_t command;                 ///< 1 reads, 2 writes
  std::span<const std::uint8_t> input;  ///< begins with the item, 16 bits, low byte first
  std::span<std::uint8_t> output;       ///< its size selects the firmware's method
};

/// Sends one command; false where it failed, which is logged where it happened. An answer of
/// another size leaves the output bytes as they are and is no failure.
using BiosCommandRunner = std::function<bool(const BiosCommand&)>;

/// The platform flag of the firmware. A value is written first and must be read back, so that a
/// firmware that only swallows commands reads as false.
[[nodiscard]] bool ReadPlatformFlag(const BiosCommandRunner& run);

}  // namespace Zq::Gantry::Server::Shared::WMI
