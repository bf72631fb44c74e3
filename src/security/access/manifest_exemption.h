#pragma once

#include <memory>
#include <vector>

#include "security/access/client_information.h"
#include "security/access/client_manifest_criteria.h"
#include "security/access/exemption_white_lists.h"
#include "wattleaf_export.h"

// The two checkers of whether a client needs no signed manifest, each made from a list and a client
// and set in a GantryAccessManager, whose header has an example. A row applies if its name is the
// client's and its version is not below the client's: a client with a higher Major, or the same
// Major and a higher Minor, is not exempt. Build and Revision are not compared. The rows are read
// in order. There are no locks: one checker may be used by one thread at a time, and nothing may
// change its list or client meanwhile.
namespace Zq::Gantry::Security {

/// Exempts a Store application whose family name is in the list, up to the row's version. Copies
/// share list and client.
class WATTLEAF_API UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion
    : public IClientWithNoZqManifestCheckCriteria {
 public:
  /// Shares both with the caller; null is allowed and exempts no client.
  UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion(
      std::shared_ptr<std::vector<UwpMatchingDescriptor>> list,
      std::shared_ptr<Server::Uwp::UwpInformation> client);
  // Copies and the destructor have bodies in the library, so that it exports them.
  UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion(
      const UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion& other);
  UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion& operator=(
      const UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion& other);
  ~UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion() override;

  /// The family name is compared exactly. False without list or client. Throws std::out_of_range if
  /// the list becomes shorter meanwhile.
  bool IsAnException() override;

 private:
  // Both may be null.
  std::shared_ptr<std::vector<UwpMatchingDescriptor>> list_;
  std::shared_ptr<Server::Uwp::UwpInformation> client_;
};

/// The same for a classic program, by its name instead of the family name.
class WATTLEAF_API Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion
    : public IClientWithNoZqManifestCheckCriteria {
 public:
  /// Shares both with the caller; null is allowed and exempts no client.
  Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion(
      std::shared_ptr<std::vector<Win32MatchingDescriptor>> list,
      std::shared_ptr<Server::Win32::Win32Information> client);
  // Copies and the destructor have bodies in the library, so that it exports them.
  Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion(
      const Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion& other);
  Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion& operator=(
      const Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion& other);
  ~Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion() override;

  /// Changes A to Z in the Name of the shared client to lower case, permanently, and compares the
  /// result exactly. False without list or client. Throws std::out_of_range if the list becomes
  /// shorter meanwhile.
  bool IsAnException() override;

 private:
  // Both may be null.
  std::shared_ptr<std::vector<Win32MatchingDescriptor>> list_;
  std::shared_ptr<Server::Win32::Win32Information> client_;
};

}  // namespace Zq::Gantry::Security
