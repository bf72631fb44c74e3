#pragma once

#include "wattleaf_export.h"

namespace Zq::Gantry::Security {

/// The trust questions that others may ask. Seven operations and nothing else stand in the table of
/// virtual operations, in this order, which is a contract: so there is no virtual destructor, and
/// nobody destroys an object through this class. Paths are wide C strings, null among them.
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

/// Pairs questions about signatures with the question whether the place is allowed (IsPathAllowed).
/// Without data: made where it is needed. Every operation may be called on any thread; a failed
/// call of the system is a no.
class WATTLEAF_API ZQAuthenticodeFacade : public ZQAuthenticodeFacadeBase {
 public:
  /// Accepted by the system, signed with a key of the service's list, and in an allowed place.
  bool IsServiceFileTrusted(const wchar_t* path) override;
  /// The same with the extended list.
  bool IsExtendedFileTrusted(const wchar_t* path) override;
  /// An embedded signature that the system accepts, one of that signer's common name, and in an
  /// allowed place. The two signatures need not be the same. Logs how it went.
  bool IsDropboxFileTrusted(const wchar_t* path) override;
  /// Accepted by the system, whoever signed it, and in an allowed place.
  bool IsWindowsTrustedFileAllowed(const wchar_t* path) override;
  /// Whether two files bear signatures of one readable key, trusted or not, wherever they lie.
  bool HaveSameSigningKey(const wchar_t* firstPath, const wchar_t* secondPath) override;
  /// Whether the path lies below the Windows folder or a Program Files folder, or below a folder
  /// "WindowsApps" at a drive's root whose access list gives full control to TrustedInstaller and
  /// SYSTEM. That is no promise that ordinary users cannot write there: some places below the
  /// Windows folder are open to them ("C:\Windows\Temp"), the list of a "WindowsApps" folder may
  /// let in others too, on a removable drive or a share it is whatever came with it, and a root
  /// whose variable cannot be expanded allows every path. On a thread that serves a remote
  /// procedure call the client's variables say where the roots are, and every path is allowed where
  /// the client's process cannot be opened.
  bool IsPathAllowed(const wchar_t* path) override;
  /// Whether the client of the remote procedure call that this thread serves may start a tool of
  /// the system with these arguments. Paths are expanded with the client's variables.
  bool IsToolLaunchAllowed(const wchar_t* toolPath, bool restricted, const wchar_t* commandLine,
                           const wchar_t* component) override;
};

}  // namespace Zq::Gantry::Security
