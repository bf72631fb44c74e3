#pragma once

#include <windows.h>

#include <string>

namespace WattleafHost {

/// The full path of a loaded module; null means the program itself.
std::wstring ModulePath(HMODULE module);

/// The folder of the program, without trailing separator.
std::wstring ProgramFolder();

/// The folder in which samples and ledger lie; fixed by the service. UTF-8, like all that follows.
inline constexpr const char* kDataFolder =
    "C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector";

/// The log file of the stand-in of Logging.dll, from WATTLEAF_LOG_FILE; empty where it writes to
/// standard error.
std::string LogFile();

/// Where icons go unless another folder is chosen: beside the program, where only administrators
/// write in an installed host.
std::string UsualIconFolder();

/// Whether a file is there, which is no folder.
bool IsFile(const std::string& path);

}  // namespace WattleafHost
