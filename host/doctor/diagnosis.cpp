#include "doctor/diagnosis.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace WattleafHost {

namespace {

using Findings = std::vector<Finding>;
using PlaceState = PlaceFacts::State;
using ReportState = ReportFacts::State;

constexpr std::uint32_t kNoSignature = 0x800B0100;  // TRUST_E_NOSIGNATURE
constexpr std::uint32_t kBadDigest = 0x80096010;    // TRUST_E_BAD_DIGEST
constexpr std::uint32_t kUnknownRoot = 0x800B0109;  // CERT_E_UNTRUSTEDROOT

std::string Hex(std::uint32_t value) {
  std::array<char, 16> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "0x%08X", static_cast<unsigned>(value));
  return buffer.data();
}

std::string Joined(const std::vector<std::string>& texts) {
  constexpr std::size_t kMost = 5;
  std::string joined;
  for (std::size_t i = 0; i < std::min(texts.size(), kMost); ++i) {
    joined += (i > 0 ? ", " : "") + texts[i];
  }
  if (texts.size() > kMost) joined += " and " + std::to_string(texts.size() - kMost) + " more";
  return joined;
}

Finding Fine(std::string step, std::string found, std::string means) {
  return {Severity::kFine, std::move(step), "fine", std::move(found), std::move(means), ""};
}

// Platform

Finding JudgeFirmware(const PlatformFacts& facts) {
  if (facts.firmwareFlag) {
    return Fine("platform", "the firmware's flag is set", "the firmware supports measuring");
  }
  if (!facts.firmwareWarnings.empty()) {
    return {Severity::kNoEnergy,
            "platform",
            "firmware-not-reached",
            Joined(facts.firmwareWarnings),
            "the firmware's WMI classes did not answer; the service takes that as not supported "
            "(command 7: 0)",
            "run as administrator; if it stays, repair WMI or update the firmware's driver"};
  }
  return {Severity::kNoEnergy,
          "platform",
          "firmware-flag-clear",
          "the firmware's flag is clear",
          "this model does not measure; command 7 answers 0 and collection never starts",
          "nothing can be done on this machine; check that it is a supported model"};
}

Finding JudgeOemMarker(const PlatformFacts& facts) {
  if (facts.oemMarker) {
    return Fine("platform", "an OEM string has CarbonSupport=1",
                "the installed firmware is new enough");
  }
  if (!facts.oemWarnings.empty()) {
    return {Severity::kNoEnergy,
            "platform",
            "oem-strings-not-read",
            Joined(facts.oemWarnings),
            "the machine's OEM strings cannot be read; the service takes that as an old firmware",
            "repair WMI (Win32_ComputerSystem)"};
  }
  return {Severity::kNoEnergy,
          "platform",
          "oem-marker-missing",
          "no OEM string has CarbonSupport=1",
          "with the flag set, command 7 answers -1: the firmware is too old",
          "update the firmware"};
}

// Data folder

/// A finding if the place of a file or folder is taken by something that is never used.
void JudgePlace(const char* step, const std::string& name, const PlaceFacts& place,
                bool mustBeFolder, Findings& findings) {
  const bool isTaken = place.state == PlaceState::kLink ||
                       place.state == (mustBeFolder ? PlaceState::kPlain : PlaceState::kFolder);
  if (isTaken) {
    findings.push_back({Severity::kNoEnergy, step, std::string(step) + "-place-taken",
                        name + " is a link, or a file in the place of a folder, or the reverse",
                        "the service does not follow links, and can write nothing there",
                        "remove it; the service makes a new one"});
  } else if (place.state == PlaceState::kUnreadable) {
    findings.push_back({Severity::kProblem, step, std::string(step) + "-not-readable",
                        name + " cannot be read by this user",
                        "nothing can be said about its content", "run as administrator"});
  } else if (place.state != PlaceState::kMissing && !place.isWritable) {
    findings.push_back({Severity::kNoEnergy, step, std::string(step) + "-not-writable",
                        name + " cannot be written by this user",
                        "if the service's account cannot either, the figures stay as they are",
                        "give the service's account the right to change it, and remove a read-only "
                        "attribute"});
  }
}

