#pragma once

#include <cstdint>
#include <string>

// Part of the stand-in for the package manager.
namespace Standin::Packages {

/// The bytes of a PNG: a disc of this colour (0xRRGGBB) on a transparent square of `side` pixels,
/// at most 100.
std::string DiscPng(std::uint32_t side, std::uint32_t colour);

}  // namespace Standin::Packages
