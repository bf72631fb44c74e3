#pragma once

#include "platform/win32/unique_resource.h"
#include "wattleaf_export.h"

struct HSTRING__;  // what HSTRING of hstring.h points to

namespace Zq::Gantry::Platform::WinRt {

/// The runtime's immutable text; null is the empty one.
struct HStringPolicy {
  using Type = HSTRING__*;
  static Type Empty() { return nullptr; }
  WATTLEAF_API static void Release(Type text);
};
using UniqueHString = UniqueResource<HStringPolicy>;

}  // namespace Zq::Gantry::Platform::WinRt
