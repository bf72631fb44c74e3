#pragma once

#include <functional>
#include <memory>
#include <string>

#include "catalogue/installed_apps.h"
#include "catalogue/package_logo.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// PackageSignatureKind_System: a package of the operating system.
inline constexpr int kSystemSignature = 4;

/// One installed package, as the system's package manager describes it. Every operation may throw
/// any exception.
class InstalledPackage {
 public:
  virtual ~InstalledPackage() = default;

  [[nodiscard]] virtual bool IsFramework() = 0;
  /// A PackageSignatureKind.
  [[nodiscard]] virtual int SignatureKind() = 0;
  /// The package's name without the version.
  [[nodiscard]] virtual std::wstring Name() = 0;
  [[nodiscard]] virtual std::wstring DisplayName() = 0;
  /// Absolute path of the installation directory.
  [[nodiscard]] virtual std::wstring InstalledPath() = 0;
  /// Absolute path of the package's own logo, preceded by a separator.
  [[nodiscard]] virtual std::wstring LogoPath() = 0;
};

/// A walk over installed packages. It starts at the first one; every operation may throw.
class PackageWalk {
 public:
  virtual ~PackageWalk() = default;

  [[nodiscard]] virtual bool HasCurrent() = 0;
  /// The package at this place of the walk; never null. Only if HasCurrent is true.
  [[nodiscard]] virtual std::unique_ptr<InstalledPackage> Current() = 0;
  /// False once the walk is past the last package.
  [[nodiscard]] virtual bool MoveNext() = 0;
};

/// Adds the applications among the packages of the walk and replaces those of the same name. Texts
/// are cut to their low bytes. Left out are frameworks, packages of the operating system, and
/// packages without a display name or a logo.
///
/// A package whose operations throw is left out, `packageFailed` is called, and the walk goes on.
/// Exceptions of the walk itself propagate.
void AddPackagedApps(PackageWalk& walk, const ManifestReader& readManifest,
                     const std::function<void()>& packageFailed, PackagedApps& apps);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
