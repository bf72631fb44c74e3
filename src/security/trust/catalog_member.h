#pragma once

#include <windows.h>

#include <array>
#include <memory>
#include <string>

#include "platform/win32/catalog_owners.h"
#include "security/trust/wintrust_layout.h"

namespace Zq::Gantry::Security {

/// A catalog's description of one file, with everything that it points to except the file's path,
/// which is the caller's. Neither copied nor moved: it points into itself.
struct CatalogMember : WINTRUST_CATALOG_INFO {
  CatalogMember() : WINTRUST_CATALOG_INFO{} { cbStruct = sizeof(WINTRUST_CATALOG_INFO); }
  CatalogMember(const CatalogMember&) = delete;
  CatalogMember& operator=(const CatalogMember&) = delete;

  Platform::UniqueCatalogAdmin admin;
  std::array<wchar_t, MAX_PATH> catalogPath{};
  std::wstring memberTag;
};

struct CatalogInfoDeleter {
  void operator()(WINTRUST_CATALOG_INFO* info) const { delete static_cast<CatalogMember*>(info); }
};

/// Owner of what ZQAuthenticodeHelper::GetSecurityCatalogInfo hands over in pCatalog.
using UniqueCatalogInfo = std::unique_ptr<WINTRUST_CATALOG_INFO, CatalogInfoDeleter>;

}  // namespace Zq::Gantry::Security
