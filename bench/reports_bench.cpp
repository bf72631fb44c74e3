// The application reports: merging a report into a store, and ranking the rows of a store, each
// from the files on disk. Icons and the descriptions of files belong to Windows and are not part of
// it.
#include "reports/many_rows.h"

#include <malloc.h>

#include <fstream>
#include <map>
#include <string>

#include "operation.h"
#include "raw_parsers.h"
#include "reports/power_report.h"
#include "reports/power_store.h"
#include "reports/ranking.h"
#include "reports/report_commands.h"

namespace {

using namespace Zq::Gantry::Server::Services::Wattleaf;
using Path = std::filesystem::path;

/// A report and a store of so many rows each.
struct RowFolder {
  std::size_t rows;

  [[nodiscard]] Path Folder() const { return Bench::Folder() / std::to_string(rows); }
  [[nodiscard]] Path Report() const { return Folder() / kPowerReportFileName; }
  [[nodiscard]] Path Store() const { return Folder() / kPowerStoreFileName; }
  [[nodiscard]] Path OldStore() const { return Folder() / "old-store.json"; }

  /// Also returns unused memory to the system, as after a day without a conversion. Otherwise the
  /// C library would keep that of a small report, but not the larger block of a large one, and
  /// only the large one would pay for fresh pages.
  void Write() const {
    malloc_trim(0);
    std::filesystem::create_directories(Folder());
    if (!std::filesystem::exists(OldStore())) {
      TestSupport::WriteManyRows(Folder(), rows);
      std::filesystem::copy_file(Store(), OldStore());
    }
    std::filesystem::copy_file(OldStore(), Store(),
                               std::filesystem::copy_options::overwrite_existing);
  }
};

RowFolder ManyRows() { return {Bench::Sized(200'000, 100)}; }
RowFolder FewRows() { return {ManyRows().rows / 10}; }

// Merging a report into a store.

bool Convert(const RowFolder& folder) {
  return TestSupport::FoldReport(folder.Folder()) == 2 * folder.rows;
}

bool LoadReportRaw() {
  pugi::xml_document report;
  return Bench::ParseXml(ManyRows().Report(), report);
}

bool LoadStoreRaw() { return Bench::ParseJson(ManyRows().OldStore()).Size() == ManyRows().rows; }

/// The store that a conversion writes.
rapidjson::Document& NewStore() {
  static rapidjson::Document document;
  return document;
}

void PrepareNewStore() {
  ManyRows().Write();
  if (NewStore().IsArray() || !Convert(ManyRows())) return;
  NewStore() = Bench::ParseJson(ManyRows().Store());
  ManyRows().Write();
}

bool ConvertRaw() {
  return LoadReportRaw() && LoadStoreRaw() &&
         Bench::WriteJson(ManyRows().Folder() / "new.json", NewStore());
}

void PrepareManyRows() { ManyRows().Write(); }

const Bench::Registration manyOurs{
    {"convert-200000/ours", PrepareManyRows, [] { return Convert(ManyRows()); }}};
const Bench::Registration manyRaw{{"convert-200000/raw", PrepareNewStore, ConvertRaw}};
const Bench::Registration reportRaw{{"load-report/raw", PrepareManyRows, LoadReportRaw}};
const Bench::Registration storeRaw{{"load-store/raw", PrepareManyRows, LoadStoreRaw}};
const Bench::Registration fewOurs{
    {"convert-20000/ours", [] { FewRows().Write(); }, [] { return Convert(FewRows()); }}};

// Ranking the rows of a store.

class NoIcons : public IconMaker {
 public:
  std::string ExportAppIcon(const std::string&, const IconFile& file) override {
    return file.Path();
  }
  bool CopyLogo(const std::string&, const std::string&) override { return true; }
};

/// Every application of the store is installed.
DesktopApps InstalledApps() {
  DesktopApps apps;
  for (int app = 0; app < 400; ++app) apps[L"Application " + std::to_wstring(app)];
  return apps;
}

bool Rank() {
  const ReportingPeriod period(TestSupport::EndOfManyRows(), kPowerStoreDays);
  static const DesktopApps desktopApps = InstalledApps();
  NoIcons icons;
  const auto store = TryReadPowerStore(ManyRows().OldStore().wstring(), period);
  return store && !RankApplications(*store, desktopApps, {}, "icons", icons).empty();
}

const Bench::Registration rankOurs{{"rank-200000/ours", PrepareManyRows, Rank}};
const Bench::Registration rankRaw{{"rank-200000/raw", PrepareManyRows, LoadStoreRaw}};

}  // namespace
