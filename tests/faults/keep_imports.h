#pragma once

namespace Faults {

/// Keeps loaded, until the process ends, what a library imports. From then on nothing of the system
/// or of the C++ runtime is freed with the library. Throws std::runtime_error if it does not load.
void KeepImportsOf(const wchar_t* library);

}  // namespace Faults
