#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Finds the rows of a log, which are numbered from 0, by their identities. A name is a number too.
/// Rows of one instant whose names have adjacent numbers share a block, and the block found last
/// needs no search: reports and stores list the applications of one hour after another. Others
/// choose the names and the times; for any choice a look-up costs at most one comparison for each
/// doubling of the number of rows. Used by one thread.
class RowIndex {
 public:
  struct Identity {
    std::int64_t instant;
    std::uint32_t name;
  };

  static constexpr std::uint32_t kNoRow = 0xFFFFFFFF;

  /// The row of this identity, or kNoRow.
  [[nodiscard]] std::uint32_t Find(const Identity& identity);

  /// Makes `row` the row of this identity.
  void Set(const Identity& identity, std::uint32_t row);

  /// Forgets the row of this identity, which exists.
  void Erase(const Identity& identity);

 private:
  static constexpr std::size_t kNamesPerBlock = 8;

  /// The rows of one instant and of consecutive names, or kNoRow.
  using Block = std::array<std::uint32_t, kNamesPerBlock>;
  using Key = std::pair<std::int64_t, std::uint32_t>;
  using Blocks = std::map<Key, Block>;

  [[nodiscard]] static Key KeyOf(const Identity& identity) {
    return {identity.instant, identity.name / kNamesPerBlock};
  }
  [[nodiscard]] static std::size_t PlaceOf(const Identity& identity) {
    return identity.name % kNamesPerBlock;
  }
  /// The block, which `last_` is then, or null.
  [[nodiscard]] Block* TryFindBlock(const Key& key);

  Blocks blocks_;
  Blocks::iterator last_ = blocks_.end();  ///< the block found last
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
