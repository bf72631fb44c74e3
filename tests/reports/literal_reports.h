#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "base/json_document.h"
#include "base/local_calendar.h"
#include "catalogue/icon_finder.h"
#include "reports/power_log.h"
#include "reports/ranking.h"

// Conversion and ranking step by step, as they are described: over whole documents, with a linear
// search for each row. The product's code, which is faster, must give the same files, the same
// rankings and the same calls.
namespace TestSupport::Literal {

namespace Wattleaf = Zq::Gantry::Server::Services::Wattleaf;

/// A row that owns its names.
struct Row {
  std::string name;
  std::string displayName;
  Wattleaf::DateTime time;
  std::int64_t energy = 0;
  std::int64_t instant = Wattleaf::InstantOf(time);
};

/// The rows of one conversion within the limits of the store.
class Log {
 public:
  explicit Log(const Wattleaf::PowerStoreLimits& limits = {}) : limits_(limits) {}

  [[nodiscard]] Row* TryFind(const std::string& name, const Wattleaf::DateTime& time);
  void Append(const Row& row);
  [[nodiscard]] const std::vector<Row>& Rows() const { return rows_; }

 private:
  [[nodiscard]] bool Fits(std::size_t bytes) const;
  [[nodiscard]] std::vector<Row>::iterator Oldest();

  Wattleaf::PowerStoreLimits limits_;
  std::vector<Row> rows_;
  std::int64_t droppedUpTo_ = std::numeric_limits<std::int64_t>::min();
};

/// What a conversion knows of its surroundings.
struct Apps {
  std::string devicePrefix;
  Wattleaf::PackagedApps packages;
  std::function<std::string(const std::string& path)> describeFile;
};

void ReadReport(const std::filesystem::path& path, const Wattleaf::ReportingPeriod& period,
                const Apps& apps, Log& log);

/// A store that is not JSON, or no array, adds nothing.
void MergeStore(const std::filesystem::path& path, const Wattleaf::ReportingPeriod& period,
                Log& log);

void WriteStore(const std::filesystem::path& path, const Log& log);

/// The ranking of an array of rows.
[[nodiscard]] Wattleaf::Ranking Rank(const rapidjson::Value& rows,
                                     const Wattleaf::ReportingPeriod& period,
                                     const Wattleaf::DesktopApps& desktopApps,
                                     const Wattleaf::PackagedApps& packagedApps,
                                     std::string_view iconDirectory, Wattleaf::IconMaker& icons);

}  // namespace TestSupport::Literal
