#pragma once

#include <string_view>

#include "import_list.h"

namespace Faults {

/// Why an import is left out; empty if it is in none of the lists.
[[nodiscard]] std::string_view ListedReason(const Import& import);

}  // namespace Faults
