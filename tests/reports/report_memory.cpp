// Runs one pass over a report and a store of a given shape and prints the number of rows and the
// size of the new store and the peak memory of the process. The exit status is 1 if the peak is
// above 1 GiB, if the next pass cannot read the store, or if the store has a wrong number of rows.
// The shape "removed-rows" is a log alone. Without an argument the program prints the shapes. Each
// shape needs a process of its own, since the peak of a process never falls.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>

#include "base/json_document.h"
#include "reports/many_rows.h"
#include "reports/peak_memory.h"
#include "reports/power_budget.h"
#include "reports/power_log.h"
#include "reports/power_store.h"
#include "reports/report_commands.h"

namespace {

using namespace Zq::Gantry::Server::Services::Wattleaf;

constexpr std::size_t kMebibyte = kBytesPerMebibyte;

/// A file that is written piece by piece, so that the whole text is never in memory.
class Part {
 public:
  explicit Part(const std::filesystem::path& path) : file_(path, std::ios::binary) {}
  Part& operator<<(const std::string& text) {
    file_ << text;
    bytes_ += text.size();
    return *this;
  }
  std::size_t Bytes() const { return bytes_; }

 private:
  std::ofstream file_;
  std::size_t bytes_ = 0;
};

std::string Number(std::size_t number) {
  const std::string text = std::to_string(number);
  return std::string(7 - text.size(), '0') + text;
}

/// 2.6 million short rows: a tree with eight million nodes and attributes.
void ShortRows(Part& report) {
  report << "<r>";
  for (std::size_t row = 0; row < 2'600'000; ++row) {
    report << "<a AppId='" + Number(row) + "' TimeStamp='2026-11-14'/>";
  }
  report << "</r>";
}

/// 889,000 rows like those of the system's tool.
void OrdinaryRows(Part& report) {
  report << "<r>";
  for (std::size_t row = 0; row < 889'000; ++row) {
    report << "<Row AppId=\"\\Device\\HarddiskVolume3\\Program Files\\Meadow\\" + Number(row) +
                  ".exe\" TimeStamp=\"2026-11-14:02:10:46\"><TotalEnergyConsumption Value=\"1\"/>"
                  "</Row>";
  }
  report << "</r>";
}

/// Two rows more than a store can hold, the oldest ones first.
void MostRows(Part& report) {
  report << "<r><a AppId='oldest' TimeStamp='2026-11-13'/><a AppId='old' TimeStamp='2026-11-13'/>";
  for (std::size_t row = 0; row < kMostPowerStoreRows; ++row) {
    report << "<a AppId='" + Number(row) + "' TimeStamp='2026-11-14:02'/>";
  }
  report << "</r>";
}

/// As many nodes as the budget allows: first rows that fill the log, then other nodes.
void RowsAndNodes(Part& report) {
  const std::string device = "\\Device\\HarddiskVolume3\\";
  const std::size_t nodeBytes = 2 * 64 + 5 * sizeof(wchar_t);
  std::size_t budget = kMostReportTreeBytes - 12 * kMebibyte;
  report << "<r>";
  for (std::size_t row = 0; row < 800'000; ++row) {
    const std::string text =
        "<a AppId='" + device + Number(row) + std::string(40, 'n') + "' TimeStamp='2026-11-14'/>";
    report << text;
    budget -= text.size() * sizeof(wchar_t) + 64 + 2 * 40 + 2;
  }
  for (; budget > 2 * nodeBytes; budget -= nodeBytes + 2) report << "<a/>x";
  report << "</r>";
}

void LongName(Part& report) {
  report << "<r><a AppId='";
  for (int part = 0; part < 120; ++part) report << std::string(kMebibyte, 'n');
  report << "' TimeStamp='2026-11-14'/></r>";
}

void LongTime(Part& report) {
  report << "<r><a AppId='a' TimeStamp='2026-11-14";
  for (int part = 0; part < 120; ++part) report << std::string(kMebibyte, ' ');
  report << "'/></r>";
}

/// As many rows as a store can hold, one hour older than those of `OrdinaryRows`.
void FullStore(Part& store) {
  for (std::size_t row = 0; row < kMostPowerStoreRows; ++row) {
    store << (row == 0 ? "[" : ",");
    store << R"({"Name":"\\Device\\HarddiskVolume3\\Program\\)" + Number(row) +
                 R"(.exe","DisplayName":"","TimeStamp":"2026-11-14:01:10:46",)"
                 R"("TotalEnergy":-1234567890})";
  }
  store << "]";
}

