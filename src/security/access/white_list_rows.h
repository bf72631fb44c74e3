#pragma once

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <vector>

// Copying and searching a white list, for both types of rows (exemption_white_lists.h). No locks:
// the caller keeps other threads away from the list.
namespace Zq::Gantry::Security {

/// A deep copy of `rows`; an empty list gives an empty copy. Never null.
template <typename Row>
[[nodiscard]] std::shared_ptr<std::vector<Row>> CopyRows(const std::vector<Row>& rows) {
  auto copy = std::make_shared<std::vector<Row>>();
  copy->reserve(rows.size());
  for (const Row& row : rows) copy->push_back(row);
  return copy;
}

/// The row at `index`, which stays the list's. Throws std::out_of_range for an index beyond the
/// end, with a text of our own, since the text of vector::at differs between the standard
/// libraries.
template <typename Row>
[[nodiscard]] const Row& RowAt(const std::vector<Row>& rows, std::size_t index) {
  if (index >= rows.size()) throw std::out_of_range("invalid vector subscript");
  return rows[index];
}

/// Whether `fits` returns true for one of the rows. It is called with a copy of each row, in order,
/// until the first one that fits; its exceptions propagate. Throws std::out_of_range if the list
/// becomes shorter meanwhile.
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
