#include "catalogue/png_file.h"

#include <gtest/gtest.h>

#include "platform/win32/gdiplus_owners.h"
#include "support/temp_folder.h"

namespace TestSupport {

namespace {

using namespace Zq::Gantry::Platform;

std::uint32_t ReadBigEndian(const std::string& bytes, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t i = at; i < at + 4; ++i) {
    number = number << 8 | static_cast<unsigned char>(bytes[i]);
  }
  return number;
}

std::uint32_t Pixel(Gdiplus::GpImage* image, std::uint32_t x, std::uint32_t y) {
  Gdiplus::ARGB colour = 0;
  EXPECT_EQ(
      Gdiplus::DllExports::GdipBitmapGetPixel(static_cast<Gdiplus::GpBitmap*>(image),
                                              static_cast<INT>(x), static_cast<INT>(y), &colour),
      Gdiplus::Ok);
  return colour;
}

}  // namespace

PngPicture ReadPng(const std::wstring& path) {
  PngPicture picture;
  const std::string bytes = ReadWholeFile(path);
  if (bytes.size() < 24 || bytes.substr(0, 8) != "\x89PNG\r\n\x1A\n") return picture;
  EXPECT_EQ(bytes.substr(12, 4), "IHDR");
  picture.width = ReadBigEndian(bytes, 16);
  picture.height = ReadBigEndian(bytes, 20);

  const GdiplusSession session;
  Gdiplus::GpBitmap* bitmap = nullptr;
  EXPECT_EQ(Gdiplus::DllExports::GdipCreateBitmapFromFile(path.c_str(), &bitmap), Gdiplus::Ok);
  const UniqueGdiplusImage image(bitmap);
  if (!image) return picture;
  picture.corner = Pixel(image.get(), 0, 0);
  picture.middle = Pixel(image.get(), picture.width / 2, picture.height / 2);
  return picture;
}

}  // namespace TestSupport
