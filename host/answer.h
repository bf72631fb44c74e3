#pragma once

#include <string>

namespace WattleafHost {

/// What one command gave. `text` is UTF-8 and empty unless the status is 0.
struct Answer {
  unsigned int number = 0;
  int status = 0;
  std::string text;
};

/// "0" or the status in hex, as "0x20000001".
std::string StatusText(int status);

/// What a status other than 0 means, in words for people. Command 2 has no answer before the first
/// report of the energy tool.
std::string StatusMeaning(const Answer& answer);

/// False for an answer that a working service would not give.
bool IsAsExpected(const Answer& answer);

}  // namespace WattleafHost
