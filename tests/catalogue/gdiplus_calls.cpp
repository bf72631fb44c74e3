#include "catalogue/gdiplus_calls.h"

#include <gtest/gtest.h>

namespace TestSupport {

GdiplusCalls* GdiplusCalls::current_ = nullptr;

GdiplusCalls::GdiplusCalls()
    : start_("GdiplusStartup", &Start),
      stop_("GdiplusShutdown", &Stop),
      createBitmap_("GdipCreateBitmapFromHICON", &CreateBitmap),
      encodersSize_("GdipGetImageEncodersSize", &EncodersSize),
      encoders_("GdipGetImageEncoders", &Encoders),
      save_("GdipSaveImageToFile", &Save),
      dispose_("GdipDisposeImage", &Dispose) {
  current_ = this;
}

GdiplusCalls::~GdiplusCalls() {
  EXPECT_TRUE(images_.empty()) << "an image was not disposed";
  EXPECT_TRUE(tokens_.empty()) << "GDI+ was not stopped";
  current_ = nullptr;
}

Gdiplus::Status WINAPI GdiplusCalls::Start(ULONG_PTR* token,
                                           const Gdiplus::GdiplusStartupInput* input,
                                           Gdiplus::GdiplusStartupOutput* output) {
  GdiplusCalls& calls = *current_;
  calls.startVersion = input->GdiplusVersion;
  calls.startedWithDefaults = input->DebugEventCallback == nullptr &&
                              !input->SuppressBackgroundThread && !input->SuppressExternalCodecs;
  if (calls.startStatus) return *calls.startStatus;
  const auto status = calls.start_.Original<decltype(Start)>()(token, input, output);
  if (status != Gdiplus::Ok) return status;
  ++calls.started;
  calls.record.Add("start");
  calls.tokens_.insert(*token);
  return status;
}

void WINAPI GdiplusCalls::Stop(ULONG_PTR token) {
  ++current_->stopped;
  current_->record.Add("stop");
  EXPECT_TRUE(current_->images_.empty()) << "GDI+ was stopped before an image was disposed";
  const auto own = current_->tokens_.find(token);
  ASSERT_NE(own, current_->tokens_.end()) << "GDI+ was stopped with an unknown token";
  current_->tokens_.erase(own);
  current_->stop_.Original<decltype(Stop)>()(token);
}

GdiplusCalls::Status WINAPI GdiplusCalls::CreateBitmap(HICON icon, Gdiplus::GpBitmap** bitmap) {
  GdiplusCalls& calls = *current_;
  if (calls.bitmapStatus) {
    // A failing call may write an invalid pointer, which must not be disposed.
    *bitmap = reinterpret_cast<Gdiplus::GpBitmap*>(&calls);
    return *calls.bitmapStatus;
  }
  ++calls.bitmaps;
  const Status status = calls.createBitmap_.Original<decltype(CreateBitmap)>()(icon, bitmap);
  if (status != Gdiplus::Ok) return status;
  calls.record.Add("bitmap");
  calls.images_.insert(*bitmap);
  return status;
}

GdiplusCalls::Status GdiplusCalls::RealEncodersSize(UINT* count, UINT* bytes) const {
  return encodersSize_.Original<decltype(EncodersSize)>()(count, bytes);
}

GdiplusCalls::Status GdiplusCalls::RealEncoders(UINT count, UINT bytes,
                                                Gdiplus::ImageCodecInfo* encoders) const {
  return encoders_.Original<decltype(Encoders)>()(count, bytes, encoders);
}

GdiplusCalls::Status WINAPI GdiplusCalls::EncodersSize(UINT* count, UINT* bytes) {
  if (current_->onEncodersSize) return current_->onEncodersSize(count, bytes);
  return current_->RealEncodersSize(count, bytes);
}

GdiplusCalls::Status WINAPI GdiplusCalls::Encoders(UINT count, UINT bytes,
                                                   Gdiplus::ImageCodecInfo* encoders) {
  if (current_->onEncoders) return current_->onEncoders(count, bytes, encoders);
  return current_->RealEncoders(count, bytes, encoders);
}

GdiplusCalls::Status WINAPI GdiplusCalls::Save(Gdiplus::GpImage* image, const WCHAR* path,
                                               const CLSID* codec,
                                               const Gdiplus::EncoderParameters* parameters) {
  GdiplusCalls& calls = *current_;
  ++calls.saves;
  calls.record.Add("save");
  if (!calls.images_.contains(image)) {
    ADD_FAILURE() << "an unknown image was saved";
    return Gdiplus::InvalidParameter;
  }
  calls.savePath = path;
  calls.saveCodec = *codec;
  calls.saveParameters = parameters;
  if (calls.saveStatus) return *calls.saveStatus;
  return calls.save_.Original<decltype(Save)>()(image, path, codec, parameters);
}

GdiplusCalls::Status WINAPI GdiplusCalls::Dispose(Gdiplus::GpImage* image) {
  ++current_->disposed;
  current_->record.Add("dispose");
  if (current_->images_.erase(image) == 0) {
    ADD_FAILURE() << "an unknown image was disposed";
    return Gdiplus::InvalidParameter;
  }
  return current_->dispose_.Original<decltype(Dispose)>()(image);
}

}  // namespace TestSupport
