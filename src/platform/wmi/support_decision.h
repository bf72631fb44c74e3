#pragma once

#include <functional>

namespace Zq::Gantry::Server::Shared::WMI {

/// What is known of the machine's support.
inline constexpr int kPlatformUndecided = -2;
inline constexpr int kPlatformNeedsFirmware = -1;
inline constexpr int kPlatformNotSupported = 0;
inline constexpr int kPlatformSupported = 1;

/// Whether the measuring service may run here. The second probe is asked only where the first one
/// says yes; never gives kPlatformUndecided.
[[nodiscard]] int DecidePlatformSupport(const std::function<bool()>& readBiosFlag,
                                        const std::function<bool()>& findOemMarker);

}  // namespace Zq::Gantry::Server::Shared::WMI
