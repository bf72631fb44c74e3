#pragma once

#include <windows.h>

#include <string>

#include "live_object.h"
#include "machine.h"
#include "script.h"

// Part of the stand-in for the firmware's WMI objects.
namespace Standin::Firmware {

/// Simulates WMI in this process for as long as it lives: for all threads of the multithreaded
/// apartment, of which the calling thread becomes a member.
class RegisteredFirmware {
 public:
  /// `words` as in WATTLEAF_FIRMWARE. Throws std::runtime_error for an unknown word, or where COM
  /// refuses.
  explicit RegisteredFirmware(const std::string& words = {});
  RegisteredFirmware(const RegisteredFirmware&) = delete;
  RegisteredFirmware& operator=(const RegisteredFirmware&) = delete;
  ~RegisteredFirmware();

  Script& script() { return TheScript(); }
  Machine& machine() { return TheMachine(); }

 private:
  DWORD cookie_ = 0;
};

}  // namespace Standin::Firmware
