#pragma once

#include <windows.h>

#include <objidl.h>

#include <algorithm>

// The published header counts on the macros min and max, which the build turns off; so it gets the
// functions of these names, and the interfaces that the lean <windows.h> leaves out.
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus

#include <gdiplus.h>