void JudgeFolder(const DataFolderFacts& facts, Findings& findings) {
  const std::size_t before = findings.size();
  JudgePlace("data-folder", facts.path, facts.place, /*mustBeFolder=*/true, findings);
  if (facts.place.state == PlaceState::kMissing) {
    findings.push_back({Severity::kNote, "data-folder", "data-folder-missing",
                        facts.path + " does not exist", "collection has never started here",
                        "none; the first start makes it"});
  }
  if (findings.size() > before) return;
  const std::string writers =
      facts.writers.empty() ? std::string("its access list cannot be read") : Joined(facts.writers);
  findings.push_back(Fine("data-folder", facts.path + ", written by: " + writers,
                          "samples, ledger and store have a place; whoever may write there can "
                          "change the figures"));
}

// Collector

Finding Refused(std::string cause, std::string found, std::string means, std::string remedy) {
  return {Severity::kNoEnergy, "collector",      std::move(cause),
          std::move(found),    std::move(means), std::move(remedy)};
}

constexpr const char* kNotLoaded =
    "the library does not load it: the log says \"Unable to load DataCollector library.\"";

std::string SignatureText(const SignatureFacts& facts) {
  return "signed by " + facts.signer + ", key " + facts.key + "..., verdict " + Hex(facts.verdict) +
         (facts.isKeyAccepted ? ", an accepted key" : ", not an accepted key");
}

std::string SignaturesText(const CollectorFacts& facts) {
  std::vector<std::string> texts;
  for (const SignatureFacts& signature : facts.signatures)
    texts.push_back(SignatureText(signature));
  return Joined(texts);
}

/// Why the system does not accept a signature of the file.
Finding JudgeSystemVerdict(const CollectorFacts& facts) {
  if (facts.systemVerdict == kBadDigest) {
    return Refused("collector-altered",
                   "the file has changed since it was signed (" + Hex(facts.systemVerdict) + ")",
                   kNotLoaded, "install the collector again from its package");
  }
  if (facts.signatures.empty() && facts.systemVerdict == kNoSignature) {
    return Refused("collector-unsigned", "the file has no signature (" + Hex(kNoSignature) + ")",
                   kNotLoaded, "install the signed collector of its maker");
  }
  if (facts.systemVerdict == kUnknownRoot) {
    return Refused("collector-unknown-root", SignaturesText(facts), kNotLoaded,
                   "install the root certificate of its signer on this machine");
  }
  return Refused(
      "collector-not-verified",
      "the system's verdict is " + Hex(facts.systemVerdict) + "; " + SignaturesText(facts),
      kNotLoaded, "look the verdict up, and install the collector again");
}

void JudgeTrust(const CollectorFacts& facts, Findings& findings) {
  if (!facts.isAcceptedBySystem) {
    findings.push_back(JudgeSystemVerdict(facts));
  } else if (!facts.isKeyAccepted) {
    findings.push_back(
        Refused("collector-other-key", SignaturesText(facts),
                std::string("the build of the library does not accept this key; ") + kNotLoaded,
                "install a collector and a library of the same release"));
  } else {
    findings.push_back(Fine("collector", SignaturesText(facts), "its signature is trusted"));
  }
  if (facts.isPlaceAllowed) {
    findings.push_back(Fine("collector", facts.path, "the file lies in a protected place"));
  } else {
    findings.push_back(Refused("collector-place", facts.path + " is outside the protected places",
                               kNotLoaded,
                               "install the host below Program Files or the Windows folder"));
  }
}

Finding JudgeStatus(int status) {
  switch (status) {
    case 1:
      return Fine("collector", "status 1", "collection starts");
    case 0:
      return Refused("collector-device", "status 0",
                     "the collector does not support this device; command 7 answers 0 from then on",
                     "ask the maker of the collector whether it supports this model");
    case -1:
      return Refused("collector-firmware", "status -1",
                     "the firmware is too old for the collector; command 7 answers -1 from then on",
                     "update the firmware");
    default:
      return Refused(
          "collector-status-" + std::to_string(status), "status " + std::to_string(status),
          "the library does not know this status: it frees the collector without a line "
          "in the log",
          "ask the maker of the collector what status " + std::to_string(status) + " means");
  }
}

