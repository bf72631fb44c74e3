#include "platform/win32/unique_resource.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;
using Zq::Gantry::Platform::SharedResource;

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

class SharedResourceLife : public testing::Test {
 protected:
  SharedResourceLife() { released.clear(); }
};

}  // namespace

TEST_F(SharedResourceLife, IsEmptyAtFirstAndReleasesNothing) {
  {
    const SharedResource<NumberPolicy> resource;
    EXPECT_FALSE(resource);
    EXPECT_EQ(resource.get(), 0);
  }
  EXPECT_THAT(released, IsEmpty());
}

TEST_F(SharedResourceLife, ResetReleasesWhatWasHeldOnce) {
  SharedResource<NumberPolicy> resource;
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

TEST_F(SharedResourceLife, TheDestructorReleasesOnce) {
  {
    SharedResource<NumberPolicy> resource;
    resource.reset(3);
  }
  EXPECT_THAT(released, ElementsAre(3));
}

TEST(SharedResource, KeepsTheLastErrorDuringARelease) {
  SharedResource<SpoilingPolicy> resource;
  resource.reset(1);
  SetLastError(ERROR_FILE_NOT_FOUND);
  resource.reset();
  EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
}

TEST_F(SharedResourceLife, WhatIsGivenUpIsNotReleased) {
  {
    SharedResource<NumberPolicy> resource;
    resource.reset(4);
    EXPECT_EQ(resource.release(), 4);
    EXPECT_FALSE(resource);
  }
  EXPECT_THAT(released, IsEmpty());
}

TEST_F(SharedResourceLife, AReaderOnAnotherThreadSeesWhatWasWrittenBefore) {
  SharedResource<NumberPolicy> resource;
  int written = 0;
  std::jthread owner([&] {
    written = 5;
    resource.reset(6);
  });
  while (!resource) std::this_thread::yield();
  EXPECT_EQ(resource.get(), 6);
  EXPECT_EQ(written, 5);
}
