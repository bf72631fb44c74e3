#pragma once

#include <windows.h>

#include <objbase.h>

#include <string>

#include "firmware_script.h"
#include "live_object.h"
#include "machine.h"
#include "platform/win32/com_owners.h"
#include "platform/win32/unique_resource.h"

// Part of the stand-in for the firmware's WMI objects.
namespace Standin::Firmware {

/// Registration of a class object in COM's table of the process (CoRevokeClassObject). Empty is 0.
struct ClassRegistrationPolicy {
  using Type = DWORD;
  static Type Empty() { return 0; }
  static void Release(Type cookie) { CoRevokeClassObject(cookie); }
};
using ClassRegistration = Zq::Gantry::Platform::UniqueResource<ClassRegistrationPolicy>;

/// Simulates WMI in this process while the object exists: for all threads of the multithreaded
/// apartment, which the calling thread joins. Created and destroyed on one thread.
class RegisteredFirmware {
 public:
  /// `words` as in WATTLEAF_FIRMWARE. Throws std::runtime_error for an unknown word, or if COM does
  /// not register the class.
  explicit RegisteredFirmware(const std::string& words = {});
  RegisteredFirmware(const RegisteredFirmware&) = delete;
  RegisteredFirmware& operator=(const RegisteredFirmware&) = delete;

  [[nodiscard]] Script& script() { return TheScript(); }
  [[nodiscard]] Machine& machine() { return TheMachine(); }

 private:
  // The order matters: the registration ends before the membership.
  Zq::Gantry::Platform::ComMembership membership_;
  ClassRegistration registration_;
};

}  // namespace Standin::Firmware
