#pragma once

#include <windows.h>

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <filesystem>
#include <map>
#include <set>
#include <stdexcept>
#include <string>

#include "answers/answer.h"
#include "host/notebook/notebook.h"
#include "support/scoped_variable.h"
#include "support/temp_folder.h"

namespace TestSupport {

/// Runs of the host on an empty data folder, with reports of chosen applications only.
class UntidyApplications : public TestSupport::OnNotebook {
 protected:
  static constexpr wchar_t kData[] = L"C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector";
  static constexpr wchar_t kPackages[] = L"C:\\Program Files\\WindowsApps\\";

  void SetUp() override {
    OnNotebook::SetUp();
    if (IsSkipped()) return;
    std::filesystem::remove_all(kData);
  }

  /// `only`: parts of the applications' identities, separated by "|".
  NotebookRun Serve(const std::wstring& only) const {
    const ScopedVariable rows(L"WATTLEAF_POWERCFG_ONLY", only);
    return RunOnNotebook({L"serve-once", L"--json", L"--icons", icons_.Path()});
  }

  /// The result of command 2.
  static WattleafHost::Ranking RankingOf(const NotebookRun& run) {
    rapidjson::Document document;
    document.Parse(run.host.output.c_str());
    if (document.HasParseError()) throw std::runtime_error("no JSON: " + run.host.output);
    const auto& text = document["commands"][1]["text"];
    return WattleafHost::TryReadRanking(text.IsString() ? text.GetString() : "none").value();
  }
  WattleafHost::Ranking Rank(const std::wstring& only) const { return RankingOf(Serve(only)); }

  /// The names in the store by identity, which is without the prefix of drive C:. Rows without an
  /// identity are left out.
  static std::map<std::string, std::string> StoredNames() {
    std::map<std::string, std::string> names;
    ForEachStored([&names](const std::string& identity, const auto& row) {
      if (!identity.empty()) names[identity] = row["DisplayName"].GetString();
    });
    return names;
  }
  /// The percentage of the store's energy in rows with `part` in their identity.
  static double StoredShare(const std::string& part) {
    double energy = 0.0;
    double total = 0.0;
    ForEachStored([&](const std::string& identity, const auto& row) {
      const double value = row["TotalEnergy"].GetDouble();
      total += value;
      if (identity.find(part) != std::string::npos) energy += value;
    });
    return energy / total * 100.0;
  }

  std::set<std::wstring> IconFiles() const {
    std::set<std::wstring> names;
    for (const auto& entry : std::filesystem::directory_iterator(icons_.Path())) {
      names.insert(entry.path().filename().wstring());
    }
    return names;
  }
  std::string Icon(const std::wstring& name) const { return ReadWholeFile(icons_.File(name)); }
  /// A file of a package's folder of images.
  static std::string Asset(const std::wstring& package, const std::wstring& name) {
    return ReadWholeFile(kPackages + package + L"\\Assets\\" + name);
  }

 private:
  template <typename Use>
  static void ForEachStored(Use use) {
    char prefix[1024] = {};
    QueryDosDeviceA("C:", prefix, sizeof(prefix) - 1);
    rapidjson::Document store;
    store.Parse(ReadWholeFile(std::wstring(kData) + L"\\Powerlog.json").c_str());
    ASSERT_TRUE(store.IsArray());
    for (const auto& row : store.GetArray()) {
      std::string identity = row["Name"].GetString();
      if (identity.starts_with(prefix)) identity.erase(0, std::string(prefix).size() + 1);
      use(identity, row);
    }
  }

  const TestSupport::TempFolder icons_;
};

/// The file name of an entry's icon.
inline std::string IconName(const WattleafHost::RankedApp& app) {
  return app.icon.substr(app.icon.find_last_of('\\') + 1);
}

}  // namespace TestSupport
