// Any bytes as the 30-day store: the ranking of its rows and the calls for icons are those of the
// literal form, and no icon may be written outside the client's folder.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "base/json_document.h"
#include "catalogue/icon_finder.h"
#include "reports/literal_reports.h"
#include "reports/ranking.h"
#include "reports/ranking_text.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

std::filesystem::path ScratchFile() {
  std::string path = (std::filesystem::temp_directory_path() / "wattleaf-fuzz-XXXXXX").string();
  if (mkdtemp(path.data()) == nullptr) std::abort();
  return path + "/Powerlog.json";
}

/// Writes nothing; aborts if a logo would be copied to a path outside the folder "d".
class CheckingIconMaker final : public IconMaker {
 public:
  std::string ExportAppIcon(const std::string& executable, const IconFile& file) override {
    calls += "export " + executable + " " + file.Path() + "\n";
    return executable.size() % 2 == 0 ? file.Path() : std::string();
  }

  bool CopyLogo(const std::string& logo, const std::string& target) override {
    calls += "copy " + logo + " " + target + "\n";
    const bool isBelow = target.starts_with("d\\") && target.ends_with(".png");
    if (!isBelow || !IconFile{"d", target.substr(2)}.StaysInDirectory()) std::abort();
    return calls.size() % 2 == 0;
  }

  std::string calls;
};

/// A value that is not finite ends the text of a ranking, so that all values are compared here too.
bool AreEqual(const Ranking& left, const Ranking& right) {
  return RankingText(left) == RankingText(right) &&
         std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](const TopAppEntry& one, const TopAppEntry& other) {
                      const bool areNan = std::isnan(one.Value) && std::isnan(other.Value);
                      return one.Name == other.Name && one.Icon == other.Icon &&
                             (areNan || one.Value == other.Value);
                    });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::filesystem::path path = ScratchFile();
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  // Rows from the end of 1984 on count.
  const ReportingPeriod period({.tm_mday = 1, .tm_year = 100}, 5500);
  const std::unique_ptr<GenericDocument> document(LoadJsonDocument(path.wstring()));
  const auto store = TryReadPowerStore(path.wstring(), period);
  if (store.has_value() != (document && document->IsArray())) std::abort();
  if (!store) return 0;

  const DesktopApps desktopApps{{L"a", L""}, {L"Meadow", L""}};
  const PackagedApps packagedApps{{"", {}}, {"A", {}}, {"Alder", {}}};
  CheckingIconMaker icons;
  const Ranking ranking = RankApplications(*store, desktopApps, packagedApps, "d", icons);
  if (ranking.size() > kMostRankedApps || RankingText(ranking).empty()) std::abort();

  CheckingIconMaker literalIcons;
  const Ranking literal =
      TestSupport::Literal::Rank(*document, period, desktopApps, packagedApps, "d", literalIcons);
  if (!AreEqual(ranking, literal) || icons.calls != literalIcons.calls) std::abort();
  return 0;
}
