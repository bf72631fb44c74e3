#pragma once

#include "platform/win32/com_owners.h"

namespace Zq::Gantry::Platform::WinRt {

/// The multithreaded apartment for the calling thread, for as long as this lives, if the thread has
/// none. A thread of another apartment stays where it is, and calls are made from there.
class ApartmentMembership {
 public:
  ApartmentMembership() {
    if (FAILED(membership_.Result())) membership_.GiveUp();
  }

 private:
  ComMembership membership_;
};

}  // namespace Zq::Gantry::Platform::WinRt
