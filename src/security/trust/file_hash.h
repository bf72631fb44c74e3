#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Zq::Gantry::Security {

/// The hash by which security catalogs list a file.
struct FileHash {
  std::vector<std::uint8_t> bytes;  ///< as the system computed it
  /// The same in upper-case hexadecimal, two digits for each byte; empty after a failure.
  std::wstring hexText;
};

}  // namespace Zq::Gantry::Security
