#include "platform/win32/unique_resource.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<int> released;

struct NumberPolicy {
  using Type = int;
  static Type Empty() { return 0; }
  static void Release(Type number) { released.push_back(number); }
};

struct SpoilingPolicy {
  using Type = int;
  static Type Empty() { return 0; }
  static void Release(Type) { SetLastError(ERROR_INVALID_HANDLE); }
};

using SharedNumber = Zq::Gantry::Platform::SharedResource<NumberPolicy>;

class SharedResource : public testing::Test {
 protected:
  SharedResource() { released.clear(); }
};

}  // namespace

TEST_F(SharedResource, StartsEmptyAndReleasesNothing) {
  {
    const SharedNumber resource;
    EXPECT_FALSE(resource);
    EXPECT_EQ(resource.get(), 0);
  }
  EXPECT_THAT(released, IsEmpty());
}

TEST_F(SharedResource, ReleasesTheOldValueOnceOnReset) {
  SharedNumber resource;
  resource.reset(1);
  EXPECT_TRUE(resource);
  EXPECT_THAT(released, IsEmpty());
  resource.reset(2);
  EXPECT_THAT(released, ElementsAre(1));
  EXPECT_EQ(resource.get(), 2);
  resource.reset();
  resource.reset();
  EXPECT_FALSE(resource);
  EXPECT_THAT(released, ElementsAre(1, 2));
}

TEST_F(SharedResource, ReleasesOnceInTheDestructor) {
  {
    SharedNumber resource;
    resource.reset(3);
  }
  EXPECT_THAT(released, ElementsAre(3));
}

TEST_F(SharedResource, KeepsTheLastErrorDuringARelease) {
  Zq::Gantry::Platform::SharedResource<SpoilingPolicy> resource;
  resource.reset(1);
  SetLastError(ERROR_FILE_NOT_FOUND);
  resource.reset();
  EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
}

TEST_F(SharedResource, DoesNotReleaseAfterGivingUp) {
  {
    SharedNumber resource;
    resource.reset(4);
    EXPECT_EQ(resource.release(), 4);
    EXPECT_FALSE(resource);
  }
  EXPECT_THAT(released, IsEmpty());
}

TEST_F(SharedResource, PublishesEarlierWritesToAReaderOnAnotherThread) {
  SharedNumber resource;
  int written = 0;
  std::jthread owner([&] {
    written = 5;
    resource.reset(6);
  });
  while (!resource) std::this_thread::yield();
  EXPECT_EQ(resource.get(), 6);
  EXPECT_EQ(written, 5);
}
