#pragma once

#include <cstdint>
#include <string>

namespace TestSupport {

/// What a PNG file holds, as far as tests of icons care; all zero where it is none.
struct PngPicture {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t corner = 0;  // alpha, red, green, blue, from the highest byte
  std::uint32_t middle = 0;
};

/// Checks signature and header by their bytes, and decodes the pixels.
PngPicture ReadPng(const std::wstring& path);

}  // namespace TestSupport
