#pragma once

#include <memory>

#include "security/access/client_manifest_criteria.h"
#include "security/access/exemption_white_lists.h"
#include "security/access/gantry_access_exception.h"
#include "wattleaf_export.h"

namespace Zq::Gantry::Security {

/// Says whether a client is exempt from having a signed manifest. For a call: fill the client's
/// information, take the list with GetExemption, make the checker, install it here, ask. Copies
/// share everything. No lock: setting and asking must not run beside each other on one manager.
class WATTLEAF_API GantryAccessManager {
 public:
  GantryAccessManager();
  GantryAccessManager(const GantryAccessManager& other);
  GantryAccessManager& operator=(const GantryAccessManager& other);
  ~GantryAccessManager();

  /// Replaces the checker; an empty one takes it away.
  void SetUwpChecker(std::shared_ptr<IClientWithNoZqManifestCheckCriteria> checker);
  void SetWin32Checker(std::shared_ptr<IClientWithNoZqManifestCheckCriteria> checker);

  /// The checker's answer. Throws gantry_access_exception where there is none.
  bool IsUwpExempt();
  bool IsWin32Exempt();

 private:
  std::shared_ptr<UwpWithNoZQManifestExemptionWhiteList> uwpWhiteList_;
  std::shared_ptr<void> reserved_;  ///< stays empty; a place that the host's layout has
  std::shared_ptr<IClientWithNoZqManifestCheckCriteria> uwpChecker_;
  std::shared_ptr<IClientWithNoZqManifestCheckCriteria> win32Checker_;
};

}  // namespace Zq::Gantry::Security
