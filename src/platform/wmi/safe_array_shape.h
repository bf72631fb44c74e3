#pragma once

#include <windows.h>

#include <oleauto.h>

namespace Zq::Gantry::Server::Shared::WMI {

/// Whether an array that somebody else made really is what its variant says: elements of this type
/// and size in one dimension. Asked before an element is read.
[[nodiscard]] bool IsVectorOf(SAFEARRAY* array, VARTYPE elementType, UINT elementBytes);

}  // namespace Zq::Gantry::Server::Shared::WMI
