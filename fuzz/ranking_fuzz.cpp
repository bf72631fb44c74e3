// Any bytes as the 30-day store: ranked and written as an answer without a finding.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "base/json_document.h"
#include "catalogue/icon_target.h"
#include "reports/ranking.h"
#include "reports/ranking_text.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

std::filesystem::path ScratchFile() {
  std::string path = (std::filesystem::temp_directory_path() / "wattleaf-fuzz-XXXXXX").string();
  if (mkdtemp(path.data()) == nullptr) std::abort();
  return path + "/Powerlog.json";
}

/// Finds a copy that would land outside the directory "d".
bool Copy(const std::string&, const std::string& target) {
  const bool isBelow = target.starts_with("d\\") && target.ends_with(".png");
  if (!isBelow || !StaysInDirectory("d", target.substr(2))) std::abort();
  return target.size() % 2 == 0;
}

std::string Export(const std::string& path, const std::string& directory,
                   const std::string& displayName, const std::string& prefix) {
  return path.size() % 2 == 0 ? directory + displayName + prefix : std::string();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::filesystem::path path = ScratchFile();
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  const std::unique_ptr<GenericDocument> store(LoadJsonDocument(path.wstring()));
  if (!store || !store->IsArray()) return 0;

  // Times from the end of 1984 on count.
  const ReportingPeriod period({.tm_mday = 1, .tm_year = 100}, 5500);
  const DesktopApps desktopApps{{L"a", L""}, {L"Meadow", L""}};
  const PackagedApps packagedApps{{"", {}}, {"A", {}}, {"Alder", {}}};
  const IconProduction icons{"d", "\\Device\\V", Export, Copy};
  const Ranking ranking = RankApplications(*store, period, desktopApps, packagedApps, icons);
  if (ranking.size() > kMostRankedApps || RankingText(ranking).empty()) std::abort();
  return 0;
}