void JudgeLoading(const CollectorFacts& facts, Findings& findings) {
  if (!facts.loadError) return;
  if (*facts.loadError != 0) {
    findings.push_back(
        Refused("collector-not-loadable",
                "error " + std::to_string(*facts.loadError) + ": " + facts.loadErrorText,
                kNotLoaded, "install what the collector depends on, for the same processor"));
    return;
  }
  if (!facts.hasFactory) {
    findings.push_back(Refused("collector-no-factory", "it has no CreateZQXExportClass",
                               "it is not a collector of this library",
                               "install the collector of its maker"));
    return;
  }
  findings.push_back(Fine("collector", "the system loads it", "its dependencies are there"));
  if (!facts.startProblem.empty()) {
    findings.push_back(Refused("collector-not-started", facts.startProblem,
                               "collection does not start",
                               "send this text to the maker of the collector"));
  } else if (facts.status) {
    findings.push_back(JudgeStatus(*facts.status));
  } else {
    findings.push_back(
        {Severity::kNote, "collector", "collector-not-asked", "it was not asked for its status",
         "it may refuse to start; of an unknown status the service's log has the line \"Loaded "
         "DataCollector library\" and none after it about StartCollecting()",
         "run doctor --start-collector while the service is stopped; it starts and stops "
         "collecting"});
  }
}

void JudgeCollector(const CollectorFacts& facts, Findings& findings) {
  if (!facts.exists) {
    findings.push_back(Refused("collector-missing", facts.path + " does not exist", kNotLoaded,
                               "install the collector beside the host"));
    return;
  }
  JudgeTrust(facts, findings);
  JudgeLoading(facts, findings);
}

// Reports

/// What is wrong with a report; nothing if its rows can be used.
void JudgeReport(const char* step, const ReportFacts& facts, Severity severity,
                 Findings& findings) {
  const auto add = [&](const char* cause, std::string found, std::string means,
                       std::string remedy) {
    findings.push_back(
        {severity, step, cause, std::move(found), std::move(means), std::move(remedy)});
  };
  const std::string rows = std::to_string(facts.rows) + " rows";
  switch (facts.state) {
    case ReportState::kMissing:
      return;
    case ReportState::kUnreadable:
      return add("report-unreadable", "the report is a link, a folder, too large or locked",
                 "a pass reads nothing from it", "remove it from the data folder");
    case ReportState::kNoXml:
      return add("report-broken", "the report is not XML", "a pass takes no rows from it",
                 "run the tool by hand and look at its output");
    case ReportState::kRead:
      break;
  }
  if (facts.rows == 0) {
    add("report-empty", "the report has no rows of applications", "the ranking gets nothing new",
        "check that the system's diagnostic services run");
  } else if (facts.rowsOfPeriod == 0) {
    add("report-old", rows + ", all older than 30 days", "the ranking gets nothing new",
        "check the clock, and that the system's diagnostic services run");
  } else if (facts.namedRows == 0) {
    add("report-unnamed", rows + ", none of an application with a name",
        "only rows with a display name are kept for the ranking",
        "check that the programs exist on the system drive and have a file description");
  }
}

void JudgeTool(const ToolFacts& facts, Findings& findings) {
  const auto add = [&](const char* cause, std::string found, std::string remedy) {
    findings.push_back({Severity::kProblem, "energy-tool", cause, std::move(found),
                        "the ranking gets nothing new; the other commands are not concerned",
                        std::move(remedy)});
  };
  if (facts.path.empty()) {
    return add("tool-missing", "the system finds no POWERCFG", "repair the Windows folder");
  }
  if (!facts.wasRun) {
    findings.push_back({Severity::kNote, "energy-tool", "tool-not-run", facts.path + " was not run",
                        "whether it works is not known", "run doctor without --no-tool"});
    return;
  }
  if (facts.status != 0) {
    return add("tool-failed", facts.path + " ended with status " + std::to_string(facts.status),
               "run doctor as administrator; if it stays, run the tool by hand");
  }
  if (facts.report.state == ReportState::kMissing) {
    return add("tool-no-report", facts.path + " ended with status 0 and wrote no report",
               "run the tool by hand: POWERCFG /SRUMUTIL /OUTPUT Powerlog.xml /XML");
  }
  const std::size_t before = findings.size();
  JudgeReport("energy-tool", facts.report, Severity::kProblem, findings);
  if (findings.size() > before) return;
  findings.push_back(Fine("energy-tool",
                          facts.path + " wrote " + std::to_string(facts.report.rowsOfPeriod) +
                              " rows of the last 30 days, " +
                              std::to_string(facts.report.namedRows) + " with a name",
                          "the ranking can be made"));
}

