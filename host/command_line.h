#pragma once

#include <string>
#include <vector>

namespace WattleafHost {

/// The arguments behind the program's name, as UTF-8. Asked of the system: the C library's copy is
/// in the code page, and its start-up code may have expanded "*" and "?", which command 2 needs.
std::vector<std::string> CommandLineArguments();

}  // namespace WattleafHost
