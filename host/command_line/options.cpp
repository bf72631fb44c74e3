#include "command_line/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <utility>

#include "answers/answer_csv.h"
#include "base/calendar.h"
#include "base/date_text.h"
#include "command_line/places.h"

namespace WattleafHost {

namespace {

constexpr const char* kDescription =
    "Loads WattleafService.dll from this program's folder, as the real host does, and runs its "
    "commands.";

constexpr const char* kFooter =
    "Exit status: 0 done; 1 a command returned a status other than 0, or doctor found that this\n"
    "machine cannot measure; 2 wrong arguments; 3 no pass was completed (serve-once); 4 the "
    "library\n"
    "cannot be loaded or failed; 5 a file cannot be read or written.";

constexpr const char* kServeOnce = "Start collection, wait for one pass, run all ten commands";

constexpr const char* kServeOnceFooter =
    "--csv prints the results of commands 2, 4, 5 and 6.\n"
    "Example: wattleaf_host serve-once --json --days 7";

constexpr const char* kCommand = "Run one command without starting collection";

constexpr const char* kCommandFooter =
    "Collection is not started. Command 4 reads the sample files on disk; 7 probes the platform;\n"
    "1, 3, 5 and 6 read the ledger in memory, which only a pass of serve-once fills. 2 reads the\n"
    "store of application energy, but without a pass it finds no desktop programs and no logos.\n"
    "Example: wattleaf_host command 4 --csv";

constexpr const char* kExplain = "Explain the energy of a day or of an hour; changes nothing";

constexpr const char* kExplainFooter =
    "Shows which intervals between samples are booked and which are not, the sum, and the "
    "ledger's\n"
    "value beside it. An hour is explained as command 4 computes it. Works on a private copy of\n"
    "the data folder. Example: wattleaf_host explain 2026-11-17";

constexpr const char* kDoctor = "Find out whether and why this machine does not measure";

constexpr const char* kDoctorFooter =
    "Goes down the road that a start takes and says for each step what it found, what that means\n"
    "and what to do. Changes nothing: it works on a private copy of the data folder. It loads the\n"
    "collector, if the library would, and asks it for its status only with --start-collector.\n"
    "The firmware is asked as at each start. Ends with 0 if this machine can measure, otherwise\n"
    "with 1. Example: wattleaf_host doctor";

/// Empty for a date of the calendar, "2026-11-22".
std::string CheckDate(const std::string& text) {
  using namespace Zq::Gantry::Server::Services::Wattleaf;
  DateTime day;
  ParseDateTime(day, text.c_str(), kDateFormat);
  return FormatDateTime(day, kDateFormat) == text ? ""
                                                  : "'" + text + "' is no date like 2026-11-22";
}

constexpr const char* kExport = "Print all figures of the data folder as rows, for programs";

constexpr const char* kExportFooter =
    "Reads the data folder without a pass and without changing it.\n"
    "Example: wattleaf_host export --format csv --output C:\\inventory\\energy.csv";

constexpr const char* kMetrics = "Write all figures of the data folder as Prometheus metrics";

constexpr const char* kMetricsFooter =
    "For the text-file collector of an exporter. Reads the data folder without a pass and without\n"
    "changing it.\n"
    "Example: wattleaf_host metrics \"C:\\Program Files\\windows_exporter\\textfile_inputs\\"
    "wattleaf.prom\"";

constexpr const char* kReport = "Write the figures of the data folder as a page for people";

constexpr const char* kReportFooter =
    "One HTML file with charts that needs neither scripts nor a network. Reads the data folder\n"
    "without a pass and without changing it; prints the place of the page.\n"
    "Example: wattleaf_host report C:\\Users\\Public\\energy.html";

/// Command 2 reads everything after the first "?" as the days.
std::string CheckIconFolder(const std::string& folder) {
  return folder.find('?') == std::string::npos ? "" : "the name of a folder cannot contain '?'";
}

/// Makes a subcommand whose options fill a request of its own, which `options` gets if the
/// subcommand is the chosen one.
template <typename Request>
std::pair<CLI::App*, Request&> AddSubcommand(CLI::App& app, Options& options, const char* name,
                                             const char* description) {
  CLI::App* const subcommand = app.add_subcommand(name, description);
  const auto request = std::make_shared<Request>();
  subcommand->callback([&options, request] { options.request = *request; });
  return {subcommand, *request};
}

constexpr const char* kCsv = "Print commands 2, 4, 5 and 6 as comma-separated values";

void AddServeOnce(CLI::App& app, Options& options) {
  auto [serveOnce, request] =
      AddSubcommand<ServeOnceRequest>(app, options, "serve-once", kServeOnce);
  serveOnce->add_flag("--real-time", request.realTime,
                      "Let the worker sleep its 90 seconds instead of skipping them");
  serveOnce
      ->add_option("--limit", request.limitSeconds, "The longest wait for the pass, in seconds")
      ->check(CLI::Range(1U, 86400U))
      ->capture_default_str();
  serveOnce->add_flag("--csv", request.csv, kCsv)->excludes(app.get_option("--json"));
  serveOnce->footer(kServeOnceFooter);
}

void AddCommand(CLI::App& app, Options& options) {
  auto [command, request] = AddSubcommand<CommandRequest>(app, options, "command", kCommand);
  command->add_option("N", request.number, "The command's number, 1 to 10")->required();
  command->add_option("INPUT", request.input, "The command's input; only 2 reads it (FOLDER?DAYS)");
  command->add_flag("--csv", request.csv, kCsv)->excludes(app.get_option("--json"));
  command->footer(kCommandFooter);
}

void AddExplain(CLI::App& app, Options& options) {
  auto [explain, request] = AddSubcommand<ExplainRequest>(app, options, "explain", kExplain);
  explain->add_option("DAY", request.date, "The date, such as 2026-11-17")
      ->required()
      ->check(CheckDate);
  explain->add_option("HOUR", request.hour, "The hour, 0 to 23; without it the whole day")
      ->check(CLI::Range(0, 23));
  explain->add_flag("--each", request.eachInterval, "A line for each interval");
  explain->footer(kExplainFooter);
}

/// The collector reads no other files.
std::string CheckMetricsFile(const std::string& path) {
  return path.ends_with(".prom") ? "" : "the name of the file must end in .prom";
}

void AddExport(CLI::App& app, Options& options) {
  auto [subcommand, request] = AddSubcommand<ExportRequest>(app, options, "export", kExport);
  const std::vector<std::pair<std::string, bool>> formats = {{"ndjson", false}, {"csv", true}};
  subcommand->add_option("--format", request.csv, "ndjson (the default) or csv")
      ->transform(CLI::Transformer(formats))
      ->type_name("FORMAT");
  subcommand
      ->add_option("--output", request.output, "The file to write; without it, standard output")
      ->type_name("FILE");
  subcommand->footer(kExportFooter);
}

void AddMetrics(CLI::App& app, Options& options) {
  auto [subcommand, request] = AddSubcommand<MetricsRequest>(app, options, "metrics", kMetrics);
  subcommand->add_option("FILE", request.output, "The file to write; its name ends in .prom")
      ->required()
      ->check(CheckMetricsFile);
  subcommand->footer(kMetricsFooter);
}

void AddReport(CLI::App& app, Options& options) {
  auto [subcommand, request] = AddSubcommand<ReportRequest>(app, options, "report", kReport);
  subcommand->add_option("FILE", request.output, "The file to write")->required();
  subcommand->footer(kReportFooter);
}

void AddDoctor(CLI::App& app, Options& options) {
  auto [doctor, request] = AddSubcommand<DoctorRequest>(app, options, "doctor", kDoctor);
  doctor->add_flag("--start-collector", request.startCollector,
                   "Start and stop the collector to learn its status; it may write samples");
  doctor->add_flag_callback(
      "--no-tool", [&run = request.runTool] { run = false; }, "Do not run POWERCFG");
  doctor->footer(kDoctorFooter);
}

void AddOptions(CLI::App& app, Options& options) {
  // Set before the subcommands are added, which inherit it: --json may follow them too.
  app.fallthrough();
  app.set_version_flag("--version", "wattleaf_host " WATTLEAF_HOST_VERSION);
  app.add_flag("--json", options.json, "Print one JSON object, for programs");
  app.add_flag_callback(
      "--no-simulated-calls", [&options] { options.simulateCalls = false; },
      "Simulate no system calls: for a real Windows");
  app.add_option("--icons", options.iconFolder,
                 "The folder for the icons of command 2; created if missing")
      ->check(CheckIconFolder)
      ->capture_default_str();
  app.add_option("--days", options.days,
                 "The number of days that the ranking of applications covers")
      ->check(CLI::Range(0U, 36500U))
      ->capture_default_str();

  AddServeOnce(app, options);
  AddCommand(app, options);
  AddExplain(app, options);
  AddExport(app, options);
  AddMetrics(app, options);
  AddReport(app, options);
  AddDoctor(app, options);
  app.require_subcommand(1);
  app.footer(kFooter);
}

/// The other commands have one value.
void CheckCsv(const Options& options) {
  const auto* command = std::get_if<CommandRequest>(&options.request);
  if (command == nullptr || !command->csv || IsTable(command->number)) return;
  throw CLI::ValidationError("--csv", "is only for commands 2, 4, 5 and 6");
}

}  // namespace

std::variant<Options, Finished> ReadOptions(const std::vector<std::string>& arguments) {
  Options options;
  options.iconFolder = DefaultIconFolder();
  CLI::App app(kDescription, "wattleaf_host");
  AddOptions(app, options);
  try {
    // The parser takes the arguments from the back.
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    CheckCsv(options);
    return options;
  } catch (const CLI::Success& request) {
    app.exit(request, std::cout, std::cerr);
    return Finished{kDone};
  } catch (const CLI::ParseError& error) {
    std::cerr << "wattleaf_host: " << error.what() << "\n\n" << app.help();
    return Finished{kWrongArguments};
  }
}

}  // namespace WattleafHost