/// Almost as many values as are read, then objects and strings that are slightly larger than half a
/// block of the parser's pool and so waste the other half, then a string of the greatest length.
void WastefulStore(Part& store) {
  store << "[0";
  for (std::size_t value = 0; value < 980'000; ++value) store << ",0";
  std::string members = "{\"\":0";
  for (int member = 1; member < 1030; ++member) members += ",\"\":0";
  for (std::size_t object = 0; object < 3'390; ++object) store << "," + members + "}";
  const std::string text(33'000, 'x');
  while (store.Bytes() + text.size() + 16 * kMebibyte < kLargestPowerStoreBytes) {
    store << ",\"" + text + "\"";
  }
  store << ",\"" + std::string(16 * kMebibyte - 64'000, 'x') + "\"]";
}

void Nothing(Part&) {}

struct Shape {
  std::function<void(Part&)> writeReport;
  std::function<void(Part&)> writeStore;
  /// The expected number of rows of the new store; not checked if 0.
  std::size_t rows = 0;
};

const std::map<std::string, Shape> kShapes{
    {"nothing", {Nothing, Nothing}},
    {"short-rows", {ShortRows, FullStore}},
    {"ordinary-rows", {OrdinaryRows, FullStore}},
    {"most-rows", {MostRows, FullStore, kMostPowerStoreRows}},
    {"rows-and-nodes", {RowsAndNodes, Nothing}},
    {"long-name", {LongName, FullStore}},
    {"long-time", {LongTime, FullStore}},
    {"full-store", {Nothing, FullStore}},
    {"wasteful-store", {Nothing, WastefulStore}},
    {"rows-and-nodes-full-store", {RowsAndNodes, FullStore}},
    {"worst", {RowsAndNodes, WastefulStore}},
};

int Measure(const Shape& shape) {
  const std::filesystem::path folder = std::filesystem::temp_directory_path() /
                                       ("wattleaf-bench-" + std::to_string(std::random_device{}()));
  std::filesystem::create_directory(folder);
  {
    Part report(folder / kPowerReportFileName);
    shape.writeReport(report);
    Part store(folder / kPowerStoreFileName);
    shape.writeStore(store);
  }
  const std::size_t rows = TestSupport::FoldReport(folder);
  const std::size_t peak = TestSupport::PeakMemoryBytes();
  const auto storeBytes = std::filesystem::file_size(folder / kPowerStoreFileName);
  const std::unique_ptr<GenericDocument> next(LoadJsonDocument(
      (folder / kPowerStoreFileName).wstring(), {kLargestPowerStoreBytes, kMostOpenStoreValues}));
  std::printf("%zu rows, %zu MiB of store, readable: %s, peak %zu MiB\n", rows,
              static_cast<std::size_t>(storeBytes) / kMebibyte, next ? "yes" : "NO",
              peak / kMebibyte);
  std::filesystem::remove_all(folder);
  const bool hasExpectedRows = shape.rows == 0 || shape.rows == rows;
  return next && next->Size() == rows && hasExpectedRows && peak <= 1024 * kMebibyte ? 0 : 1;
}

/// A million rows with names of their own in a log of ten rows, each followed by a second row of
/// the same identity: of the rows that are removed or dropped nothing may remain.
int MeasureRemovedRows() {
  constexpr std::size_t kMostBytes = 24 * kMebibyte;
  PowerLog log({.rows = 10});
  RowTime time;
  for (std::size_t row = 0; row < 1'000'000; ++row) {
    const std::string name = Number(row) + std::string(50, 'n');
    ++time.instant;
    log.Append({name, name + "first", time, 1});
    log.Append({name, name + "second", time, 1});
  }
  const std::size_t peak = TestSupport::PeakMemoryBytes();
  std::printf("%zu rows, peak %zu MiB\n", log.Size(), peak / kMebibyte);
  return log.Size() == 10 && peak <= kMostBytes ? 0 : 1;
}

constexpr char kRemovedRows[] = "removed-rows";

}  // namespace

int main(int argc, char** argv) {
  const std::string name = argc > 1 ? argv[1] : "";
  if (name == kRemovedRows) return MeasureRemovedRows();
  const auto shape = kShapes.find(name);
  if (shape != kShapes.end()) return Measure(shape->second);
  for (const auto& entry : kShapes) std::printf("%s\n", entry.first.c_str());
  std::printf("%s\n", kRemovedRows);
  return argc > 1 ? 2 : 0;
}
