#pragma once

#include <windows.h>

#include <array>
#include <memory>
#include <string>

#include "platform/win32/catalog_owners.h"
#include "security/trust/wintrust_layout.h"

namespace Zq::Gantry::Security {

/// A catalog's description of one file, as WinVerifyTrust takes it, with everything that it points
/// to except the file's path, which is the caller's. GetSecurityCatalogInfo fills both halves: the
/// base has pointers, the fields below have the values. It can be neither copied nor moved, since
/// it points into itself.
struct CatalogMember : WINTRUST_CATALOG_INFO {
  CatalogMember() : WINTRUST_CATALOG_INFO{} { cbStruct = sizeof(WINTRUST_CATALOG_INFO); }
  CatalogMember(const CatalogMember&) = delete;
  CatalogMember& operator=(const CatalogMember&) = delete;

  Platform::UniqueCatalogAdmin admin;           ///< hCatAdmin
  std::array<wchar_t, MAX_PATH> catalogPath{};  ///< pcwszCatalogFilePath
  std::wstring memberTag;                       ///< pcwszMemberTag, the hash as text
};

/// Deletes the whole member through a pointer to its base.
struct CatalogInfoDeleter {
  void operator()(WINTRUST_CATALOG_INFO* info) const { delete static_cast<CatalogMember*>(info); }
};

/// Owner of the pCatalog that ZQAuthenticodeHelper::GetSecurityCatalogInfo returns in its data.
using UniqueCatalogInfo = std::unique_ptr<WINTRUST_CATALOG_INFO, CatalogInfoDeleter>;

}  // namespace Zq::Gantry::Security
