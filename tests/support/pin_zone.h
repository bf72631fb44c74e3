#pragma once

namespace TestSupport {

/// Makes the C library's zone UTC, whatever the machine's, or the one that the environment variable
/// WATTLEAF_TEST_ZONE names. Call before any local time is asked for.
void PinZone();

}  // namespace TestSupport
