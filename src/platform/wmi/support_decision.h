#pragma once

#include <rapidjson/document.h>

#include <cstdint>
#include <functional>
#include <span>

#include "base/json_memory.h"

// Whether the measuring service may run on this machine: the decision and the checks that it is
// based on. The means to send a command, and the answers, are arguments; nothing here calls the
// system.
namespace Zq::Gantry::Server::Shared::WMI {

/// Whether the machine is supported. The host receives these numbers.
inline constexpr int kPlatformUndecided = -2;  ///< not probed yet
inline constexpr int kPlatformNeedsFirmware = -1;
inline constexpr int kPlatformNotSupported = 0;
inline constexpr int kPlatformSupported = 1;

/// Decides from two probes. The second is called only if the first returns true. Never returns
/// kPlatformUndecided.
[[nodiscard]] int DecidePlatformSupport(const std::function<bool()>& readBiosFlag,
                                        const std::function<bool()>& findOemMarker);

/// One command to the firmware. Both buffers stay the caller's.
struct BiosCommand {
  std::int32_t command;                 ///< 1 reads, 2 writes
  std::span<const std::uint8_t> input;  ///< begins with the item, 16 bits, low byte first
  std::span<std::uint8_t> output;       ///< its size selects the firmware's method
};

/// Sends one command. False if it failed, which was logged where it happened. An answer of another
/// size leaves the output bytes as they are and is not a failure.
using BiosCommandRunner = std::function<bool(const BiosCommand&)>;

/// The platform flag of the firmware; false if a command fails. Before that, a value is written and
/// must be read back unchanged: firmware that accepts every command but does nothing gives false.
[[nodiscard]] bool ReadPlatformFlag(const BiosCommandRunner& run);

/// RapidJSON's document over wide characters, for texts as WMI returns them.
using WideDocument =
    rapidjson::GenericDocument<rapidjson::UTF16<wchar_t>,
                               rapidjson::MemoryPoolAllocator<Services::Wattleaf::JsonMemory>,
                               Services::Wattleaf::JsonMemory>;
using WideValue = WideDocument::ValueType;

/// Whether a text in the array "result" of `document`, an object, contains "CarbonSupport=1", in
/// this case. The search ends without a hit at the first element that is not a text.
[[nodiscard]] bool HoldsCarbonMarker(const WideDocument& document);

}  // namespace Zq::Gantry::Server::Shared::WMI
