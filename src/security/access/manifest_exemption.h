#pragma once

#include <memory>
#include <vector>

#include "security/access/client_information.h"
#include "security/access/client_manifest_criteria.h"
#include "security/access/matching_descriptor.h"
#include "wattleaf_export.h"

// The two judges of whether a client needs no manifest. No locks: one question at a time for an
// object.
namespace Zq::Gantry::Security {

/// Exempts a Store application whose family name stands in the list, up to the row's version.
/// Copies share list and client.
class WATTLEAF_API UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion
    : public IClientWithNoZqManifestCheckCriteria {
 public:
  UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion(
      std::shared_ptr<std::vector<UwpMatchingDescriptor>> list,
      std::shared_ptr<Server::Uwp::UwpInformation> client);
  UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion(
      const UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion& other);
  UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion& operator=(
      const UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion& other);
  ~UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion() override;

  /// The family name is compared exactly. False without list or client.
  bool IsAnException() override;

 private:
  std::shared_ptr<std::vector<UwpMatchingDescriptor>> list_;
  std::shared_ptr<Server::Uwp::UwpInformation> client_;
};

/// The same for a classic program, by its name.
class WATTLEAF_API Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion
    : public IClientWithNoZqManifestCheckCriteria {
 public:
  Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion(
      std::shared_ptr<std::vector<Win32MatchingDescriptor>> list,
      std::shared_ptr<Server::Win32::Win32Information> client);
  Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion(
      const Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion& other);
  Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion& operator=(
      const Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion& other);
  ~Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion() override;

  /// Folds A to Z of the client's Name to lower case, in the shared client and for good, and
  /// compares the result exactly. False without list or client.
  bool IsAnException() override;

 private:
  std::shared_ptr<std::vector<Win32MatchingDescriptor>> list_;
  std::shared_ptr<Server::Win32::Win32Information> client_;
};

}  // namespace Zq::Gantry::Security
