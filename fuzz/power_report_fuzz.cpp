// Any bytes as a report of application energy, and the result as the store of the next run: both
// files are those of the literal form, and merging the store must return every row and write the
// same text again.
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::filesystem::path folder = ScratchFolder();
  const std::filesystem::path report = folder / "report.xml";
  const std::filesystem::path store = folder / "store.json";
  TestSupport::WriteBytes(report, {reinterpret_cast<const char*>(data), size});
  DateTime now;
  ParseDateTime(now, "2026-11-14:10:30:15", kTimeStampFormat);
  const ReportingPeriod period(now, kPowerStoreDays);
  const TestSupport::Literal::Apps apps{"\\Device\\HarddiskVolume3",
                                        {{"Orchard.Notes", {"Orchard Notes", ""}}},
                                        [](const std::string& file) { return file; }};
  DisplayNames names(apps.devicePrefix, apps.packages, apps.describeFile);
  PowerLog log;
  ReadPowerReport(report.wstring(), period, names, log);
  const std::string text = Write(log, store);

  TestSupport::Literal::Log literal;
  TestSupport::Literal::ReadReport(report, period, apps, literal);
  TestSupport::Literal::WriteStore(folder / "literal.json", literal);
  if (TestSupport::ReadBytes(folder / "literal.json") != text) std::abort();

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
