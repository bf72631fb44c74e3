#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>

#include "import_patch.h"
#include "platform/win32/gdiplus_owners.h"
#include "support/call_record.h"

namespace TestSupport {

/// Counts and records the GDI+ calls of the program while it lives, and lets a test answer some of
/// them; what a test leaves alone goes to the system. The test fails where an image is disposed
/// twice or after GDI+ was stopped, where GDI+ is stopped with another token than it was started
/// with, and where it is still running or an image is left at the end. One at a time.
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

  /// "start", "bitmap", "save", "dispose" and "stop", those that succeeded, in their order.
  CallRecord record;
  int started = 0;  // with success
  int stopped = 0;
  int bitmaps = 0;  // made
  int disposed = 0;
  int saves = 0;
  UINT32 startVersion = 0;
  bool startedPlainly = false;  // no debug callback, nothing suppressed
  std::wstring savePath;
  CLSID saveCodec{};
  const void* saveParameters = nullptr;

  /// The list of codecs as the system has it.
  Status RealEncodersSize(UINT* count, UINT* bytes) const;
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
