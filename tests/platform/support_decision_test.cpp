#include "platform/wmi/support_decision.h"

#include <gtest/gtest.h>

using namespace Zq::Gantry::Server::Shared::WMI;

namespace {

struct Probes {
  bool flag = false;
  bool marker = false;
  int flagReads = 0;
  int markerReads = 0;

  int Decide() {
    return DecidePlatformSupport(
        [this] {
          ++flagReads;
          return flag;
        },
        [this] {
          ++markerReads;
          return marker;
        });
  }
};

}  // namespace

TEST(DecidePlatformSupport, ReturnsSupportedForFlagAndMarker) {
  Probes probes{.flag = true, .marker = true};
  EXPECT_EQ(probes.Decide(), 1);
  EXPECT_EQ(probes.flagReads, 1);
  EXPECT_EQ(probes.markerReads, 1);
}

TEST(DecidePlatformSupport, RequiresAFirmwareUpdateForAFlagWithoutMarker) {
  Probes probes{.flag = true, .marker = false};
  EXPECT_EQ(probes.Decide(), -1);
}

TEST(DecidePlatformSupport, DoesNotReadTheMarkerWithoutTheFlag) {
  Probes probes{.flag = false, .marker = true};
  EXPECT_EQ(probes.Decide(), 0);
  EXPECT_EQ(probes.markerReads, 0);
}

TEST(DecidePlatformSupport, ReturnsTheStateNumbersThatClientsRead) {
  EXPECT_EQ(kPlatformUndecided, -2);
  EXPECT_EQ(kPlatformNeedsFirmware, -1);
  EXPECT_EQ(kPlatformNotSupported, 0);
  EXPECT_EQ(kPlatformSupported, 1);
}
