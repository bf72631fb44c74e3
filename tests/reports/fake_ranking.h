#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "base/scratch_folder.h"
#include "catalogue/recording_icon_maker.h"
#include "reports/ranking.h"
#include "reports/report_times.h"

// A 30-day store as text, and its ranking.
namespace TestSupport {

/// A text as a JSON string.
[[nodiscard]] inline std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char character : text) {
    if (character == '\\') quoted += '\\';
    quoted += character == '\0' ? "\\u0000" : std::string(1, character);
  }
  return quoted + "\"";
}

/// One row of the store. `energy` is any JSON value.
[[nodiscard]] inline std::string StoreRow(std::string_view name, std::string_view displayName,
                                          const std::string& energy,
                                          const std::string& time = "2026-11-14:09:00:00") {
  return R"({"Name":)" + Quoted(name) + R"(,"DisplayName":)" + Quoted(displayName) +
         R"(,"TimeStamp":)" + Quoted(time) + R"(,"TotalEnergy":)" + energy + "}";
}

/// A store with the given rows.
[[nodiscard]] inline std::string Store(const std::vector<std::string>& rows) {
  std::string text = "[";
  for (const std::string& row : rows) text += (text.size() > 1 ? "," : "") + row;
  return text + "]";
}

/// The day up to 2026-11-14 10:30:15.
[[nodiscard]] inline Zq::Gantry::Server::Services::Wattleaf::ReportingPeriod OneDay() {
  return {At("2026-11-14:10:30:15"), 1};
}

/// Ranks a store that is given as text.
struct FakeRanking {
  Zq::Gantry::Server::Services::Wattleaf::DesktopApps desktopApps;
  Zq::Gantry::Server::Services::Wattleaf::PackagedApps packagedApps;
  RecordingIconMaker icons;

  [[nodiscard]] Zq::Gantry::Server::Services::Wattleaf::Ranking Rank(
      const std::vector<std::string>& rows,
      const Zq::Gantry::Server::Services::Wattleaf::ReportingPeriod& period = OneDay()) {
    const ScratchFolder folder;
    const std::filesystem::path path = folder.File("store.json");
    WriteBytes(path, Store(rows));
    const auto store =
        Zq::Gantry::Server::Services::Wattleaf::TryReadPowerStore(path.wstring(), period);
    if (!store) {
      ADD_FAILURE() << "not an array: " << Store(rows);
      return {};
    }
    return RankApplications(*store, desktopApps, packagedApps, kIconDirectory, icons);
  }
};

[[nodiscard]] inline std::vector<std::string> NamesOf(
    const Zq::Gantry::Server::Services::Wattleaf::Ranking& ranking) {
  std::vector<std::string> names;
  for (const auto& entry : ranking) names.push_back(entry.Name);
  return names;
}

[[nodiscard]] inline std::vector<float> ValuesOf(
    const Zq::Gantry::Server::Services::Wattleaf::Ranking& ranking) {
  std::vector<float> values;
  for (const auto& entry : ranking) values.push_back(entry.Value);
  return values;
}

}  // namespace TestSupport
