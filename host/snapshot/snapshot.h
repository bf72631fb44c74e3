#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ledger/power_ledger.h"

// What the data folder says about this machine's energy, read without a pass and without changing
// anything. The figures are those of the library's commands, worked out by the library's own code.
// All texts are UTF-8; energy is watt-hours; times are ISO 8601 with the zone's offset at that
// time.
namespace WattleafHost {

/// One hour, day or month.
struct EnergyPoint {
  std::string label;  ///< as the command's answer has it: "14:00", "Tue", "Nov"
  std::string begin;  ///< its first moment: "2026-11-22T14:00:00+01:00"
  double energyWh = 0.0;
  /// False if nothing is known, as opposed to an energy of 0.0. A day or a month has data if a day
  /// of it is booked with a value other than 0.0, since the ledger has 0.0 for "not booked yet". An
  /// hour has data if the samples give it a sum, perhaps 0.0.
  bool hasData = false;
  std::int64_t beginInstant = -1;  ///< `begin` in seconds since 1970 in UTC
};

/// One application of the ranking.
struct ApplicationShare {
  std::string name;
  std::string icon;  ///< path of its PNG; empty if it has none
  double percent = 0.0;
};

/// The ranking of command 2, and what it leaves out.
struct ApplicationShares {
  std::vector<ApplicationShare> largest;  ///< at most twenty, largest first
  /// 100 less the sum of `largest`: all other applications and Windows itself. Negative only for a
  /// store with energies that are negative or need more than 32 bits.
  double everythingElsePercent = 0.0;
  unsigned int days = 0;  ///< the days that it covers
};

struct Snapshot {
  std::string hostVersion;
  std::string machine;  ///< the computer's name
  std::string takenAt;
  /// The state of command 7: 1 supported, 0 not supported, -1 firmware update required.
  int supportState = 0;
  double averageDayWh = 0.0;        ///< command 1
  double trees = 0.0;               ///< command 3; infinite for an absurdly large average
  std::vector<EnergyPoint> hours;   ///< command 4, oldest first
  std::vector<EnergyPoint> days;    ///< command 5
  std::vector<EnergyPoint> months;  ///< command 6
  /// Ascending, labelled "2026-11-22": the booked days, and each day between the first of them and
  /// today that is not booked. Today's value is still growing.
  std::vector<EnergyPoint> ledger;
  /// Nothing if there is no store that can be read, or its energies add up to 0.
  std::optional<ApplicationShares> applications;

  std::string zone;  ///< the system's name of its time zone; may be empty
  std::int64_t takenInstant = -1;
  /// How many of the seven days of the average are booked. With none, average and trees are 0.0
  /// because nothing is known.
  unsigned int bookedDaysOfAverage = 0;
  std::string ledgerProblem;        ///< kNoLedger, kLedgerUnreadable or empty
  std::string applicationsProblem;  ///< why there are no `applications`; otherwise empty
};

inline constexpr char kNoLedger[] = "no ledger";
inline constexpr char kLedgerUnreadable[] = "ledger not readable";

/// What a snapshot is made of.
struct SnapshotInputs {
  std::string hostVersion;
  std::string machine;
  std::string zone;
  std::int64_t now = -1;  ///< seconds since 1970 in UTC
  int supportState = 0;
  Zq::Gantry::Server::Services::Wattleaf::PowerLedger ledger;
  std::string ledgerProblem;
  std::map<int, float> yesterdayWh;  ///< by hour, as HourlyEnergyWh returns it
  std::map<int, float> todayWh;
  std::optional<ApplicationShares> applications;
  std::string applicationsProblem;
};

[[nodiscard]] Snapshot MakeSnapshot(const SnapshotInputs& inputs);

}  // namespace WattleafHost
