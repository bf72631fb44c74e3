#pragma once

#include <memory>
#include <stdexcept>

#include "security/access/client_manifest_criteria.h"
#include "security/access/exemption_white_lists.h"
#include "wattleaf_export.h"

namespace Zq::Gantry::Security {

/// Thrown by a GantryAccessManager that lacks the checker for a query; what() names the missing
/// call. The only exception type that this library exports.
class WATTLEAF_API gantry_access_exception : public std::logic_error {
 public:
  /// Copies the message. Copies of the exception do not throw.
  explicit gantry_access_exception(const char* message);
  gantry_access_exception(const gantry_access_exception& other) noexcept;
  gantry_access_exception(gantry_access_exception&& other) noexcept;
  gantry_access_exception& operator=(const gantry_access_exception& other) noexcept;
  gantry_access_exception& operator=(gantry_access_exception&& other) noexcept;
  ~gantry_access_exception() override;
};

/// Decides whether a client is exempt from having a signed manifest. To use it: fill the client's
/// information, copy the list with GetExemption, make a checker of both (manifest_exemption.h), set
/// it here, and call IsUwpExempt or IsWin32Exempt. It has no lock: one manager must not be changed
/// or queried on two threads at once.
///
///   auto client = std::make_shared<Server::Win32::Win32Information>(name, major, minor);
///   auto list = Win32WithNoZQManifestExemptionWhiteList::GetExemption();
///   GantryAccessManager manager;
///   manager.SetWin32Checker(
///       std::make_shared<Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion>(list, client));
///   const bool exempt = manager.IsWin32Exempt();
class WATTLEAF_API GantryAccessManager {
 public:
  /// Without checkers.
  GantryAccessManager();
  /// Shares checkers and list with `other`, as the assignment does.
  GantryAccessManager(const GantryAccessManager& other);
  GantryAccessManager& operator=(const GantryAccessManager& other);
  ~GantryAccessManager();

  /// Replaces the checker for Store applications; null removes it.
  void SetUwpChecker(std::shared_ptr<IClientWithNoZqManifestCheckCriteria> checker);
  /// Replaces the checker for classic programs; null removes it.
  void SetWin32Checker(std::shared_ptr<IClientWithNoZqManifestCheckCriteria> checker);

  /// The result of the checker for Store applications; its exceptions propagate. Throws
  /// gantry_access_exception without a checker.
  [[nodiscard]] bool IsUwpExempt();
  /// The same for classic programs.
  [[nodiscard]] bool IsWin32Exempt();

 private:
  // Four pointers, whose number and order are a contract with the host.
  std::shared_ptr<UwpWithNoZQManifestExemptionWhiteList> uwpWhiteList_;
  /// Stays empty; the host's layout has this field.
  std::shared_ptr<void> reserved_;
  std::shared_ptr<IClientWithNoZqManifestCheckCriteria> uwpChecker_;
  std::shared_ptr<IClientWithNoZqManifestCheckCriteria> win32Checker_;
};

}  // namespace Zq::Gantry::Security
