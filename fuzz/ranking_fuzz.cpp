// Any bytes as the 30-day store: ranking its rows and writing the answer must not fail a sanitizer,
// and no icon may be written outside the client's folder.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "base/json_document.h"
#include "catalogue/icon_finder.h"
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
    return executable.size() % 2 == 0 ? file.Path() : std::string();
  }

  bool CopyLogo(const std::string&, const std::string& target) override {
    const bool isBelow = target.starts_with("d\\") && target.ends_with(".png");
    if (!isBelow || !IconFile{"d", target.substr(2)}.StaysInDirectory()) std::abort();
    return target.size() % 2 == 0;
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::filesystem::path path = ScratchFile();
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  const std::unique_ptr<GenericDocument> store(LoadJsonDocument(path.wstring()));
  if (!store || !store->IsArray()) return 0;

  // Rows from the end of 1984 on count.
  const ReportingPeriod period({.tm_mday = 1, .tm_year = 100}, 5500);
  const DesktopApps desktopApps{{L"a", L""}, {L"Meadow", L""}};
  const PackagedApps packagedApps{{"", {}}, {"A", {}}, {"Alder", {}}};
  CheckingIconMaker icons;
  const Ranking ranking = RankApplications(*store, period, desktopApps, packagedApps, "d", icons);
  if (ranking.size() > kMostRankedApps || RankingText(ranking).empty()) std::abort();
  return 0;
}
