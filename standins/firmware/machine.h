#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

// Part of the stand-in for the firmware's WMI objects: the simulated notebook that answers them.
namespace Standin::Firmware {

/// A command as the firmware received it.
struct ReceivedCommand {
  std::string method;
  std::string sign;
  LONG command = 0;
  LONG commandType = 0;
  LONG size = 0;
  bool nullData = false;
  std::vector<std::uint8_t> data;
};

/// The firmware's items. Reading item 0x010A returns the value last written to it; reading item
/// 0x010B returns the platform flag. From any thread.
class Machine {
 public:
  void Reset();
  /// Runs a command. Returns `outputBytes` bytes, whose shape the script may change later.
  [[nodiscard]] std::vector<std::uint8_t> Run(const ReceivedCommand& command,
                                              std::size_t outputBytes);
  [[nodiscard]] std::vector<ReceivedCommand> Received() const;

 private:
  mutable std::mutex lock_;
  std::map<unsigned int, std::uint8_t> items_;
  std::vector<ReceivedCommand> received_;
};

/// The one machine of the process.
[[nodiscard]] Machine& TheMachine();

/// Fills the member Data of an answer, in the shape that the script sets.
void MakeAnswerData(VARIANT* value, std::vector<std::uint8_t> bytes);

/// Fills the property OEMStringArray, in the form that the script sets.
void MakeOemStrings(VARIANT* value);

}  // namespace Standin::Firmware
