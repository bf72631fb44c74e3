#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

// Part of the stand-in for the firmware's WMI objects: the notebook behind them.
namespace Standin::Firmware {

/// A command as it arrived.
struct ReceivedCommand {
  std::string method;
  std::string sign;
  LONG command = 0;
  LONG commandType = 0;
  LONG size = 0;
  bool nullData = false;
  std::vector<std::uint8_t> data;
};

/// Item 0x010A keeps what is written to it; item 0x010B reads as the platform flag.
class Machine {
 public:
  void Reset();
  /// The bytes that the firmware answers, before the script distorts their shape.
  std::vector<std::uint8_t> Run(const ReceivedCommand& command, std::size_t outputBytes);
  std::vector<ReceivedCommand> Received() const;

 private:
  mutable std::mutex lock_;
  std::map<unsigned int, std::uint8_t> items_;
  std::vector<ReceivedCommand> received_;
};

/// The one machine of the process.
Machine& TheMachine();

/// The member Data of an answer, in the shape that the script asks for.
void MakeAnswerData(VARIANT* value, std::vector<std::uint8_t> bytes);

/// The property OEMStringArray, in the form that the script asks for.
void MakeOemStrings(VARIANT* value);

}  // namespace Standin::Firmware
