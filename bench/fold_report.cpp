// Merges a report of 20,000 rows into a store of 20,000, then the same with ten times as many, and
// prints both times and their ratio. Measures reading, merging and saving, not writing the inputs.
//
//   fold_report [ROWS]
//
// ROWS is the smaller number instead of 20,000.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>

#include "reports/many_rows.h"

namespace {

/// Negative if the store lacks rows at the end.
double SecondsOfOneFold(std::size_t rows) {
  const std::filesystem::path folder = std::filesystem::temp_directory_path() /
                                       ("wattleaf-bench-" + std::to_string(std::random_device{}()));
  std::filesystem::create_directory(folder);
  TestSupport::WriteManyRows(folder, rows);

  const auto start = std::chrono::steady_clock::now();
  const std::size_t stored = TestSupport::FoldReport(folder);
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;

  std::filesystem::remove_all(folder);
  return stored == 2 * rows ? time.count() : -1;
}

/// The shortest of three runs: other work of the machine can only lengthen a run.
double SecondsToFold(std::size_t rows) {
  double shortest = SecondsOfOneFold(rows);
  for (int run = 1; run < 3; ++run) shortest = std::min(shortest, SecondsOfOneFold(rows));
  std::printf("%7zu rows into %7zu: %7.3f s\n", rows, rows, shortest);
  return shortest;
}

}  // namespace

int main(int count, char** arguments) {
  const std::size_t rows = count > 1 ? std::stoul(arguments[1]) : 20'000;
  const double few = SecondsToFold(rows);
  const double many = SecondsToFold(10 * rows);
  if (few <= 0 || many <= 0) return 1;
  std::printf("ten times the rows take %.1f times the time\n", many / few);
  return 0;
}
