#include "support/pin_zone.h"

#include <stdlib.h>
#include <time.h>

namespace TestSupport {

void PinZone() {
  // The C library reads TZ as a POSIX rule and ignores the zone database. Without TZ it uses the
  // system's zone, which is the one in which the test was started.
  _putenv(getenv("WATTLEAF_TEST_ZONE") != nullptr ? "TZ=" : "TZ=UTC0");
  _tzset();
}

}  // namespace TestSupport
