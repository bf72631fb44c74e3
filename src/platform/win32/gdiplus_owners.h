#pragma once

#include <windows.h>

#include <objidl.h>

#include <algorithm>

// <gdiplus.h> expects the macros min and max, which the build turns off, so it gets functions of
// these names; and <objidl.h>, which the lean <windows.h> leaves out.
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus

#include <gdiplus.h>

#include "platform/win32/unique_resource.h"

// GDI+, and the owners of its objects.
namespace Zq::Gantry::Platform {

/// GDI+, started for the lifetime of this object (GdiplusStartup), with its background thread and
/// without a debug callback. Owners of images must be destroyed first. Keeps the last error when it
/// ends.
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
  // No value of it means "not started", so it cannot be an owner's empty value.
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
