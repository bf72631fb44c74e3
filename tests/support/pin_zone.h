#pragma once

namespace TestSupport {

/// Sets the C library's time zone to UTC, or to the one in the environment variable
/// WATTLEAF_TEST_ZONE. Must be called before the first use of local time.
void PinZone();

}  // namespace TestSupport
