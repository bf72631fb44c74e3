#pragma once

#include <string>

namespace Faults {

/// The signed collector beside the program.
[[nodiscard]] std::wstring CollectorPath();

/// A file in a folder of packaged applications at the root of a drive.
inline constexpr wchar_t kPackagedFile[] = L"C:\\WindowsApps\\Meadow\\meadow.exe";

}  // namespace Faults
