#pragma once

#include <string>

#include "options.h"

namespace WattleafHost {

/// The input of a command: what the user gave, else for command 2 the icon folder and the days.
std::string InputOf(unsigned int number, const Options& options);

}  // namespace WattleafHost
