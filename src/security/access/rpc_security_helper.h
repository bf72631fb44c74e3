#pragma once

#include <string>

#include "export.h"

namespace Zq::Gantry::Security {

/// Who calls. Made for one question and given up at once.
class WATTLEAF_API RpcSecurityHelper {
 public:
  /// The package family name of the process whose remote procedure call this thread serves; empty
  /// where it could not be established.
  std::wstring GetPFNOfCaller() const;
};

}  // namespace Zq::Gantry::Security
