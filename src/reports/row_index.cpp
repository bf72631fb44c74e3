#include "reports/row_index.h"

#include <algorithm>

namespace Zq::Gantry::Server::Services::Wattleaf {

std::uint32_t RowIndex::Find(const Identity& identity) {
  const Block* block = TryFindBlock(KeyOf(identity));
  return block != nullptr ? (*block)[PlaceOf(identity)] : kNoRow;
}

void RowIndex::Set(const Identity& identity, std::uint32_t row) {
  const Key key = KeyOf(identity);
  if (TryFindBlock(key) == nullptr) {
    last_ = blocks_.try_emplace(key).first;
    last_->second.fill(kNoRow);
  }
  last_->second[PlaceOf(identity)] = row;
}

void RowIndex::Erase(const Identity& identity) {
  Block& block = *TryFindBlock(KeyOf(identity));
  block[PlaceOf(identity)] = kNoRow;
  const bool isEmpty =
      std::all_of(block.begin(), block.end(), [](std::uint32_t row) { return row == kNoRow; });
  if (!isEmpty) return;
  blocks_.erase(last_);
  last_ = blocks_.end();
}

RowIndex::Block* RowIndex::TryFindBlock(const Key& key) {
  if (last_ == blocks_.end() || last_->first != key) last_ = blocks_.find(key);
  return last_ != blocks_.end() ? &last_->second : nullptr;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
