#pragma once

#include <string>
#include <vector>

#include "firmware_script.h"

// Part of the stand-in for the firmware's WMI objects: the words of WATTLEAF_FIRMWARE.
namespace Standin::Firmware {

/// Splits at commas; empty words are left out.
[[nodiscard]] std::vector<std::string> SplitWords(const std::string& words);

/// Applies one word. False for an unknown word.
[[nodiscard]] bool ApplyWord(const std::string& word, Script& script);

}  // namespace Standin::Firmware
