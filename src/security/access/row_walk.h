#pragma once

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <vector>

// Copying and searching a white list, for both types of rows.
namespace Zq::Gantry::Security {

/// A deep copy of `rows`; an empty list gives an empty copy. Never null.
template <typename Row>
[[nodiscard]] std::shared_ptr<std::vector<Row>> CopyRows(const std::vector<Row>& rows) {
  auto copy = std::make_shared<std::vector<Row>>();
  copy->reserve(rows.size());
  for (const Row& row : rows) copy->push_back(row);
  return copy;
}

/// One row. Throws std::out_of_range with a text of ours, since that of vector::at differs between
/// the standard libraries.
template <typename Row>
[[nodiscard]] const Row& RowAt(const std::vector<Row>& rows, std::size_t index) {
  if (index >= rows.size()) throw std::out_of_range("invalid vector subscript");
  return rows[index];
}

/// Whether `fits` accepts one of the rows, called in their order with a copy of each. Throws
/// std::out_of_range if the list becomes shorter meanwhile.
template <typename Row, typename Fits>
[[nodiscard]] bool AnyRowFits(const std::vector<Row>& rows, Fits fits) {
  const std::size_t count = rows.size();
  for (std::size_t index = 0; index < count; ++index) {
    const Row row = RowAt(rows, index);
    if (fits(row)) return true;
  }
  return false;
}

}  // namespace Zq::Gantry::Security
