#include "png_image.h"

namespace Standin::Packages {

namespace {

std::string BigEndian(std::uint32_t value) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xFF);
  return bytes;
}

std::uint32_t Crc32(const std::string& bytes) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (const char byte : bytes) {
    crc ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
  }
  return ~crc;
}

std::uint32_t Adler32(const std::string& bytes) {
  std::uint32_t low = 1;
  std::uint32_t high = 0;
  for (const char byte : bytes) {
    low = (low + static_cast<unsigned char>(byte)) % 65521;
    high = (high + low) % 65521;
  }
  return high << 16 | low;
}

std::string Chunk(const std::string& type, const std::string& data) {
  return BigEndian(static_cast<std::uint32_t>(data.size())) + type + data +
         BigEndian(Crc32(type + data));
}

/// A zlib stream of one stored block, which holds up to 65,535 bytes.
std::string Stored(const std::string& bytes) {
  const auto size = static_cast<std::uint16_t>(bytes.size());
  const auto pair = [](std::uint16_t value) {
    return std::string{static_cast<char>(value & 0xFF), static_cast<char>(value >> 8)};
  };
  return std::string("\x78\x01\x01", 3) + pair(size) + pair(static_cast<std::uint16_t>(~size)) +
         bytes + BigEndian(Adler32(bytes));
}

/// Rows of red, green, blue and opacity, each behind the number of its filter.
std::string DiscRows(std::uint32_t side, std::uint32_t colour) {
  const int across = static_cast<int>(side);
  const std::string opaque = BigEndian(colour << 8 | 0xFF);
  std::string rows;
  for (int y = 0; y < across; ++y) {
    rows += '\0';
    for (int x = 0; x < across; ++x) {
      const int dx = 2 * x + 1 - across;
      const int dy = 2 * y + 1 - across;
      rows += dx * dx + dy * dy <= across * across ? opaque : std::string(4, '\0');
    }
  }
  return rows;
}

}  // namespace

std::string DiscPng(std::uint32_t side, std::uint32_t colour) {
  // Eight bits for each of four channels; compression, filter and interlacing are the plain ones.
  const std::string header = BigEndian(side) + BigEndian(side) + std::string("\x08\x06\0\0\0", 5);
  return "\x89PNG\r\n\x1A\n" + Chunk("IHDR", header) +
         Chunk("IDAT", Stored(DiscRows(side, colour))) + Chunk("IEND", "");
}

}  // namespace Standin::Packages
