#include <stdlib.h>
#include <time.h>

#include "support/pin_zone.h"

namespace TestSupport {

void PinZone() {
  // The C library reads TZ as a POSIX text and ignores the zone database; without TZ it asks the
  // system, whose zone is the one that the test was started in.
  _putenv(getenv("WATTLEAF_TEST_ZONE") != nullptr ? "TZ=" : "TZ=UTC0");
  _tzset();
}

}  // namespace TestSupport
