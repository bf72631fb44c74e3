#pragma once

#include <windows.h>

#include <wincrypt.h>
#include <wintrust.h>

#include <mscat.h>

#include "platform/win32/unique_resource.h"

// The owners of security catalog handles. A failed release is ignored. Declare the owner of an
// administrator context before the owners of its catalogs, so that it is destroyed after them.
namespace Zq::Gantry::Platform {

/// Catalog administrator context, from CryptCATAdminAcquireContext2.
struct CatalogAdminPolicy {
  using Type = HCATADMIN;
  static Type Empty() { return nullptr; }
  static void Release(Type admin) { CryptCATAdminReleaseContext(admin, /*flags=*/0); }
};
using UniqueCatalogAdmin = UniqueResource<CatalogAdminPolicy>;

/// A catalog and the administrator context that it came from. The context is not owned here, and
/// its owner must outlive the catalog's: the release call needs both. Two are equal if they name
/// the same catalog.
struct CatalogHandle {
  HCATADMIN admin = nullptr;
  HCATINFO catalog = nullptr;

  [[nodiscard]] friend bool operator==(const CatalogHandle& one, const CatalogHandle& other) {
    return one.catalog == other.catalog;
  }
};

/// Catalog context, from CryptCATAdminEnumCatalogFromHash. A handle without a catalog is empty,
/// even if it has an administrator context.
struct CatalogPolicy {
  using Type = CatalogHandle;
  static Type Empty() { return {}; }
  static void Release(Type handle) {
    CryptCATAdminReleaseCatalogContext(handle.admin, handle.catalog, /*flags=*/0);
  }
};
using UniqueCatalog = UniqueResource<CatalogPolicy>;

}  // namespace Zq::Gantry::Platform
