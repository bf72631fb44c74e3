#pragma once

#include "wattleaf_export.h"

namespace Zq::Gantry::Security {

/// Who judges whether a client needs no manifest. The order of the virtual operations is a
/// contract.
class WATTLEAF_API IClientWithNoZqManifestCheckCriteria {
 public:
  virtual ~IClientWithNoZqManifestCheckCriteria() = default;
  virtual bool IsAnException() = 0;
};

}  // namespace Zq::Gantry::Security
