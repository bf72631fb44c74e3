// Stand-in: a seeded model of the energy that the applications of a notebook use.

#include "report_model.h"

#include <array>
#include <sstream>

#include "installed_applications.h"
#include "seeded_random.h"

namespace Standin {

namespace {

constexpr std::int64_t kHour = 3600;

enum Purpose : std::uint64_t {
  kMinutePurpose = 1,
  kAwakePurpose = 2,
  kHabitPurpose = 1000,  // plus the application's place in the list
  kRowPurpose = 2000,    // likewise
};

struct Application {
  std::string appId;
  std::int64_t weight;   // of its energy
  std::int64_t percent;  // of the hours awake in which it runs
};

/// A program with a name outside ASCII that is not installed.
constexpr char kForeignProgram[] = "\\Program Files\\\xE6\xB3\xA2\\\xE6\xB3\xA2.exe";
/// Packages that are no longer installed: two with names outside ASCII, one of them with a
/// character of four bytes, and one that an update has replaced.
constexpr std::array<const char*, 4> kRemovedPackages = {
    "\xC4\x8C"
    "apek.Robot_1.0.7.0_x64__n6s1d8k4q2v7h!App",
    "Owl.\xF0\x9F\xA6\x89_3.2.0.0_x64__n6s1d8k4q2v7h!App",
    "Plum.Sketch_2.0.0.0_x64__n6s1d8k4q2v7h",
    "Otter.Chat_8.16.0.0_x64__m5t9yk3w7zc8n",
};
/// Services share one program of Windows; the row also names the service.
constexpr std::array<const char*, 3> kServices = {
    "\\windows\\system32\\svchost.exe [HearthCache]",
    "\\windows\\system32\\svchost.exe [LocalServiceNetwork]",
    "\\windows\\system32\\svchost.exe [WinTide]",
};
constexpr std::array<const char*, 2> kOtherDrive = {
    "\\Device\\HarddiskVolume9\\Toolbox\\hammer.exe",
    "\\Device\\HarddiskVolume9\\Nuts & 'Bolts'\\nut.exe",
};
constexpr std::array<const char*, 3> kWithoutProgram = {"Unknown", "System Interrupts", "System"};

/// The full name of the package; with several applications, one name with the id of each.
std::vector<std::string> PackagedIds(const PackagedApp& app) {
  const std::string fullName = std::string(app.name) + '_' + std::string(app.version) + "_x64__" +
                               std::string(app.familySuffix);
  std::vector<std::string> ids;
  std::istringstream applications{std::string(app.applications)};
  for (std::string id; std::getline(applications, id, ',');) {
    ids.push_back(fullName + '!' + (id.starts_with('-') ? id.substr(1) : id));
  }
  return ids.size() > 1 ? ids : std::vector<std::string>{fullName};
}

std::vector<std::string> Identities(const ReportSettings& settings) {
  std::vector<std::string> ids;
  for (const DesktopApp& app : kDesktopApps) {
    ids.push_back(settings.devicePrefix + '\\' + std::string(app.program));
  }
  ids.push_back(settings.devicePrefix + kForeignProgram);
  for (const char* service : kServices) ids.push_back(settings.devicePrefix + service);
  for (const PackagedApp& app : kPackagedApps) {
    for (std::string& id : PackagedIds(app)) ids.push_back(std::move(id));
  }
  ids.insert(ids.end(), kRemovedPackages.begin(), kRemovedPackages.end());
  ids.insert(ids.end(), kOtherDrive.begin(), kOtherDrive.end());
  // A path with the prefix of C: in its middle.
  ids.push_back("\\Device\\Mup\\attic" + settings.devicePrefix + "\\trunk.exe");
  ids.insert(ids.end(), kWithoutProgram.begin(), kWithoutProgram.end());
  return ids;
}

bool IsWanted(const std::string& only, const std::string& id) {
  if (only.empty()) return true;
  std::istringstream parts(only);
  for (std::string part; std::getline(parts, part, '|');) {
    if (id.find(part) != std::string::npos) return true;
  }
  return false;
}

std::vector<Application> Applications(const ReportSettings& settings) {
  std::vector<Application> applications;
  for (std::string& id : Identities(settings)) {
    Random habit(settings.seed, 0, kHabitPurpose + applications.size());
    const std::int64_t size = habit.Between(3, 60);
    const std::int64_t percent = habit.Between(15, 85);
    applications.push_back({std::move(id), size * size / 10 + 1, percent});
    if (!IsWanted(settings.only, applications.back().appId)) applications.back().percent = 0;
  }
  return applications;
}

/// In UTC: working hours on most days, rarely at night.
bool IsAwake(std::uint64_t seed, std::int64_t hour) {
  const std::int64_t hourOfDay = hour % 24;
  const bool weekend = (hour / 24 + 3) % 7 >= 5;  // 1970-01-01 was a Thursday; 0 is Monday
  Random random(seed, hour, kAwakePurpose);
  if (hourOfDay < 7 || hourOfDay > 21) return random.Chance(6);
  return random.Chance(weekend ? 45 : 80);
}

/// Writes the rows, hour after hour.
class RowWriter {
 public:
  explicit RowWriter(const ReportSettings& settings)
      : settings_(settings), applications_(Applications(settings)) {}

