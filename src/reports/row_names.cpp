#include "reports/row_names.h"

#include "reports/power_budget.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

std::uint32_t RowNames::Use(std::string_view text) {
  Names::Entry& entry = names_.FindOrAdd(text, {});
  Name& name = entry.second;
  if (name.uses++ > 0) return name.number;
  name.number = TakeNumber();
  name.writtenBytes = WrittenBytes(text);
  entries_[name.number] = &entry;
  return name.number;
}

void RowNames::Release(std::uint32_t number) {
  Names::Entry& entry = *entries_[number];
  if (--entry.second.uses > 0) return;
  freeNumbers_.push_back(number);
  names_.Erase(entry);
}

std::optional<std::uint32_t> RowNames::TryFind(std::string_view name) {
  const Names::Entry* known = names_.TryFind(name);
  if (known == nullptr) return std::nullopt;
  return known->second.number;
}

std::uint32_t RowNames::TakeNumber() {
  if (freeNumbers_.empty()) {
    entries_.push_back(nullptr);
    return static_cast<std::uint32_t>(entries_.size() - 1);
  }
  const std::uint32_t number = freeNumbers_.back();
  freeNumbers_.pop_back();
  return number;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
