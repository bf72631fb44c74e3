#pragma once

#include "wattleaf_export.h"

namespace Zq::Gantry::Security {

/// Decides whether a client needs no signed manifest. A host may implement it and set it in a
/// GantryAccessManager, which holds it in a shared_ptr and calls it on the querying thread.
/// manifest_exemption.h has the two implementations of this library. The order of the virtual
/// functions, destructor first, is a contract.
class WATTLEAF_API IClientWithNoZqManifestCheckCriteria {
 public:
  /// Destroyed through the manager's pointer.
  virtual ~IClientWithNoZqManifestCheckCriteria() = default;
  /// Whether the client is exempt. May throw; the exception reaches the manager's caller.
  virtual bool IsAnException() = 0;
};

}  // namespace Zq::Gantry::Security
