#pragma once

#include <string>

// What the command lines of two tools may name. A command line is that of the tool without the
// tool's own name.
namespace Zq::Gantry::Security {

/// Whether the first argument that is no switch names a file that is trusted like the collector
/// library and lies in an allowed place. True where there is none.
bool CheckRegsvr32Arguments(const std::wstring& commandLine);

/// The same for the first argument up to its first comma. True without an argument.
bool CheckRundll32Arguments(const std::wstring& commandLine);

}  // namespace Zq::Gantry::Security
