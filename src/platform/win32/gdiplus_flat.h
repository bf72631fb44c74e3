#pragma once

#include <windows.h>

#include <objidl.h>

#include <algorithm>

// The published header uses the macros of old for the smaller and the greater of two, and older
// tool chains' wants these names in its own namespace.
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus

#include <gdiplus.h>
