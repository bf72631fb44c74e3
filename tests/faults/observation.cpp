#include "observation.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <string_view>

#include "balances.h"
#include "simulated_system.h"
#include "support/open_handles.h"
#include "watchdog.h"

namespace Faults {

namespace {

/// Whether the objects of a stand-in are all released.
bool HasNoObjects(const wchar_t* library) {
  const HMODULE module = GetModuleHandleW(library);
  if (module == nullptr) return true;
  const auto mayUnload = reinterpret_cast<HRESULT(WINAPI*)()>(
      reinterpret_cast<void*>(GetProcAddress(module, "DllCanUnloadNow")));
  return mayUnload != nullptr && mayUnload() == S_OK;
}

void PrepareDataFolder(const Scenario& scenario, const PreparedFolders& folders) {
  RemoveFolder(kIconFolder);
  switch (scenario.folder) {
    case Scenario::Folder::kMissing:
      return RemoveFolder(kDataFolder);
    case Scenario::Folder::kSamples:
      return WriteFolder(kDataFolder, folders.samples);
    case Scenario::Folder::kBooked:
      return WriteFolder(kDataFolder, folders.booked);
  }
}

void RunIn(LoadedLibrary& library, const Scenario& scenario, const Fault* fault,
           Observation& observation) {
  LogLines log;
  CountResources(library.Points());
  scenario.prepare(library);
  static_cast<void>(log.Take());
  FaultPoints& points = library.Points();
  UseTargetsOf(points);
  if (fault != nullptr) points.Fail(fault->call.name, fault->position, fault->call.function);

  Results results;
  points.Begin();
  scenario.run(library, results);
  points.End();
  observation.results = results.Texts();
  observation.log = log.Take();
  observation.files = ReadFolder(kDataFolder);
  observation.icons = ReadFolder(kIconFolder);
  observation.imports = points.Imports();
  for (const Import& import : observation.imports) {
    observation.calls[import.name] = points.Calls(import.name);
  }

  Results next;
  scenario.next(library, next);
  observation.nextResults = next.Texts();
  observation.nextFiles = ReadFolder(kDataFolder);
  observation.nextIcons = ReadFolder(kIconFolder);
}

// Differences.

std::string Quoted(const std::string& text) {
  constexpr std::size_t kMost = 160;
  return "\"" + (text.size() <= kMost ? text : text.substr(0, kMost) + "...") + "\"";
}

void Add(std::string& text, const std::string& part) {
  if (!text.empty()) text += "; ";
  text += part;
}

/// Long texts only say that they differ.
std::string Short(const std::string& result) {
  const auto equals = result.find('=');
  constexpr std::size_t kMost = 60;
  if (result.size() <= kMost || equals == std::string::npos) return result;
  return result.substr(0, equals) + "=other text";
}

void CompareResults(const std::vector<std::string>& before, const std::vector<std::string>& after,
                    const std::string& when, std::string& text) {
  for (std::size_t i = 0; i < after.size(); ++i) {
    if (i >= before.size() || before[i] != after[i]) Add(text, when + Short(after[i]));
  }
}

void CompareLogs(std::vector<std::string> before, std::vector<std::string> after,
                 std::string& text) {
  std::sort(before.begin(), before.end());
  std::sort(after.begin(), after.end());
  std::vector<std::string> lines;
  std::set_difference(after.begin(), after.end(), before.begin(), before.end(),
                      std::back_inserter(lines));
  // A line that is repeated counts once.
  lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
  for (const std::string& line : lines) {
    if (!line.starts_with("info ")) Add(text, "logs " + Quoted(line));
  }
}

std::string Narrow(const std::wstring& text) {
  std::string narrow;
  for (const wchar_t c : text) narrow += c < 0x7F ? static_cast<char>(c) : '?';
  return narrow;
}

constexpr std::wstring_view kSamplePrefix = L"PcmSampleData_";

/// Adds "<how> <name>, <name>"; of a sample file the date stands for the name.
void AddNames(std::string& text, const std::string& how, const std::vector<std::wstring>& names) {
  if (names.empty()) return;
  constexpr std::size_t kMost = 5;
  if (names.size() > kMost) return Add(text, how + " " + std::to_string(names.size()) + " files");
  std::string list;
  for (const std::wstring& name : names) {
    const bool isSample = name.starts_with(kSamplePrefix);
    const std::wstring part = isSample ? name.substr(kSamplePrefix.size(), 10) : name;
    list += (list.empty() ? " " : ", ") + Narrow(part);
  }
  Add(text, how + list);
}

std::string FileDifferences(const Files& before, const Files& after) {
  std::vector<std::wstring> missing;
  std::vector<std::wstring> changed;
  std::vector<std::wstring> added;
  for (const auto& [name, content] : before) {
    const auto other = after.find(name);
    if (other == after.end()) {
      missing.push_back(name);
      // Each encryption of the same samples gives other bytes.
    } else if (other->second != content && !name.starts_with(kSamplePrefix)) {
      changed.push_back(name);
    }
  }
  for (const auto& [name, content] : after) {
    if (before.count(name) == 0) added.push_back(name);
  }
  std::string text;
  AddNames(text, "without", missing);
  AddNames(text, "with another", changed);
  AddNames(text, "also with", added);
  return text;
}

void CompareFiles(const Observation& undisturbed, const Observation& observed, std::string& text) {
  const std::string first = FileDifferences(undisturbed.files, observed.files);
  const std::string icons = FileDifferences(undisturbed.icons, observed.icons);
  const std::string next = FileDifferences(undisturbed.nextFiles, observed.nextFiles);
  const std::string nextIcons = FileDifferences(undisturbed.nextIcons, observed.nextIcons);
  if (!first.empty()) Add(text, first);
  if (!icons.empty()) Add(text, "icons " + icons);
  if (!next.empty()) Add(text, "then " + (next == first ? "the same files" : next));
  if (!nextIcons.empty()) Add(text, "then icons " + nextIcons);
}

void CompareLeft(const std::map<std::string, long>& before,
                 const std::map<std::string, long>& after, std::string& text) {
  for (const auto& [name, count] : after) {
    const auto own = before.find(name);
    const long more = count - (own != before.end() ? own->second : 0);
    if (more != 0) Add(text, "LEFT " + name + " " + std::to_string(more));
  }
}

}  // namespace

Observation Observe(const Scenario& scenario, const PreparedFolders& folders, const Fault* fault) {
  const WatchedRun watched(scenario.name, fault != nullptr ? fault->call.name : "none",
                           fault != nullptr ? fault->position : 0);
  PrepareDataFolder(scenario, folders);
  ForgetHeldBySimulatedSystem();
  Observation observation;
  const long handles = TestSupport::CountOpenHandles();
  {
    LoadedLibrary library(scenario.replacements);
    RunIn(library, scenario, fault, observation);
  }
  auto& left = observation.left;
  left = UnreleasedResources();
  // Wine 8 keeps a handle for each object that RoActivateInstance makes, also in a program that
  // does nothing else.
  const long activations = left.extract(kActivations).mapped();
  left["handles"] = TestSupport::CountOpenHandles() - handles - activations;
  left["held by the simulated system"] = HeldBySimulatedSystem();
  left["objects of the firmware"] = HasNoObjects(L"firmware_standin.dll") ? 0 : 1;
  left["objects of the package manager"] = HasNoObjects(L"packages_standin.dll") ? 0 : 1;
  left["the library"] = GetModuleHandleW(kTestedLibrary) != nullptr ? 1 : 0;
  left["the collector"] = GetModuleHandleW(L"TelemetryZQXWrapper.dll") != nullptr ? 1 : 0;
  return observation;
}

std::string Differences(const Observation& undisturbed, const Observation& observed) {
  std::string text;
  CompareResults(undisturbed.results, observed.results, "", text);
  CompareLogs(undisturbed.log, observed.log, text);
  CompareFiles(undisturbed, observed, text);
  CompareResults(undisturbed.nextResults, observed.nextResults, "then ", text);
  CompareLeft(undisturbed.left, observed.left, text);
  return text;
}

}  // namespace Faults
