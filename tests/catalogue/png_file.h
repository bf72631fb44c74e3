#pragma once

#include <cstdint>
#include <string>

namespace TestSupport {

/// The size of a PNG file and two of its pixels; all zero if the file is not a PNG file.
struct PngPicture {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t corner = 0;  // 0xAARRGGBB
  std::uint32_t middle = 0;
};

/// Checks the signature and the header in the file's bytes and decodes the pixels with GDI+.
[[nodiscard]] PngPicture ReadPng(const std::wstring& path);

}  // namespace TestSupport