void JudgeLeftReport(const ReportFacts& facts, Findings& findings) {
  if (facts.state == ReportState::kMissing) {
    findings.push_back(Fine("report", "no Powerlog.xml in the data folder",
                            "normal: a pass deletes the report after use"));
    return;
  }
  const std::size_t before = findings.size();
  JudgeReport("report", facts, Severity::kProblem, findings);
  if (findings.size() > before) return;
  findings.push_back({Severity::kNote, "report", "report-left",
                      "a report with " + std::to_string(facts.rowsOfPeriod) + " rows",
                      "a pass is running, or ended before it had read the report",
                      "none; the next pass writes a new one"});
}

void JudgeStoreRows(const StoreFacts& facts, Findings& findings) {
  const std::string rows = std::to_string(facts.rows) + " rows";
  if (facts.rows == 0) {
    findings.push_back({Severity::kProblem, "store", "store-empty", "no rows of the last 30 days",
                        "command 2 has an empty list", "see the energy tool"});
  } else if (facts.namedRows == 0) {
    findings.push_back({Severity::kProblem, "store", "store-unnamed",
                        rows + ", none with a display name", "command 2 has an empty list",
                        "see the energy tool"});
  } else {
    findings.push_back(Fine("store", rows + ", " + std::to_string(facts.namedRows) + " with a name",
                            "command 2 has a list"));
  }
  if (!facts.unnamedPrograms.empty()) {
    findings.push_back({Severity::kNote, "store", "program-unnamed", Joined(facts.unnamedPrograms),
                        "rows without a display name count in the total and are not listed",
                        "give the program a file description, or see that it is installed"});
  }
  if (!facts.renamedPrograms.empty()) {
    findings.push_back({Severity::kNote, "store", "program-renamed", Joined(facts.renamedPrograms),
                        "the program's name changed within 30 days: it is two entries of the list",
                        "none; the old name leaves the list within 30 days"});
  }
}

void JudgeStore(const StoreFacts& facts, const LedgerFacts& ledger, Findings& findings) {
  JudgePlace("store", "Powerlog.json", facts.place, /*mustBeFolder=*/false, findings);
  if (facts.place.state == PlaceState::kMissing) {
    findings.push_back({Severity::kNote, "store", "store-missing", "no Powerlog.json",
                        "command 2 has no result before the first report of the energy tool",
                        "see the energy tool"});
  }
  if (facts.place.state != PlaceState::kPlain) return;
  if (!facts.isRead) {
    findings.push_back({Severity::kProblem, "store", "store-unreadable",
                        "Powerlog.json is not a JSON list",
                        "command 2 has no result, and the next pass starts a new store",
                        "none; rows of the last 30 days come back with the next report"});
    return;
  }
  JudgeStoreRows(facts, findings);
  // A pass saves the ledger and then the store, minutes later at most.
  constexpr std::int64_t kLongestPassSeconds = std::int64_t{6} * 3600;
  const bool isOld = facts.place.changedInstant != -1 &&
                     facts.place.changedInstant + kLongestPassSeconds < ledger.place.changedInstant;
  if (isOld) {
    findings.push_back({Severity::kProblem, "store", "ranking-old",
                        "the store is older than the ledger's last pass",
                        "the last pass booked energy, but its report failed: command 2 shows an "
                        "older list",
                        "see the energy tool"});
  }
}

// Ledger and days

void JudgeLedger(const LedgerFacts& facts, Findings& findings) {
  JudgePlace("ledger", "PowerConsumption.json", facts.place, /*mustBeFolder=*/false, findings);
  if (facts.state == LedgerState::kRead) {
    findings.push_back(Fine("ledger", std::to_string(facts.days) + " days with energy",
                            "commands 1, 3, 5 and 6 have figures after the first pass"));
  } else if (facts.state == LedgerState::kUnreadable) {
    findings.push_back({Severity::kProblem, "ledger", "ledger-unreadable",
                        "PowerConsumption.json is not a JSON list",
                        "a running service writes its ledger again at its next pass; the first "
                        "pass of a new start makes a new one: days whose samples are gone are lost",
                        "let a running service run, and see that the disk has room; before a new "
                        "start, put back a copy of the file"});
  } else if (facts.state == LedgerState::kAbsent) {
    findings.push_back({Severity::kNote, "ledger", "ledger-missing", "no PowerConsumption.json",
                        "no pass has ended here", "none; a pass runs 90 seconds after the start"});
  }
}

