#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>

#include "import_patch.h"
#include "platform/win32/gdiplus_owners.h"
#include "support/call_record.h"

namespace TestSupport {

/// Counts and records the GDI+ calls of the program. A test can replace the result of some of them;
/// all others reach the system. The test fails if an image is disposed twice or after GDI+ was
/// stopped, if GDI+ is stopped with a token that it was not started with, and if GDI+ is still
/// running or an image is not disposed at the end. One at a time.
class GdiplusCalls {
 public:
  using Status = Gdiplus::GpStatus;

  GdiplusCalls();
  GdiplusCalls(const GdiplusCalls&) = delete;
  GdiplusCalls& operator=(const GdiplusCalls&) = delete;
  ~GdiplusCalls();

  std::optional<Status> startStatus;
  std::optional<Status> bitmapStatus;
  std::function<Status(UINT* count, UINT* bytes)> onEncodersSize;
  std::function<Status(UINT count, UINT bytes, Gdiplus::ImageCodecInfo*)> onEncoders;
  std::optional<Status> saveStatus;

  /// "start", "bitmap", "save", "dispose" and "stop" in order; "start" and "bitmap" if they
  /// succeed.
  CallRecord record;
  int started = 0;  // successfully
  int stopped = 0;
  int bitmaps = 0;  // calls that reached the system
  int disposed = 0;
  int saves = 0;
  UINT32 startVersion = 0;
  bool startedWithDefaults = false;  // no debug callback, nothing suppressed
  std::wstring savePath;
  CLSID saveCodec{};
  const void* saveParameters = nullptr;

  /// The system's own list of codecs.
  [[nodiscard]] Status RealEncodersSize(UINT* count, UINT* bytes) const;
  Status RealEncoders(UINT count, UINT bytes, Gdiplus::ImageCodecInfo* encoders) const;

 private:
  static Gdiplus::Status WINAPI Start(ULONG_PTR* token, const Gdiplus::GdiplusStartupInput* input,
                                      Gdiplus::GdiplusStartupOutput* output);
  static void WINAPI Stop(ULONG_PTR token);
  static Status WINAPI CreateBitmap(HICON icon, Gdiplus::GpBitmap** bitmap);
  static Status WINAPI EncodersSize(UINT* count, UINT* bytes);
  static Status WINAPI Encoders(UINT count, UINT bytes, Gdiplus::ImageCodecInfo* encoders);
  static Status WINAPI Save(Gdiplus::GpImage* image, const WCHAR* path, const CLSID* codec,
                            const Gdiplus::EncoderParameters* parameters);
  static Status WINAPI Dispose(Gdiplus::GpImage* image);

  static GdiplusCalls* current_;
  std::multiset<ULONG_PTR> tokens_;
  std::set<Gdiplus::GpImage*> images_;
  Standin::ImportPatch start_;
  Standin::ImportPatch stop_;
  Standin::ImportPatch createBitmap_;
  Standin::ImportPatch encodersSize_;
  Standin::ImportPatch encoders_;
  Standin::ImportPatch save_;
  Standin::ImportPatch dispose_;
};

}  // namespace TestSupport
