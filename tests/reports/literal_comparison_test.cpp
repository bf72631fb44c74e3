#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/scratch_folder.h"
#include "reports/generated_reports.h"
#include "reports/literal_reports.h"
#include "reports/power_report.h"
#include "reports/power_store.h"
#include "reports/report_times.h"

// Conversion and ranking give the bytes, the bits and the calls of their literal form.

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

/// In each of the zones.
constexpr std::uint32_t kCases = 500;

/// Makes icons for some applications, and records all calls in their order.
class SomeIcons final : public IconMaker {
 public:
  std::string ExportAppIcon(const std::string& executable, const IconFile& file) override {
    calls.push_back("export " + executable + " " + file.Path());
    return calls.size() % 3 == 0 ? file.Path() : "";
  }
  bool CopyLogo(const std::string& logo, const std::string& target) override {
    calls.push_back("copy " + logo + " " + target);
    return calls.size() % 3 == 0;
  }

  std::vector<std::string> calls;
};

const PackagedApps& Packages() {
  static const PackagedApps packages{{"Alder", {"Alder Desk", "alder"}},
                                     {"Alder.App", {"Alder App", "app"}},
                                     {"Birch", {"", "birch"}}};
  return packages;
}

/// Small limits in three of four cases, so that rows are dropped.
PowerStoreLimits LimitsOf(GeneratedReports& generated) {
  PowerStoreLimits limits;
  if (generated.Below(2) == 0) limits.rows = generated.Below(20);
  if (generated.Below(2) == 0) limits.fileBytes = generated.Below(3000);
  if (generated.Below(8) == 0) limits.rowBytes = 95 + generated.Below(40);
  return limits;
}

/// One line for each entry, with the bits of its value.
std::string Text(const Ranking& ranking) {
  std::string text;
  for (const TopAppEntry& entry : ranking) {
    const auto bits = std::isnan(entry.Value) ? 0 : std::bit_cast<std::uint32_t>(entry.Value);
    text += entry.Name + "|" + entry.Icon + "|" + std::to_string(bits) + "\n";
  }
  return text;
}

}  // namespace

TEST(ReportConversion, WritesTheFileOfItsLiteralForm) {
  const ScratchFolder folder;
  const ReportingPeriod period(At("2026-11-14:10:30:15"), 30);
  std::size_t rows = 0;
  std::size_t dropped = 0;
  for (std::uint32_t seed = 1; seed <= kCases; ++seed) {
    GeneratedReports generated(seed);
    const std::string report = generated.Report();
    const std::string store = generated.Store();
    const PowerStoreLimits limits = LimitsOf(generated);
    WriteBytes(folder.File("report.xml"), report);
    WriteBytes(folder.File("store.json"), store);

    std::vector<std::string> described;
    PowerLog log(limits);
    DisplayNames names("\\Device\\C", Packages(), [&](const std::string& path) {
      described.push_back(path);
      return path.ends_with("a.exe") ? "File" : "";
    });
    ReadPowerReport(folder.File("report.xml").wstring(), period, names, log);
    if (const auto old = TryReadPowerStore(folder.File("store.json").wstring(), period)) {
      MergePowerStore(*old, log);
    }
    ASSERT_TRUE(WritePowerStore(folder.File("new.json").wstring(), log));

    std::vector<std::string> literallyDescribed;
    Literal::Log literal(limits);
    Literal::ReadReport(folder.File("report.xml"), period,
                        {"\\Device\\C", Packages(),
                         [&](const std::string& path) {
                           literallyDescribed.push_back(path);
                           return path.ends_with("a.exe") ? "File" : "";
                         }},
                        literal);
    Literal::MergeStore(folder.File("store.json"), period, literal);
    Literal::WriteStore(folder.File("literal.json"), literal);

    ASSERT_EQ(ReadBytes(folder.File("new.json")), ReadBytes(folder.File("literal.json")))
        << "seed " << seed << "\n"
        << report << "\n"
        << store;
    ASSERT_EQ(described, literallyDescribed) << "seed " << seed << "\n" << report;
    rows += literal.Rows().size();
    if (literal.Rows().size() == limits.rows) ++dropped;
  }
  EXPECT_GT(rows, 8 * kCases) << "the generated texts hold few rows";
  EXPECT_GT(dropped, kCases / 10) << "the limits are hardly ever reached";
}

TEST(RankApplications, ReturnsTheRankingOfItsLiteralForm) {
  const ScratchFolder folder;
  const DesktopApps desktopApps{{L"Meadow", L""}, {L"Last", L""}};
  std::size_t entries = 0;
  std::size_t calls = 0;
  for (std::uint32_t seed = 1; seed <= kCases; ++seed) {
    GeneratedReports generated(seed);
    const std::string text = generated.Store();
    WriteBytes(folder.File("store.json"), text);
    const std::wstring path = folder.File("store.json").wstring();
    const auto days = static_cast<std::int32_t>(generated.Below(60)) - 20;
    const ReportingPeriod period(At("2026-11-14:10:30:15"), days);

    const auto store = TryReadPowerStore(path, period);
    const std::unique_ptr<GenericDocument> document(LoadJsonDocument(path));
    ASSERT_EQ(store.has_value(), document != nullptr && document->IsArray()) << text;
    if (!store) continue;

    SomeIcons icons;
    const Ranking ranking = RankApplications(*store, desktopApps, Packages(), "d", icons);
    SomeIcons literalIcons;
    const Ranking literal =
        Literal::Rank(*document, period, desktopApps, Packages(), "d", literalIcons);
    ASSERT_EQ(Text(ranking), Text(literal)) << "seed " << seed << "\n" << text;
    ASSERT_EQ(icons.calls, literalIcons.calls) << "seed " << seed << "\n" << text;
    entries += ranking.size();
    calls += icons.calls.size();
  }
  EXPECT_GT(entries, kCases) << "the generated stores rank few applications";
  EXPECT_GT(calls, kCases / 2) << "the generated stores need few icons";
}
