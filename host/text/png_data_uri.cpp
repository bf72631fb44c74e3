#include "text/png_data_uri.h"

namespace WattleafHost {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kPngSignature = "\x89PNG\r\n\x1A\n"sv;
constexpr std::string_view kDigits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string Base64(std::string_view bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const std::string_view group = bytes.substr(at, 3);
    unsigned int bits = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      bits = (bits << 8) | (i < group.size() ? static_cast<unsigned char>(group[i]) : 0U);
    }
    for (std::size_t i = 0; i < 4; ++i) {
      text += i <= group.size() ? kDigits[(bits >> (18 - 6 * i)) & 0x3F] : '=';
    }
  }
  return text;
}

}  // namespace

std::string PngDataUri(std::string_view bytes) {
  if (!bytes.starts_with(kPngSignature) || bytes.size() > kMostIconBytes) return {};
  return "data:image/png;base64," + Base64(bytes);
}

}  // namespace WattleafHost
