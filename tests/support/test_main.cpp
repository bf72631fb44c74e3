#include <gtest/gtest.h>

#include "support/pin_zone.h"

int main(int argc, char** argv) {
  TestSupport::PinZone();
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