bool IsTooFarApart(const DayFacts& day) {
  return day.file.state == SampleFileState::kRead && day.booked == 0 && day.gaps > 0;
}

Finding JudgeDay(const DayFacts& day) {
  const std::string found = day.file.date + ": " + SampleFileText(day.file);
  const std::string remedy = "wattleaf_host explain " + day.file.date;
  switch (day.file.state) {
    case SampleFileState::kAbsent:
      if (day.bookedWh.value_or(0.0F) != 0.0F) {
        return Fine("samples", found + ", booked " + std::to_string(*day.bookedWh) + " Wh",
                    "normal: the samples of a booked day are deleted");
      }
      return {Severity::kNote,
              "samples",
              "samples-absent",
              found + ", nothing booked",
              "the machine was off, or collection did not run: the day shows 0",
              "see the collector, if the machine was in use"};
    case SampleFileState::kLeftOut:
      return {Severity::kProblem, "samples",
              "samples-not-read", found,
              "the day shows 0",  "remove what is in the place of the file"};
    case SampleFileState::kNotDecrypted:
      return {Severity::kProblem,
              "samples",
              "samples-not-decrypted",
              found,
              "the file is of another machine, damaged or half written: the day shows 0",
              "if it is today's, try again in a minute; else check how it came here"};
    case SampleFileState::kNoList:
      return {Severity::kProblem, "samples",
              "samples-no-list",  found,
              "the day shows 0",  "ask the maker of the collector"};
    case SampleFileState::kRead:
      break;
  }
  const std::string gap = ", largest gap " + std::to_string(day.largestGapSeconds) + " s";
  if (IsTooFarApart(day)) {
    return {Severity::kProblem,
            "samples",
            "samples-too-far-apart",
            found + gap,
            "an interval counts only up to 600 seconds: the day shows 0",
            "ask the maker of the collector for its period"};
  }
  return Fine("samples",
              found + ", " + std::to_string(day.counted) + " counted" + gap + ", now " +
                  std::to_string(day.energyWh) + " Wh, booked " +
                  (day.bookedWh ? std::to_string(*day.bookedWh) + " Wh" : "nothing"),
              LedgerRelationText(day.relation));
}

void JudgeDays(const std::vector<DayFacts>& days, Findings& findings) {
  for (const DayFacts& day : days) findings.push_back(JudgeDay(day));
  const auto isRead = [](const DayFacts& day) { return day.file.state == SampleFileState::kRead; };
  const auto read = std::ranges::count_if(days, isRead);
  if (2 * std::ranges::count_if(days, IsTooFarApart) <= read) return;
  findings.push_back({Severity::kNoEnergy, "samples", "sample-period-too-long",
                      "most days with samples have no interval of 600 seconds or less",
                      "almost nothing is ever booked",
                      "ask the maker of the collector for its period"});
}

void JudgeClock(const MachineFacts& facts, Findings& findings) {
  if (facts.daysAhead <= 0) {
    findings.push_back(Fine("clock", facts.now, "no file is of a later day"));
    return;
  }
  findings.push_back(
      {Severity::kNoEnergy, "clock", "clock-back",
       "the newest samples or booked days are " + std::to_string(facts.daysAhead) +
           " days after today, " + facts.now,
       "the clock was set back: until it passes those days, the charts miss them and today is "
       "booked among older days",
       "set the clock"});
}

}  // namespace

std::vector<Finding> Diagnose(const MachineFacts& facts) {
  Findings findings;
  JudgeClock(facts, findings);
  findings.push_back(JudgeFirmware(facts.platform));
  findings.push_back(JudgeOemMarker(facts.platform));
  JudgeFolder(facts.folder, findings);
  JudgeCollector(facts.collector, findings);
  JudgeLedger(facts.ledger, findings);
  JudgeDays(facts.days, findings);
  JudgeTool(facts.tool, findings);
  JudgeLeftReport(facts.leftReport, findings);
  JudgeStore(facts.store, facts.ledger, findings);
  return findings;
}

bool CanMeasure(const std::vector<Finding>& findings) {
  return std::ranges::none_of(
      findings, [](const Finding& finding) { return finding.severity == Severity::kNoEnergy; });
}

}  // namespace WattleafHost
