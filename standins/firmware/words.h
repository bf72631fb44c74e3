#pragma once

#include <string>
#include <vector>

#include "script.h"

// Part of the stand-in for the firmware's WMI objects: the words of WATTLEAF_FIRMWARE.
namespace Standin::Firmware {

std::vector<std::string> SplitWords(const std::string& words);

/// False for a word that means nothing.
bool ApplyWord(const std::string& word, Script& script);

}  // namespace Standin::Firmware
