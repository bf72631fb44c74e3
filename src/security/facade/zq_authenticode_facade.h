#pragma once

// Before the exported classes: otherwise GCC 12 also exports the type information of
// std::exception from the source that includes this header first.
#include <exception>

#include "wattleaf_export.h"

namespace Zq::Gantry::Security {

/// The trust checks that other programs may call. The table of virtual functions has these seven
/// operations and nothing else, in this order, which is a contract: so there is no virtual
/// destructor, and an object cannot be destroyed through this class. Paths are wide C strings and
/// may be null. ZQAuthenticodeFacade describes the operations.
class WATTLEAF_API ZQAuthenticodeFacadeBase {
 public:
  virtual bool IsServiceFileTrusted(const wchar_t* path) = 0;
  virtual bool IsExtendedFileTrusted(const wchar_t* path) = 0;
  virtual bool IsDropboxFileTrusted(const wchar_t* path) = 0;
  virtual bool IsWindowsTrustedFileAllowed(const wchar_t* path) = 0;
  virtual bool HaveSameSigningKey(const wchar_t* firstPath, const wchar_t* secondPath) = 0;
  virtual bool IsPathAllowed(const wchar_t* path) = 0;
  virtual bool IsToolLaunchAllowed(const wchar_t* toolPath, bool restricted,
                                   const wchar_t* commandLine, const wchar_t* component) = 0;

 protected:
  ~ZQAuthenticodeFacadeBase() = default;
};

/// Combines the checks of signatures with the check of the place (IsPathAllowed). It has no data:
/// make one where it is needed. Every operation may be called on any thread and blocks until the
/// system answers. A failed call of the system gives false, except for a root of IsPathAllowed.
/// Exceptions, bad_alloc among them, propagate unless stated otherwise.
class WATTLEAF_API ZQAuthenticodeFacade : public ZQAuthenticodeFacadeBase {
 public:
  /// Accepted by the system, signed with a key of the service's list, and in an allowed place.
  bool IsServiceFileTrusted(const wchar_t* path) override;
  /// The same with the keys of the extended list.
  bool IsExtendedFileTrusted(const wchar_t* path) override;
  /// The system accepts an embedded signature, an embedded signature has that signer's common name,
  /// and the place is allowed. The two signatures need not be the same. Logs the start and each
  /// failure; a standard exception while the signatures are read is logged and gives false.
  bool IsDropboxFileTrusted(const wchar_t* path) override;
  /// Accepted by the system, with any signer, and in an allowed place.
  bool IsWindowsTrustedFileAllowed(const wchar_t* path) override;
  /// Whether two files have signatures with the same readable key, trusted or not, in any place.
  /// False if a path is null.
  bool HaveSameSigningKey(const wchar_t* firstPath, const wchar_t* secondPath) override;
  /// Whether the path lies below the Windows folder or a Program Files folder, or below a folder
  /// "WindowsApps" at a drive's root whose access list gives full control to TrustedInstaller and
  /// SYSTEM. That is no promise that ordinary users cannot write there: some places below the
  /// Windows folder are open to them ("C:\Windows\Temp"); the list of a "WindowsApps" folder may
  /// let in others too, and on a removable drive or a share it may be any list; and a root whose
  /// variable cannot be expanded allows every path. On a thread that serves a remote procedure call
  /// the roots are those of the client's variables, and every path is allowed if the client's
  /// process cannot be opened.
  bool IsPathAllowed(const wchar_t* path) override;
  /// Whether the client of the remote procedure call that this thread serves may start a tool of
  /// the system with these arguments. Paths are expanded with the client's variables.
  bool IsToolLaunchAllowed(const wchar_t* toolPath, bool restricted, const wchar_t* commandLine,
                           const wchar_t* component) override;
};

}  // namespace Zq::Gantry::Security
