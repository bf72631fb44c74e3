#pragma once

#include <windows.h>

#include <string>

namespace WattleafHost {

/// The full path of a loaded module; null is the program itself.
[[nodiscard]] std::wstring ModulePath(HMODULE module);

/// The folder of the program, without a separator at its end.
[[nodiscard]] std::wstring ProgramFolder();

/// The folder of samples and ledger, which the service fixes. UTF-8, like all texts below.
inline constexpr const char* kDataFolder =
    "C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector";

/// The log file of the stand-in for Logging.dll, from WATTLEAF_LOG_FILE; empty if it writes to
/// standard error.
[[nodiscard]] std::string LogFile();

/// The default folder for icons: beside the program, where only administrators can write once the
/// host is installed.
[[nodiscard]] std::string DefaultIconFolder();

/// Whether `path` is a file that exists; false for a folder.
[[nodiscard]] bool IsFile(const std::string& path);

}  // namespace WattleafHost
