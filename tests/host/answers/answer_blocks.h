#pragma once

#include <string>

namespace TestSupport {

/// A bar of so many whole characters.
inline std::string Blocks(std::size_t count) {
  std::string bar;
  for (std::size_t i = 0; i < count; ++i) bar += "\xE2\x96\x88";
  return bar;
}

}  // namespace TestSupport
