#pragma once

#include <windows.h>

#include <objidl.h>

#include <algorithm>

// <gdiplus.h> needs min and max, whose macros the build turns off: functions of these names replace
// them. It also needs <objidl.h>, which the lean <windows.h> leaves out.
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus

#include <gdiplus.h>

#include "platform/win32/unique_resource.h"

// GDI+, and the owners of its objects.
namespace Zq::Gantry::Platform {

/// GDI+, started for the lifetime of this object (GdiplusStartup), with its background thread and
/// without a debug callback. Owners of images must be destroyed first. The destructor keeps the
/// last error.
class GdiplusSession {
 public:
  GdiplusSession() {
    const Gdiplus::GdiplusStartupInput input;
    started_ = Gdiplus::GdiplusStartup(&token_, &input, /*output=*/nullptr) == Gdiplus::Ok;
  }
  GdiplusSession(const GdiplusSession&) = delete;
  GdiplusSession& operator=(const GdiplusSession&) = delete;
  ~GdiplusSession() {
    const LastErrorKeeper keeper;
    if (started_) Gdiplus::GdiplusShutdown(token_);
  }

  /// Whether GDI+ could be started. If not, no call of GDI+ is allowed.
  [[nodiscard]] explicit operator bool() const { return started_; }

 private:
  // Any value may be a valid token, so none can mean "not started".
  ULONG_PTR token_ = 0;
  bool started_ = false;
};

/// Image or bitmap of GDI+ (GdipDisposeImage).
struct GdiplusImagePolicy {
  using Type = Gdiplus::GpImage*;
  static Type Empty() { return nullptr; }
  static void Release(Type image) { Gdiplus::DllExports::GdipDisposeImage(image); }
};
using UniqueGdiplusImage = UniqueResource<GdiplusImagePolicy>;

}  // namespace Zq::Gantry::Platform
