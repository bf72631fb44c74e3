#pragma once

#include <windows.h>

namespace Zq::Gantry::Server::Shared::WMI {

/// The result of a call that is to hand an object out: a success without one is a failure.
inline HRESULT RequireObject(HRESULT result, const void* object) {
  return SUCCEEDED(result) && object == nullptr ? E_FAIL : result;
}

}  // namespace Zq::Gantry::Server::Shared::WMI
