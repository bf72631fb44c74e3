#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

// RPC_CALL_ATTRIBUTES of version 3, by size and offset, since not every toolchain declares it.
namespace TestSupport {

inline constexpr std::size_t kCallAttributesBytes = 120;

/// Writes the id of the client's process, which has 64 bits there.
inline void WriteClientId(void* attributes, DWORD client) {
  constexpr std::size_t kClientIdOffset = 64;
  const std::uint64_t wide = client;
  std::memcpy(static_cast<unsigned char*>(attributes) + kClientIdOffset, &wide, sizeof(wide));
}

}  // namespace TestSupport
