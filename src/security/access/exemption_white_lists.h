#pragma once

#include <memory>
#include <vector>

#include "security/access/matching_descriptor.h"
#include "wattleaf_export.h"

// The clients that need no manifest, up to a version. Built while the library loads, never changed;
// the lists themselves are not exported.
namespace Zq::Gantry::Security {

class UwpWithNoZQManifestExemptionWhiteList {
 public:
  /// A copy of the list that belongs to the caller: changing it reaches neither the list nor
  /// another copy. Never null. From any thread.
  WATTLEAF_API static std::shared_ptr<std::vector<UwpMatchingDescriptor>> GetExemption();

 private:
  static const std::vector<UwpMatchingDescriptor> _white_list;
};

class Win32WithNoZQManifestExemptionWhiteList {
 public:
  /// The same for classic programs. The names are lower case, as a client's name is when it is
  /// compared.
  WATTLEAF_API static std::shared_ptr<std::vector<Win32MatchingDescriptor>> GetExemption();

 private:
  static const std::vector<Win32MatchingDescriptor> _white_list;
};

}  // namespace Zq::Gantry::Security
