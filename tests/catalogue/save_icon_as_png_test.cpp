#include "catalogue/icon_export.h"

#include <gtest/gtest.h>

#include <array>
#include <future>
#include <string>
#include <vector>

#include "catalogue/gdiplus_calls.h"
#include "catalogue/png_file.h"
#include "catalogue/sample_program.h"
#include "support/temp_folder.h"

using TestSupport::FileExists;
using TestSupport::GdiplusCalls;
using TestSupport::PngPicture;
using TestSupport::ReadPng;
using TestSupport::SampleIcon;
using TestSupport::TempFolder;
using Zq::Gantry::Server::Services::Wattleaf::SaveIconAsPng;

namespace {

/// The class of the PNG codec, as documented by the system.
constexpr CLSID kPngCodec = {
    0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

// An entry of the codec list points to non-const text.
wchar_t g_jpegType[] = L"image/jpeg";
wchar_t g_pngType[] = L"image/png";

/// Saves the sample icon with recorded and faked GDI+ calls.
class SaveIconAsPngTest : public testing::Test {
 protected:
  bool Save() { return SaveIconAsPng(icon_.get(), folder_.File(L"a.png")); }

  void ExpectAllReleased() {
    EXPECT_EQ(calls_.stopped, calls_.started);
    EXPECT_EQ(calls_.disposed, calls_.bitmaps);
  }

  void ExpectSavedWithoutCodec() {
    EXPECT_EQ(calls_.saves, 1);
    EXPECT_TRUE(IsEqualGUID(calls_.saveCodec, CLSID{}));
    EXPECT_EQ(calls_.bitmaps, 1);
    ExpectAllReleased();
  }

  const TempFolder folder_;
  const Zq::Gantry::Platform::UniqueIcon icon_ = SampleIcon();
  GdiplusCalls calls_;
};

}  // namespace

TEST(SaveIconAsPng, WritesTheIconsSizeAndPixels) {
  const TempFolder folder;
  const auto icon = SampleIcon();
  ASSERT_TRUE(SaveIconAsPng(icon.get(), folder.File(L"a.png")));
  const PngPicture picture = ReadPng(folder.File(L"a.png"));
  EXPECT_EQ(picture.width, 32u);
  EXPECT_EQ(picture.height, 32u);
  EXPECT_EQ(picture.middle, 0xFFE62E3Du);
  EXPECT_EQ(picture.corner >> 24, 0u) << "the background is not transparent";
}

TEST(SaveIconAsPng, OverwritesAnExistingFile) {
  const TempFolder folder;
  TestSupport::WriteWholeFile(folder.File(L"a.png"), std::string(100'000, 'x'));
  const auto icon = SampleIcon();
  ASSERT_TRUE(SaveIconAsPng(icon.get(), folder.File(L"a.png")));
  EXPECT_LT(TestSupport::ReadWholeFile(folder.File(L"a.png")).size(), 100'000u);
  EXPECT_EQ(ReadPng(folder.File(L"a.png")).width, 32u);
}

TEST(SaveIconAsPng, DoesNotDestroyTheIcon) {
  const TempFolder folder;
  const auto icon = SampleIcon();
  ASSERT_TRUE(SaveIconAsPng(icon.get(), folder.File(L"a.png")));
  ASSERT_TRUE(SaveIconAsPng(icon.get(), folder.File(L"b.png")));
  EXPECT_TRUE(FileExists(folder.File(L"b.png")));
}

TEST(SaveIconAsPng, StartsAndStopsGdiplusForEachIcon) {
  const TempFolder folder;
  const auto icon = SampleIcon();
  GdiplusCalls calls;
  ASSERT_TRUE(SaveIconAsPng(icon.get(), folder.File(L"a.png")));
  ASSERT_TRUE(SaveIconAsPng(icon.get(), folder.File(L"b.png")));
  EXPECT_EQ(calls.started, 2);
  EXPECT_EQ(calls.stopped, 2);
  EXPECT_EQ(calls.startVersion, 1u);
  EXPECT_TRUE(calls.startedWithDefaults);
  const std::vector<std::string> order = {"start", "bitmap", "save", "dispose", "stop",
                                          "start", "bitmap", "save", "dispose", "stop"};
  EXPECT_EQ(calls.record.Lines(), order);
}

TEST(SaveIconAsPng, SavesThroughThePngCodecWithoutParameters) {
  const TempFolder folder;
  const auto icon = SampleIcon();
  GdiplusCalls calls;
  ASSERT_TRUE(SaveIconAsPng(icon.get(), folder.File(L"a.png")));
  EXPECT_EQ(calls.saves, 1);
  EXPECT_EQ(calls.savePath, folder.File(L"a.png"));
  EXPECT_TRUE(IsEqualGUID(calls.saveCodec, kPngCodec));
  EXPECT_EQ(calls.saveParameters, nullptr);
}

TEST(SaveIconAsPng, WritesFilesOnSeveralThreadsAtOnce) {
  const TempFolder folder;
  const auto icon = SampleIcon();
  std::array<std::future<int>, 4> threads;
  for (std::size_t n = 0; n < threads.size(); ++n) {
    const std::wstring path = folder.File(std::to_wstring(n) + L".png");
    threads[n] = std::async(std::launch::async, [&icon, path] {
      int saved = 0;
      for (int i = 0; i < 10; ++i) saved += SaveIconAsPng(icon.get(), path) ? 1 : 0;
      return saved;
    });
  }
  for (auto& thread : threads) EXPECT_EQ(thread.get(), 10);
  for (std::size_t n = 0; n < threads.size(); ++n) {
    EXPECT_EQ(ReadPng(folder.File(std::to_wstring(n) + L".png")).middle, 0xFFE62E3Du) << n;
  }
}

// The tests from here on fail one call each and check that everything acquired before is released.
TEST_F(SaveIconAsPngTest, FailsWhenGdiplusDoesNotStart) {
  calls_.startStatus = Gdiplus::GenericError;
  EXPECT_FALSE(Save());
  EXPECT_EQ(calls_.stopped, 0);
  EXPECT_EQ(calls_.bitmaps, 0);
  EXPECT_EQ(calls_.saves, 0);
  ExpectAllReleased();
}

TEST_F(SaveIconAsPngTest, StopsGdiplusWhenTheBitmapFails) {
  calls_.bitmapStatus = Gdiplus::OutOfMemory;
  EXPECT_FALSE(Save());
  EXPECT_EQ(calls_.started, 1);
  EXPECT_EQ(calls_.disposed, 0);
  EXPECT_EQ(calls_.saves, 0);
  ExpectAllReleased();
}

TEST_F(SaveIconAsPngTest, FailsForANullIcon) {
  EXPECT_FALSE(SaveIconAsPng(nullptr, folder_.File(L"a.png")));
  EXPECT_EQ(calls_.saves, 0);
  EXPECT_EQ(calls_.stopped, 1);
}

TEST_F(SaveIconAsPngTest, FailsWhenTheSizeOfTheCodecListFails) {
  calls_.onEncodersSize = [](UINT*, UINT*) { return Gdiplus::GenericError; };
  EXPECT_FALSE(Save());
  ExpectSavedWithoutCodec();
}

TEST_F(SaveIconAsPngTest, FailsWhenTheCodecListFails) {
  calls_.onEncoders = [this](UINT count, UINT bytes, Gdiplus::ImageCodecInfo* encoders) {
    calls_.RealEncoders(count, bytes, encoders);
    return Gdiplus::GenericError;
  };
  EXPECT_FALSE(Save());
  ExpectSavedWithoutCodec();
}

TEST_F(SaveIconAsPngTest, FailsForAnEmptyCodecList) {
  calls_.onEncodersSize = [](UINT* count, UINT* bytes) {
    *count = 0;
    *bytes = 0;
    return Gdiplus::Ok;
  };
  bool isListRead = false;
  calls_.onEncoders = [&isListRead](UINT, UINT, Gdiplus::ImageCodecInfo*) {
    isListRead = true;
    return Gdiplus::Ok;
  };
  EXPECT_FALSE(Save());
  EXPECT_FALSE(isListRead);
  ExpectSavedWithoutCodec();
}

TEST_F(SaveIconAsPngTest, FailsWhenNoPngCodecIsInstalled) {
  calls_.onEncoders = [this](UINT count, UINT bytes, Gdiplus::ImageCodecInfo* encoders) {
    const auto status = calls_.RealEncoders(count, bytes, encoders);
    for (UINT i = 0; i < count; ++i) encoders[i].MimeType = g_jpegType;
    encoders[0].MimeType = nullptr;
    return status;
  };
  EXPECT_FALSE(Save());
  ExpectSavedWithoutCodec();
}

TEST_F(SaveIconAsPngTest, FailsForACodecCountBeyondTheSizeOfTheList) {
  calls_.onEncodersSize = [](UINT* count, UINT* bytes) {
    *count = 5'000'000;
    *bytes = 7;
    return Gdiplus::Ok;
  };
  bool isListRead = false;
  calls_.onEncoders = [&isListRead](UINT, UINT, Gdiplus::ImageCodecInfo*) {
    isListRead = true;
    return Gdiplus::Ok;
  };
  EXPECT_FALSE(Save());
  EXPECT_FALSE(isListRead);
  ExpectSavedWithoutCodec();
}

TEST_F(SaveIconAsPngTest, FailsWhenTheSaveFails) {
  calls_.saveStatus = Gdiplus::AccessDenied;
  EXPECT_FALSE(Save());
  EXPECT_EQ(calls_.saves, 1);
  ExpectAllReleased();
}

TEST_F(SaveIconAsPngTest, FailsInAMissingFolder) {
  EXPECT_FALSE(SaveIconAsPng(icon_.get(), folder_.File(L"missing\\a.png")));
  EXPECT_EQ(calls_.saves, 1);
  ExpectAllReleased();
}

TEST_F(SaveIconAsPngTest, FailsForAPathAboveTheSystemsLimit) {
  const std::wstring folder(100'000, L'p');
  EXPECT_FALSE(SaveIconAsPng(icon_.get(), L"C:\\" + folder + L"\\a.png"));
  EXPECT_EQ(calls_.saves, 1);
  ExpectAllReleased();
}

TEST_F(SaveIconAsPngTest, UsesTheFirstOfTwoPngCodecs) {
  calls_.onEncoders = [this](UINT count, UINT bytes, Gdiplus::ImageCodecInfo* encoders) {
    const auto status = calls_.RealEncoders(count, bytes, encoders);
    encoders[0].MimeType = g_pngType;
    encoders[0].Clsid = CLSID{1, 2, 3, {}};
    return status;
  };
  EXPECT_FALSE(Save());
  EXPECT_TRUE(IsEqualGUID(calls_.saveCodec, CLSID{1, 2, 3, {}}));
  ExpectAllReleased();
}
