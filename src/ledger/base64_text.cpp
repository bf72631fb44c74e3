#include "ledger/base64_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kGroupChars = 4;
constexpr std::size_t kGroupBytes = 3;

/// The bytes of a group as one number, the first of them lowest. Both targets store numbers so.
using Group = std::uint32_t;
static_assert(std::endian::native == std::endian::little);

/// A bit that no group has.
constexpr Group kNoGroup = 0x80000000;

/// By the place of a character in its group: the bits that each character adds to the group, or
/// kNoGroup.
constexpr std::array<std::array<Group, 256>, kGroupChars> kBits = [] {
  std::array<std::array<Group, 256>, kGroupChars> bits{};
  for (std::size_t place = 0; place < kGroupChars; ++place) {
    bits[place].fill(kNoGroup);
    for (std::size_t i = 0; i < kAlphabet.size(); ++i) {
      const auto value = static_cast<Group>(i) << 6 * (kGroupChars - 1 - place);
      bits[place][static_cast<unsigned char>(kAlphabet[i])] =
          (value & 0xFF) << 16 | (value & 0xFF00) | value >> 16;
    }
  }
  return bits;
}();

Group GroupOf(const char* chars) {
  const auto bits = [chars](std::size_t place) {
    return kBits[place][static_cast<unsigned char>(chars[place])];
  };
  return bits(0) | bits(1) | bits(2) | bits(3);
}

/// Decodes the groups before the first one with a character that is not of the alphabet. Returns
/// their number. Overwrites one byte after those of the last group.
std::size_t DecodeGroups(std::string_view text, char* bytes) {
  std::size_t count = 0;
  for (; text.size() >= kGroupChars; text.remove_prefix(kGroupChars)) {
    const Group group = GroupOf(text.data());
    if ((group & kNoGroup) != 0) break;
    std::memcpy(bytes + count * kGroupBytes, &group, sizeof(group));
    ++count;
  }
  return count;
}

}  // namespace

std::optional<std::string> TryDecodeBase64(std::string_view text) {
  if (text.ends_with(kLineEnd)) text.remove_suffix(kLineEnd.size());
  if (text.size() < kGroupChars) return std::nullopt;
  std::string last(text.substr(text.size() - kGroupChars));
  text.remove_suffix(kGroupChars);

  // With room for the last group.
  std::string bytes(text.size() / kGroupChars * kGroupBytes + kGroupBytes, '\0');
  char* end = bytes.data();
  while (text.size() >= kGroupChars) {
    const std::size_t groups = DecodeGroups(text, end);
    if (groups == 0) return std::nullopt;
    end += groups * kGroupBytes;
    text.remove_prefix(groups * kGroupChars);
    if (text.starts_with(kLineEnd)) text.remove_prefix(kLineEnd.size());
  }
  if (!text.empty()) return std::nullopt;

  // Padding counts as zeros, and the bytes that it completes are dropped. If one of them is not
  // zero, the character before the padding has bits that belong to no byte.
  const std::size_t padding = last.ends_with("==") ? 2 : last.ends_with('=') ? 1 : 0;
  std::fill(last.end() - static_cast<std::ptrdiff_t>(padding), last.end(), kAlphabet.front());
  const Group group = GroupOf(last.data());
  if ((group & kNoGroup) != 0) return std::nullopt;
  std::memcpy(end, &group, kGroupBytes);
  end += kGroupBytes;
  if (!std::all_of(end - padding, end, [](char byte) { return byte == '\0'; })) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(end - bytes.data()) - padding);
  return bytes;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
