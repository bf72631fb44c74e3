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

/// The PNG codec's class, as the system's documentation names it.
constexpr CLSID kPngCodec = {
    0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

}  // namespace

TEST(SaveIconAsPng, WritesTheIconsSizeAndPixels) {
  const TempFolder folder;
  const auto icon = SampleIcon();
  ASSERT_TRUE(SaveIconAsPng(icon.get(), folder.File(L"a.png")));
  const PngPicture picture = ReadPng(folder.File(L"a.png"));
  EXPECT_EQ(picture.width, 32u);
  EXPECT_EQ(picture.height, 32u);
  EXPECT_EQ(picture.middle, 0xFFE62E3Du);
  EXPECT_EQ(picture.corner >> 24, 0u) << "the ground is transparent";
}

TEST(SaveIconAsPng, OverwritesAFileThatIsThere) {
  const TempFolder folder;
  TestSupport::WriteWholeFile(folder.File(L"a.png"), std::string(100'000, 'x'));
  const auto icon = SampleIcon();
  ASSERT_TRUE(SaveIconAsPng(icon.get(), folder.File(L"a.png")));
  EXPECT_LT(TestSupport::ReadWholeFile(folder.File(L"a.png")).size(), 100'000u);
  EXPECT_EQ(ReadPng(folder.File(L"a.png")).width, 32u);
}

TEST(SaveIconAsPng, LeavesTheIconToItsOwner) {
  const TempFolder folder;
  const auto icon = SampleIcon();
  ASSERT_TRUE(SaveIconAsPng(icon.get(), folder.File(L"a.png")));
  ASSERT_TRUE(SaveIconAsPng(icon.get(), folder.File(L"b.png")));
  EXPECT_TRUE(FileExists(folder.File(L"b.png")));
}

TEST(SaveIconAsPng, StartsAndStopsTheLibraryForEachIcon) {
  const TempFolder folder;
  const auto icon = SampleIcon();
  GdiplusCalls calls;
  ASSERT_TRUE(SaveIconAsPng(icon.get(), folder.File(L"a.png")));
  ASSERT_TRUE(SaveIconAsPng(icon.get(), folder.File(L"b.png")));
  EXPECT_EQ(calls.started, 2);
  EXPECT_EQ(calls.stopped, 2);
  EXPECT_EQ(calls.startVersion, 1u);
  EXPECT_TRUE(calls.startedPlainly);
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

TEST(SaveIconAsPng, OnSeveralThreadsAtOnceWritesEachFile) {
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
