#pragma once

#include <windows.h>

#include <wincrypt.h>
#include <wintrust.h>

#include <mscat.h>

#include "platform/win32/owners.h"

// The owners of security catalog handles.
namespace Zq::Gantry::Platform {

/// Catalog administrator context, from CryptCATAdminAcquireContext2.
struct CatalogAdminPolicy {
  using Type = HCATADMIN;
  static Type Empty() { return nullptr; }
  static void Release(Type admin) {
    const LastErrorKeeper keeper;
    CryptCATAdminReleaseContext(admin, /*flags=*/0);
  }
};
using UniqueCatalogAdmin = UniqueResource<CatalogAdminPolicy>;

/// A catalog and the administrator context that it came from, which must outlive its owner.
struct CatalogHandle {
  HCATADMIN admin = nullptr;
  HCATINFO catalog = nullptr;

  friend bool operator==(const CatalogHandle& one, const CatalogHandle& other) {
    return one.catalog == other.catalog;
  }
};

/// Catalog context, from CryptCATAdminEnumCatalogFromHash.
struct CatalogPolicy {
  using Type = CatalogHandle;
  static Type Empty() { return {}; }
  static void Release(Type handle) {
    const LastErrorKeeper keeper;
    CryptCATAdminReleaseCatalogContext(handle.admin, handle.catalog, /*flags=*/0);
  }
};
using UniqueCatalog = UniqueResource<CatalogPolicy>;

}  // namespace Zq::Gantry::Platform
