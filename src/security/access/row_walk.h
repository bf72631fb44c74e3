#pragma once

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <vector>

// What copying a white list and walking it have in common, whatever the rows are.
namespace Zq::Gantry::Security {

/// A deep copy of `rows`; an empty list gives an empty copy.
template <typename Row>
std::shared_ptr<std::vector<Row>> CopyRows(const std::vector<Row>& rows) {
  auto copy = std::make_shared<std::vector<Row>>();
  copy->reserve(rows.size());
  for (const Row& row : rows) copy->push_back(row);
  return copy;
}

/// Bounds are tested here and not by `at`, whose words differ between the standard libraries.
template <typename Row>
const Row& RowAt(const std::vector<Row>& rows, std::size_t index) {
  if (index >= rows.size()) throw std::out_of_range("invalid vector subscript");
  return rows[index];
}

/// Whether `fits` takes one of the rows, asked in order. Throws std::out_of_range where the list
/// shrinks during the walk.
template <typename Row, typename Fits>
bool AnyRowFits(const std::vector<Row>& rows, Fits fits) {
  const std::size_t count = rows.size();
  for (std::size_t index = 0; index < count; ++index) {
    const Row row = RowAt(rows, index);
    if (fits(row)) return true;
  }
  return false;
}

}  // namespace Zq::Gantry::Security
