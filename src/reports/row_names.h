#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reports/name_table.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The names of the rows of a log. Each is kept once and has a number, from 0 on, as long as it is
/// in use. Used by one thread.
class RowNames {
 public:
  /// The number of a name, which is in use once more.
  [[nodiscard]] std::uint32_t Use(std::string_view text);

  /// Ends one use. The number of a name without a use may become that of another one.
  void Release(std::uint32_t number);

  /// The number of a name in use.
  [[nodiscard]] std::optional<std::uint32_t> TryFind(std::string_view name);

  [[nodiscard]] const std::string& TextOf(std::uint32_t number) const {
    return entries_[number]->first;
  }
  /// The bytes of a name in the file of the store (WrittenBytes).
  [[nodiscard]] std::size_t BytesOf(std::uint32_t number) const {
    return entries_[number]->second.writtenBytes;
  }

 private:
  struct Name {
    std::uint32_t number = 0;
    std::uint32_t uses = 0;
    std::size_t writtenBytes = 0;
  };
  using Names = NameTable<Name>;

  [[nodiscard]] std::uint32_t TakeNumber();

  Names names_;
  std::vector<Names::Entry*> entries_;      ///< by number
  std::vector<std::uint32_t> freeNumbers_;  ///< of names that are no longer in use
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
