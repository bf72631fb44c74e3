#include <gtest/gtest.h>

#include <algorithm>

#include "catalogue/gdiplus_calls.h"
#include "catalogue/icon_export.h"
#include "catalogue/sample_program.h"
#include "support/temp_folder.h"

using TestSupport::GdiplusCalls;
using TestSupport::SampleIcon;
using TestSupport::TempFolder;
using Zq::Gantry::Server::Services::Wattleaf::SaveIconAsPng;

// Each call fails in turn; whatever was made before is released.
namespace {

// The list takes its texts as places that could be written to.
wchar_t jpegType[] = L"image/jpeg";
wchar_t pngType[] = L"image/png";

class SaveIconAsPngFailures : public testing::Test {
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

TEST_F(SaveIconAsPngFailures, OfTheStartEndEverything) {
  calls_.startStatus = Gdiplus::GenericError;
  EXPECT_FALSE(Save());
  EXPECT_EQ(calls_.stopped, 0) << "what did not start is not stopped";
  EXPECT_EQ(calls_.bitmaps, 0);
  EXPECT_EQ(calls_.saves, 0);
  ExpectAllReleased();
}

TEST_F(SaveIconAsPngFailures, OfTheBitmapStopTheLibrary) {
  calls_.bitmapStatus = Gdiplus::OutOfMemory;
  EXPECT_FALSE(Save());
  EXPECT_EQ(calls_.started, 1);
  EXPECT_EQ(calls_.disposed, 0);
  EXPECT_EQ(calls_.saves, 0);
  ExpectAllReleased();
}

TEST_F(SaveIconAsPngFailures, OfANullIconAreTheBitmaps) {
  EXPECT_FALSE(SaveIconAsPng(nullptr, folder_.File(L"a.png")));
  EXPECT_EQ(calls_.saves, 0);
  EXPECT_EQ(calls_.stopped, 1);
}

TEST_F(SaveIconAsPngFailures, OfTheCodecListsLengthLeaveTheClassAtZero) {
  calls_.onEncodersSize = [](UINT*, UINT*) { return Gdiplus::GenericError; };
  EXPECT_FALSE(Save());
  ExpectSavedWithoutCodec();
}

TEST_F(SaveIconAsPngFailures, OfTheCodecListLeaveTheClassAtZero) {
  calls_.onEncoders = [this](UINT count, UINT bytes, Gdiplus::ImageCodecInfo* encoders) {
    calls_.RealEncoders(count, bytes, encoders);
    return Gdiplus::GenericError;
  };
  EXPECT_FALSE(Save());
  ExpectSavedWithoutCodec();
}

TEST_F(SaveIconAsPngFailures, OfAnEmptyCodecListAreTheSaves) {
  calls_.onEncodersSize = [](UINT* count, UINT* bytes) {
    *count = 0;
    *bytes = 0;
    return Gdiplus::Ok;
  };
  bool asked = false;
  calls_.onEncoders = [&asked](UINT, UINT, Gdiplus::ImageCodecInfo*) {
    asked = true;
    return Gdiplus::Ok;
  };
  EXPECT_FALSE(Save());
  EXPECT_FALSE(asked) << "there is no entry to ask for";
  ExpectSavedWithoutCodec();
}

TEST_F(SaveIconAsPngFailures, OfACodecListWithoutPngAreTheSaves) {
  calls_.onEncoders = [this](UINT count, UINT bytes, Gdiplus::ImageCodecInfo* encoders) {
    const auto status = calls_.RealEncoders(count, bytes, encoders);
    for (UINT i = 0; i < count; ++i) encoders[i].MimeType = jpegType;
    encoders[0].MimeType = nullptr;
    return status;
  };
  EXPECT_FALSE(Save());
  ExpectSavedWithoutCodec();
}

TEST_F(SaveIconAsPngFailures, OfACountBeyondTheListsLengthAreTheSaves) {
  calls_.onEncodersSize = [](UINT* count, UINT* bytes) {
    *count = 5'000'000;
    *bytes = 7;
    return Gdiplus::Ok;
  };
  bool asked = false;
  calls_.onEncoders = [&asked](UINT, UINT, Gdiplus::ImageCodecInfo*) {
    asked = true;
    return Gdiplus::Ok;
  };
  EXPECT_FALSE(Save());
  EXPECT_FALSE(asked) << "there is no room for such a list";
  ExpectSavedWithoutCodec();
}

TEST_F(SaveIconAsPngFailures, OfTheSaveAreTold) {
  calls_.saveStatus = Gdiplus::AccessDenied;
  EXPECT_FALSE(Save());
  EXPECT_EQ(calls_.saves, 1);
  ExpectAllReleased();
}

TEST_F(SaveIconAsPngFailures, OfAPathThatCannotBeCreatedAreTold) {
  EXPECT_FALSE(SaveIconAsPng(icon_.get(), folder_.File(L"missing\\a.png")));
  EXPECT_EQ(calls_.saves, 1);
  ExpectAllReleased();
}

TEST_F(SaveIconAsPngFailures, OfAPathLongerThanTheSystemKnowsAreTold) {
  const std::wstring folder(100'000, L'p');
  EXPECT_FALSE(SaveIconAsPng(icon_.get(), L"C:\\" + folder + L"\\a.png"));
  EXPECT_EQ(calls_.saves, 1);
  ExpectAllReleased();
}

TEST_F(SaveIconAsPngFailures, DoNotKeepTheFirstOfTwoPngCodecsFromBeingTaken) {
  calls_.onEncoders = [this](UINT count, UINT bytes, Gdiplus::ImageCodecInfo* encoders) {
    const auto status = calls_.RealEncoders(count, bytes, encoders);
    encoders[0].MimeType = pngType;
    encoders[0].Clsid = CLSID{1, 2, 3, {}};
    return status;
  };
  EXPECT_FALSE(Save());
  EXPECT_TRUE(IsEqualGUID(calls_.saveCodec, CLSID{1, 2, 3, {}}));
  ExpectAllReleased();
}
