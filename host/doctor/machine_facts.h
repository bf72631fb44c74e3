#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "days/sample_file.h"
#include "explain/ledger_comparison.h"

// What the subcommand doctor finds on a machine; Diagnose (diagnosis.h) says what it means. All
// texts are UTF-8, all times ISO 8601.
namespace WattleafHost {

struct PlatformFacts {
  bool firmwareFlag = false;
  bool oemMarker = false;
  /// The warnings of the probes: a call that failed is not the same as a flag that is clear.
  std::vector<std::string> firmwareWarnings;
  std::vector<std::string> oemWarnings;
};

/// A file or folder that the service must write.
struct PlaceFacts {
  enum class State { kMissing, kPlain, kFolder, kLink, kUnreadable };
  State state = State::kMissing;
  bool isWritable = false;           ///< for the user who runs the program
  std::int64_t changedInstant = -1;  ///< of the last change, in seconds since 1970; -1 if unknown
};

struct DataFolderFacts {
  std::string path;
  PlaceFacts place;
  /// The accounts that the access list lets write; empty if it cannot be read.
  std::vector<std::string> writers;
};

struct SignatureFacts {
  std::string signer;         ///< the common name of its certificate
  std::string key;            ///< the beginning of its public key
  std::uint32_t verdict = 0;  ///< of the system, for this signature
  bool isKeyAccepted = false;
};

struct CollectorFacts {
  std::string path;
  bool exists = false;
  std::uint32_t systemVerdict = 0;  ///< of WinVerifyTrust, for the file's own signature
  std::vector<SignatureFacts> signatures;
  bool isAcceptedBySystem = false;
  bool isKeyAccepted = false;
  bool isPlaceAllowed = false;
  /// The system's error, 0 after success; nothing if loading was not tried.
  std::optional<std::uint32_t> loadError;
  std::string loadErrorText;
  bool hasFactory = false;
  /// Its answer; nothing if it was not asked, or gave none.
  std::optional<int> status;
  /// Why it gave no answer; empty if it was not asked.
  std::string startProblem;
};

/// A report of the energy tool.
struct ReportFacts {
  enum class State { kMissing, kUnreadable, kNoXml, kRead };
  State state = State::kMissing;
  std::size_t rows = 0;          ///< of applications, at any time
  std::size_t rowsOfPeriod = 0;  ///< of the last 30 days
  std::size_t namedRows = 0;     ///< of those, with a display name
};

struct ToolFacts {
  std::string path;  ///< empty if the system finds no such program
  bool wasRun = false;
  int status = 0;
  ReportFacts report;
};

/// The 30-day store of application energy.
struct StoreFacts {
  PlaceFacts place;
  bool isRead = false;  ///< false if it is not a list of rows
  std::size_t rows = 0;
  std::size_t namedRows = 0;
  std::vector<std::string> unnamedPrograms;
  /// Programs with more than one display name.
  std::vector<std::string> renamedPrograms;
};

struct LedgerFacts {
  PlaceFacts place;
  LedgerState state = LedgerState::kAbsent;
  std::size_t days = 0;  ///< with energy
};

/// One of the last days.
struct DayFacts {
  SampleFile file;
  std::size_t counted = 0;
  std::size_t booked = 0;  ///< intervals
  std::size_t gaps = 0;    ///< intervals that are longer than 600 seconds
  std::int64_t largestGapSeconds = 0;
  float energyWh = 0.0F;
  std::optional<float> bookedWh;
  LedgerRelation relation = LedgerRelation::kNoLedger;
};

struct MachineFacts {
  std::string version;
  std::string now;
  PlatformFacts platform;
  DataFolderFacts folder;
  CollectorFacts collector;
  ToolFacts tool;
  /// The report in the data folder, which a pass deletes after use.
  ReportFacts leftReport;
  StoreFacts store;
  LedgerFacts ledger;
  std::vector<DayFacts> days;  ///< today first
  /// How many days the newest file or booked day is after today.
  int daysAhead = 0;
};

}  // namespace WattleafHost
