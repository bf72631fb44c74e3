#pragma once

#include <map>
#include <string>

namespace Faults {

inline constexpr wchar_t kDataFolder[] =
    L"C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector";
inline constexpr wchar_t kIconFolder[] = L"C:\\users\\Public\\Wattleaf faults";

/// The files of a folder: content by name.
using Files = std::map<std::wstring, std::string>;

/// Empty for a folder that does not exist.
[[nodiscard]] Files ReadFolder(const wchar_t* folder);
/// Makes the folder hold these files and nothing else.
void WriteFolder(const wchar_t* folder, const Files& files);
void RemoveFolder(const wchar_t* folder);

}  // namespace Faults