  void WriteHour(std::int64_t hour, std::int64_t instant, bool isNewest) {
    const std::string time = settings_.localTime(instant);
    for (std::size_t i = 0; i < applications_.size(); ++i) {
      Random random(settings_.seed, hour, kRowPurpose + i);
      const Application& application = applications_[i];
      if (!random.Chance(application.percent)) continue;
      const std::int64_t energy = application.weight * random.Between(0, 950);
      WriteRows(application.appId, time, isNewest ? energy / 2 : energy, random.Between(1, 1000));
    }
  }

  std::vector<ReportRow> Take() { return std::move(rows_); }

 private:
  static TotalEnergy Energy(std::int64_t energy) { return {std::to_string(energy)}; }

  /// A well-formed row for most values of `oddity`, which is from 1 to 1000.
  void WriteRows(const std::string& appId, const std::string& time, std::int64_t energy,
                 std::int64_t oddity) {
    if (oddity <= 15) {
      rows_.push_back({appId, time, std::nullopt});
    } else if (oddity <= 30) {
      rows_.push_back({appId, time, TotalEnergy{}});
    } else {
      rows_.push_back({appId, time, Energy(energy)});
    }
    if (oddity >= 960) WriteCompanion(appId, time, energy, oddity);
  }

  /// A second row for the same application and hour.
  void WriteCompanion(const std::string& appId, const std::string& time, std::int64_t energy,
                      std::int64_t oddity) {
    if (oddity < 975) {
      rows_.push_back({appId, time, Energy(energy / 3)});
    } else if (oddity < 980) {
      rows_.push_back({appId, time, std::nullopt});
    } else if (oddity < 988) {
      rows_.push_back({std::nullopt, time, Energy(energy)});
    } else if (oddity < 992) {
      rows_.push_back({appId, std::nullopt, Energy(energy)});
    } else if (oddity < 996) {
      rows_.push_back({appId, "yesterday", Energy(energy)});
    } else {
      rows_.push_back({appId, "", Energy(energy)});
    }
  }

  const ReportSettings& settings_;
  std::vector<Application> applications_;
  std::vector<ReportRow> rows_;
};

}  // namespace

std::vector<ReportRow> MakeReportRows(const ReportSettings& settings) {
  const std::int64_t second = Random(settings.seed, 0, kMinutePurpose).Between(0, kHour - 1);
  const std::int64_t newest = (settings.now - second) / kHour;
  RowWriter writer(settings);
  for (std::int64_t hour = newest - settings.days * 24LL + 1; hour <= newest; ++hour) {
    if (!IsAwake(settings.seed, hour)) continue;
    writer.WriteHour(hour, hour * kHour + second, hour == newest);
  }
  return writer.Take();
}

}  // namespace Standin
