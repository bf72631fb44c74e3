#pragma once

#include <cstdint>

#include "loaded_library.h"

namespace Faults {

/// A catalog service that lists every file; Wine has none.
[[nodiscard]] LoadedLibrary::Replacements WorkingCatalogs();
/// A remote procedure call of this process, which is in a package; Wine cannot name its client.
[[nodiscard]] LoadedLibrary::Replacements ClientCall();
/// A client whose process cannot be opened.
inline constexpr std::uint32_t kUnreachableClient = 0xFFFFFF0;
/// Whether the calls come from it, and not from this process.
void ServeUnreachableClient(bool unreachable);
/// What both still hold: contexts, catalogs and impersonations that were not released.
[[nodiscard]] int HeldBySimulatedSystem();
void ForgetHeldBySimulatedSystem();

}  // namespace Faults
