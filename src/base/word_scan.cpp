#include "base/word_scan.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

using Word = std::uint64_t;
using Block = std::array<Word, 4>;
constexpr Word kLowestBits = 0x0101010101010101;
constexpr Word kHighestBits = 0x8080808080808080;

Block BlockAt(const char* bytes) {
  Block block;
  std::memcpy(block.data(), bytes, sizeof block);
  return block;
}

/// Without one, subtracting 1 from each byte sets the highest bit only where it was set before.
bool HasZeroByte(const Block& block) {
  Word marks = 0;
  for (const Word word : block) marks |= (word - kLowestBits) & ~word;
  return (marks & kHighestBits) != 0;
}

}  // namespace

bool IsSameText(std::string_view left, std::string_view right) {
  if (left.size() != right.size()) return false;
  std::size_t place = 0;
  for (; left.size() - place >= sizeof(Block); place += sizeof(Block)) {
    if (BlockAt(left.data() + place) != BlockAt(right.data() + place)) return false;
  }
  return left.substr(place) == right.substr(place);
}

std::size_t FindZeroByte(std::string_view text) {
  std::size_t place = 0;
  while (text.size() - place >= sizeof(Block) && !HasZeroByte(BlockAt(text.data() + place))) {
    place += sizeof(Block);
  }
  return text.find('\0', place);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
