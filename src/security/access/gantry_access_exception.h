#pragma once

#include <stdexcept>

#include "wattleaf_export.h"

namespace Zq::Gantry::Security {

/// A question was put to a GantryAccessManager that has nobody to ask. The only exception of the
/// system's own that leaves the library.
class WATTLEAF_API gantry_access_exception : public std::logic_error {
 public:
  explicit gantry_access_exception(const char* message);
  gantry_access_exception(const gantry_access_exception& other) noexcept;
  gantry_access_exception(gantry_access_exception&& other) noexcept;
  gantry_access_exception& operator=(const gantry_access_exception& other) noexcept;
  gantry_access_exception& operator=(gantry_access_exception&& other) noexcept;
  ~gantry_access_exception() override;
};

}  // namespace Zq::Gantry::Security
