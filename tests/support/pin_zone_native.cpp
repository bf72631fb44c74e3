#include "support/pin_zone.h"

#include <stdlib.h>
#include <time.h>

namespace TestSupport {

void PinZone() {
  const char* zone = getenv("WATTLEAF_TEST_ZONE");
  setenv("TZ", zone != nullptr ? zone : "UTC0", /*overwrite=*/1);
  tzset();
}

}  // namespace TestSupport
