#pragma once

#include <memory>
#include <string>

// What the system's package manager tells. Each operation may raise anything.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// One installed package.
class InstalledPackage {
 public:
  virtual ~InstalledPackage() = default;

  virtual bool IsFramework() = 0;
  /// kSystemSignature for a package of the operating system.
  virtual int SignatureKind() = 0;
  /// Without version.
  virtual std::wstring Name() = 0;
  virtual std::wstring DisplayName() = 0;
  /// Absolute path of the installation directory.
  virtual std::wstring InstalledPath() = 0;
  /// Absolute path of the package's own logo, after a leading separator.
  virtual std::wstring LogoPath() = 0;
};

/// A walk over packages that stands on the first one, or behind the last.
class PackageWalk {
 public:
  virtual ~PackageWalk() = default;

  virtual bool HasCurrent() = 0;
  /// Never null.
  virtual std::unique_ptr<InstalledPackage> Current() = 0;
  /// False behind the last package.
  virtual bool MoveNext() = 0;
};

inline constexpr int kSystemSignature = 4;

}  // namespace Zq::Gantry::Server::Services::Wattleaf
