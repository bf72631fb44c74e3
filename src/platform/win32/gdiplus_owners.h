#pragma once

#include "platform/win32/gdiplus_flat.h"
#include "platform/win32/owners.h"

// The owners of what GDI+ hands out, and of its being started at all.
namespace Zq::Gantry::Platform {

/// GDI+, started for as long as this lives, with its background thread and no debug callback.
/// Images must be gone before.
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

  explicit operator bool() const { return started_; }

 private:
  // Not every system gives a token other than zero, so it tells nothing of the start.
  ULONG_PTR token_ = 0;
  bool started_ = false;
};

struct GdiplusImagePolicy {
  using Type = Gdiplus::GpImage*;
  static Type Empty() { return nullptr; }
  static void Release(Type image) {
    const LastErrorKeeper keeper;
    Gdiplus::DllExports::GdipDisposeImage(image);
  }
};
using UniqueGdiplusImage = UniqueResource<GdiplusImagePolicy>;

}  // namespace Zq::Gantry::Platform
