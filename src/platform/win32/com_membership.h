#pragma once

#include <windows.h>

#include <objbase.h>

namespace Zq::Gantry::Platform {

/// Membership of the calling thread in the multithreaded COM apartment, begun by the constructor
/// and ended by the destructor on the same thread.
///
/// Kept on purpose: it is ended also where it could not be begun, so that on a thread of another
/// apartment the counts of that thread do not match.
class ComMembership {
 public:
  ComMembership() : result_(CoInitializeEx(/*reserved=*/nullptr, COINIT_MULTITHREADED)) {}
  ComMembership(const ComMembership&) = delete;
  ComMembership& operator=(const ComMembership&) = delete;
  ~ComMembership() {
    if (held_) CoUninitialize();
  }

  /// What CoInitializeEx gave.
  HRESULT Result() const { return result_; }
  /// From here on somebody else ends the membership, or nobody does.
  void GiveUp() { held_ = false; }

 private:
  HRESULT result_;
  bool held_ = true;
};

}  // namespace Zq::Gantry::Platform
