// Any bytes as a report of application energy, and the result as the store of the next run: both
// files are those of the literal form, also if the store cannot hold all rows, and merging the
// store must return every row and write the same text again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "base/date_text.h"
#include "base/scratch_folder.h"
#include "reports/literal_reports.h"
#include "reports/power_report.h"
#include "reports/power_store.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

std::filesystem::path ScratchFolder() {
  std::string path = (std::filesystem::temp_directory_path() / "wattleaf-fuzz-XXXXXX").string();
  if (mkdtemp(path.data()) == nullptr) std::abort();
  return path;
}

/// The text of the store, which is left at `path`.
std::string Write(const PowerLog& log, const std::filesystem::path& path) {
  if (!WritePowerStore(path.wstring(), log)) std::abort();
  return TestSupport::ReadBytes(path);
}

void Merge(const std::filesystem::path& path, const ReportingPeriod& period, PowerLog& log) {
  const auto store = TryReadPowerStore(path.wstring(), period);
  if (!store) std::abort();
  MergePowerStore(*store, log);
}

const TestSupport::Literal::Apps& Apps() {
  static const TestSupport::Literal::Apps apps{"\\Device\\HarddiskVolume3",
                                               {{"Orchard.Notes", {"Orchard Notes", ""}}},
                                               [](const std::string& file) { return file; }};
  return apps;
}

/// Adds the rows of the report to a log, and aborts unless the store is that of the literal form.
/// Returns its text. The store is left at `store`.
std::string Convert(const std::filesystem::path& report, const ReportingPeriod& period,
                    const PowerStoreLimits& limits, PowerLog& log,
                    const std::filesystem::path& store) {
  DisplayNames names(Apps().devicePrefix, Apps().packages, Apps().describeFile);
  ReadPowerReport(report.wstring(), period, names, log);

  TestSupport::Literal::Log literal(limits);
  TestSupport::Literal::ReadReport(report, period, Apps(), literal);
  TestSupport::Literal::WriteStore(store, literal);
  const std::string expected = TestSupport::ReadBytes(store);
  if (Write(log, store) != expected) std::abort();
  return expected;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::filesystem::path folder = ScratchFolder();
  const std::filesystem::path report = folder / "report.xml";
  const std::filesystem::path store = folder / "store.json";
  TestSupport::WriteBytes(report, {reinterpret_cast<const char*>(data), size});
  DateTime now;
  ParseDateTime(now, "2026-11-14:10:30:15", kTimeStampFormat);
  const ReportingPeriod period(now, kPowerStoreDays);
  // Rows are removed from this log.
  const PowerStoreLimits small{.rows = size % 8, .fileBytes = 100 + size % 900};
  PowerLog smallLog(small);
  Convert(report, period, small, smallLog, store);

  PowerLog log;
  const std::string text = Convert(report, period, {}, log, store);

  PowerLog next;
  Merge(store, period, next);
  if (next.Size() != log.Size()) std::abort();
  Merge(store, period, log);
  if (Write(log, store) != text) std::abort();

  TestSupport::Literal::Log literalNext;
  TestSupport::Literal::MergeStore(store, period, literalNext);
  TestSupport::Literal::WriteStore(folder / "literal.json", literalNext);
  if (TestSupport::ReadBytes(folder / "literal.json") != Write(next, store)) std::abort();
  return 0;
}
