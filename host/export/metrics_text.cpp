#include "export/metrics_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/wmi/support_decision.h"

namespace WattleafHost {

namespace {

namespace WMI = Zq::Gantry::Server::Shared::WMI;

constexpr double kJoulesPerWattHour = 3600.0;
constexpr double kSecondsPerDay = 86400.0;

std::string NumberText(double value) {
  std::array<char, 32> digits{};
  const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  return {digits.data(), written.ptr};
}

/// All samples of one name. All are gauges: each figure is worked out anew and may fall.
class Family {
 public:
  /// `name` without the prefix. No text is escaped here.
  Family(std::string_view name, std::string_view help) : name_("wattleaf_"), help_(help) {
    name_ += name;
  }

  Family& Add(double value, const std::string& labels = {}) {
    if (!std::isfinite(value)) return *this;
    samples_ += name_ + labels + " " + NumberText(value) + "\n";
    return *this;
  }

  /// Empty without samples.
  [[nodiscard]] std::string Text() const {
    if (samples_.empty()) return {};
    return "# HELP " + name_ + " " + std::string(help_) + "\n# TYPE " + name_ + " gauge\n" +
           samples_;
  }

 private:
  std::string name_;
  std::string_view help_;
  std::string samples_;
};

std::string Label(std::string_view name, const std::string& text) {
  return "{" + std::string(name) + "=\"" + LabelValue(text) + "\"}";
}

std::string Machine(const Snapshot& snapshot) {
  Family info("host_info", "The program that wrote this file.");
  info.Add(1.0, Label("version", snapshot.hostVersion));
  Family time("snapshot_timestamp_seconds", "When this file was written.");
  time.Add(static_cast<double>(snapshot.takenInstant));
  Family support("platform_support", "Whether this machine can measure: 1 for its state.");
  for (const auto& [state, name] : {std::pair(WMI::kPlatformSupported, "supported"),
                                    std::pair(WMI::kPlatformNotSupported, "not_supported"),
                                    std::pair(WMI::kPlatformNeedsFirmware, "needs_firmware")}) {
    support.Add(snapshot.supportState == state ? 1.0 : 0.0, Label("state", name));
  }
  return info.Text() + time.Text() + support.Text();
}

std::string Average(const Snapshot& snapshot) {
  if (snapshot.bookedDaysOfAverage == 0) return {};
  return Family("average_day_energy_joules",
                "Energy of an average day: of today and the six days before it, by seven.")
             .Add(snapshot.averageDayWh * kJoulesPerWattHour)
             .Text() +
         Family("trees_saved", "Trees that correspond to the average day for three years.")
             .Add(snapshot.trees)
             .Text();
}

/// Labels the points by their distance from now; the last one has `lastDistance`.
std::string Points(Family family, std::string_view label, std::size_t lastDistance,
                   const std::vector<EnergyPoint>& points) {
  std::size_t distance = points.size() + lastDistance;
  for (const EnergyPoint& point : points) {
    --distance;
    if (!point.hasData) continue;
    family.Add(point.energyWh * kJoulesPerWattHour, Label(label, std::to_string(distance)));
  }
  return family.Text();
}

std::string LastBookedDay(const Snapshot& snapshot) {
  Family family("last_booked_day_timestamp_seconds",
                "Begin of the newest day with energy, today included.");
  for (auto day = snapshot.ledger.rbegin(); day != snapshot.ledger.rend(); ++day) {
    const bool isInFuture = day->beginInstant > snapshot.takenInstant;
    if (!day->hasData || isInFuture) continue;
    return family.Add(static_cast<double>(day->beginInstant)).Text();
  }
  return {};
}

/// Two names that differ only in bytes that are not UTF-8 have become one: a second sample with the
/// same labels would make the file invalid.
std::vector<std::pair<std::string, double>> MergeNames(
    const std::vector<ApplicationShare>& applications) {
  std::vector<std::pair<std::string, double>> merged;
  for (const ApplicationShare& share : applications) {
    bool isKnown = false;
    for (auto& [name, percent] : merged) {
      if (name != share.name) continue;
      percent += share.percent;
      isKnown = true;
    }
    if (!isKnown) merged.emplace_back(share.name, share.percent);
  }
  return merged;
}

std::string Applications(const Snapshot& snapshot) {
  if (!snapshot.applications) return {};
  const ApplicationShares& shares = *snapshot.applications;
  Family period("ranking_period_seconds", "The time that the shares of applications cover.");
  period.Add(static_cast<double>(shares.days) * kSecondsPerDay);
  Family ratio("application_energy_ratio",
               "Share of the energy of the period, of the twenty largest applications.");
  for (const auto& [name, percent] : MergeNames(shares.largest)) {
    ratio.Add(percent / 100.0, Label("application", name));
  }
  Family rest("everything_else_energy_ratio",
              "Share of all other applications and of the system itself.");
  rest.Add(shares.everythingElsePercent / 100.0);
  return period.Text() + ratio.Text() + rest.Text();
}

}  // namespace

std::string MetricsText(const Snapshot& snapshot) {
  return Machine(snapshot) + Average(snapshot) +
         Points({"hour_energy_joules", "Energy of each of the last twelve full hours."},
                "hours_ago", 1, snapshot.hours) +
         Points({"day_energy_joules", "Energy of each of the seven days before today."}, "days_ago",
                1, snapshot.days) +
         Points({"month_energy_joules", "Energy of each of the last six months, this one is 0."},
                "months_ago", 0, snapshot.months) +
         LastBookedDay(snapshot) + Applications(snapshot);
}

std::string LabelValue(const std::string& text) {
  std::string escaped;
  for (const char character : text) {
    if (character == '\n') {
      escaped += "\\n";
      continue;
    }
    if (character == '\\' || character == '"') escaped += '\\';
    escaped += character;
  }
  return escaped;
}

}  // namespace WattleafHost
