#include "scenarios.h"

#include <cxxabi.h>
#include <stdlib.h>

#include <filesystem>
#include <stdexcept>
#include <string_view>

#include "platform/win32/owners.h"
#include "scenario_paths.h"
#include "security/access/rpc_security_helper.h"
#include "security/facade/zq_authenticode_facade.h"
#include "security/trust/util_helper.h"
#include "simulated_system.h"

namespace Faults {

namespace {

using Zq::Gantry::Platform::UniqueHeapBlock;
using Zq::Gantry::Security::RpcSecurityHelper;
using Zq::Gantry::Security::ZQAuthenticodeFacadeBase;

std::string Text(bool value) { return value ? "true" : "false"; }

std::string Narrow(const std::wstring& text) {
  std::string narrow;
  for (const wchar_t c : text) narrow += c < 0x7F ? static_cast<char>(c) : '?';
  return narrow;
}

/// The name of the exception that is being handled.
std::string NameOfException() {
  int status = 0;
  const UniqueHeapBlock name(
      abi::__cxa_demangle(abi::__cxa_current_exception_type()->name(), nullptr, nullptr, &status));
  return name ? static_cast<const char*>(name.get()) : "?";
}

void SetVariable(const wchar_t* name, const std::wstring& value) {
  _wputenv_s(name, value.c_str());
}

// The steps of the worker, in its order.

void StartCollection(LoadedLibrary& library, Results& results) {
  results.Add("StartCollection", [&] { return Text(library.CallHelper<bool>("StartCollection")); });
}

void LoadCatalogues(LoadedLibrary& library, Results& results) {
  results.AddVoid("LoadInstalledWin32Apps",
                  [&] { library.CallHelper<void>("LoadInstalledWin32Apps"); });
  results.AddVoid("LoadInstalledUWPApps",
                  [&] { library.CallHelper<void>("LoadInstalledUWPApps"); });
}

void UpdateLedger(LoadedLibrary& library, Results& results) {
  results.AddVoid("CalculateDailyPowerConsumption",
                  [&] { library.CallHelper<void>("CalculateDailyPowerConsumption"); });
}

void UpdateReport(LoadedLibrary& library, Results& results) {
  results.AddVoid("OnGetTop20PowerApps", [&] { library.CallHelper<void>("OnGetTop20PowerApps"); });
}

void LoadCatalogues(LoadedLibrary& library) {
  Results ignored;
  LoadCatalogues(library, ignored);
}

// Commands.

std::wstring RankingInput() { return std::wstring(kIconFolder) + L"?30"; }

void RunCommand(LoadedLibrary& library, Results& results, unsigned int command) {
  results.Add("command " + std::to_string(command), [&] {
    return library.RunCommand(command, command == 2 ? RankingInput() : std::wstring());
  });
}

void AllCommands(LoadedLibrary& library, Results& results) {
  for (unsigned int command = 1; command <= 10; ++command) RunCommand(library, results, command);
}

void Ranking(LoadedLibrary& library, Results& results) { RunCommand(library, results, 2); }

void Support(LoadedLibrary& library, Results& results) { RunCommand(library, results, 7); }

void LoadCataloguesAndLedger(LoadedLibrary& library) {
  Results ignored;
  LoadCatalogues(library);
  UpdateLedger(library, ignored);
}

void Nothing(LoadedLibrary&) {}

/// Throws if fewer than five days have energy: lost samples would not be seen.
void ExpectEnergy(const std::string& ledger) {
  constexpr std::string_view kValue = "\"Value\":";
  int days = 0;
  for (auto at = ledger.find(kValue); at != ledger.npos; at = ledger.find(kValue, at + 1)) {
    if (std::stod(ledger.substr(at + kValue.size())) > 0) ++days;
  }
  if (days < 5) throw std::runtime_error("only " + std::to_string(days) + " days have energy");
}

// Trust.

/// The facade's operations through its exported table.
class Facade {
 public:
  explicit Facade(const LoadedLibrary& library)
      : table_(library.Export<void*>("_ZTVN2Zq6Gantry8Security20ZQAuthenticodeFacadeE") + 2) {}

  ZQAuthenticodeFacadeBase* operator->() {
    return reinterpret_cast<ZQAuthenticodeFacadeBase*>(&table_);
  }

 private:
  void** table_;
};

void AskAboutTrust(LoadedLibrary& library, Results& results) {
  Facade facade(library);
  const std::wstring collector = CollectorPath();
  const wchar_t* file = collector.c_str();
  results.Add("IsServiceFileTrusted", [&] { return Text(facade->IsServiceFileTrusted(file)); });
  results.Add("IsExtendedFileTrusted", [&] { return Text(facade->IsExtendedFileTrusted(file)); });
  results.Add("IsDropboxFileTrusted", [&] { return Text(facade->IsDropboxFileTrusted(file)); });
  results.Add("IsWindowsTrustedFileAllowed",
              [&] { return Text(facade->IsWindowsTrustedFileAllowed(file)); });
  results.Add("HaveSameSigningKey", [&] { return Text(facade->HaveSameSigningKey(file, file)); });
  results.Add("IsPathAllowed", [&] { return Text(facade->IsPathAllowed(kPackagedFile)); });
}

/// Wine gives the folder an access list.
void MakePackagedFolder(LoadedLibrary&) { std::filesystem::create_directories(kPackagedFile); }

// The caller.

/// `known` is a handle that the host has to the client's process.
std::string FamilyOfCaller(LoadedLibrary& library, HANDLE known) {
  alignas(RpcSecurityHelper) unsigned char place[sizeof(RpcSecurityHelper)];
  const std::string scope = "_ZN2Zq6Gantry8Security17RpcSecurityHelper";
  library.Export<void(void*)>((scope + "C1Ev").c_str())(place);
  struct Destroy {
    void (*destructor)(void*);
    void* object;
    ~Destroy() { destructor(object); }
  } const destroy{library.Export<void(void*)>((scope + "D1Ev").c_str()), place};
  auto& handles = reinterpret_cast<RpcSecurityHelper*>(place)->ClientProcessHandles;
  if (known != nullptr) handles[kUnreachableClient] = known;
  const auto query = library.Export<std::wstring(const void*)>(
      "_ZNK2Zq6Gantry8Security17RpcSecurityHelper14GetPFNOfCallerB5cxx11Ev");
  return Narrow(query(place));
}

void AskAboutCaller(LoadedLibrary& library, Results& results) {
  results.Add("GetPFNOfCaller", [&] { return FamilyOfCaller(library, nullptr); });
  ServeUnreachableClient(true);
  results.Add("GetPFNOfCaller of a known client",
              [&] { return FamilyOfCaller(library, GetCurrentProcess()); });
  ServeUnreachableClient(false);
  const auto expand = library.Export<std::wstring(const wchar_t*, const wchar_t*)>(
      "_ZN2Zq6Gantry6Server8Services10UtilHelper19GetFullExpandedPathB5cxx11EPKwS5_");
  results.Add("GetFullExpandedPath",
              [&] { return Narrow(expand(L"%windir%\\system32\\..\\notepad.exe", L"matrix")); });
  Facade facade(library);
  const std::wstring arguments = L"/s \"" + CollectorPath() + L"\"";
  results.Add("IsToolLaunchAllowed", [&] {
    return Text(facade->IsToolLaunchAllowed(L"%windir%\\System32\\regsvr32.exe", true,
                                            arguments.c_str(), L"matrix"));
  });
}

}  // namespace

std::string Results::Outcome(const std::function<std::string()>& operation) {
  try {
    return operation();
  } catch (...) {
    return " throws " + NameOfException();
  }
}

const std::vector<Scenario>& AllScenarios() {
  using Folder = Scenario::Folder;
  static const std::vector<Scenario> scenarios = {
      {"start", Folder::kMissing, WorkingCatalogs(), &Nothing, &StartCollection, &Support},
      {"catalogues", Folder::kBooked, {}, &Nothing, &LoadCatalogues, &Ranking},
      {"ledger", Folder::kSamples, {}, &Nothing, &UpdateLedger, &UpdateLedger},
      {"report", Folder::kSamples, {}, &LoadCatalogues, &UpdateReport, &UpdateReport},
      {"commands", Folder::kBooked, {}, &LoadCataloguesAndLedger, &AllCommands, &AllCommands},
      {"trust", Folder::kMissing, WorkingCatalogs(), &MakePackagedFolder, &AskAboutTrust,
       &AskAboutTrust},
      {"caller", Folder::kMissing, ClientCall(), &Nothing, &AskAboutCaller, &AskAboutCaller},
  };
  return scenarios;
}

PreparedFolders PrepareFolders() {
  PreparedFolders folders;
  RemoveFolder(kDataFolder);
  constexpr long long kDay = 86400;
  // A pass of three days ago, whose samples are then gone.
  const auto collect = [](long long now) {
    SetVariable(L"WATTLEAF_COLLECTOR_NOW", std::to_wstring(now));
    LoadedLibrary library({});
    if (!library.CallHelper<bool>("StartCollection")) {
      throw std::runtime_error("the collector does not start");
    }
  };
  const auto pass = [] {
    LoadedLibrary library({});
    LoadCatalogues(library);
    Results results;
    UpdateLedger(library, results);
    UpdateReport(library, results);
    for (const std::string& text : results.Texts()) {
      if (!text.ends_with(" done")) throw std::runtime_error(text);
    }
  };
  collect(kNow - 3 * kDay);
  pass();
  Files kept;
  for (const wchar_t* name : {L"PowerConsumption.json", L"Powerlog.json"}) {
    kept[name] = ReadFolder(kDataFolder).at(name);
  }
  WriteFolder(kDataFolder, kept);
  collect(kNow);
  folders.samples = ReadFolder(kDataFolder);
  // Only the platform's call decodes a text that begins with a blank.
  folders.samples.at(L"PcmSampleData_2026-03-27.json").insert(0, " ");
  // Copies that a process left which was ended in its pass.
  for (const wchar_t* day : {L"2025-01-01", L"2025-01-02"}) {
    folders.samples[std::wstring(L"unencrypt-PcmSampleData_") + day + L".json"] = "[]";
  }
  WriteFolder(kDataFolder, folders.samples);
  pass();
  folders.booked = ReadFolder(kDataFolder);
  ExpectEnergy(folders.booked.at(L"PowerConsumption.json"));
  return folders;
}

}  // namespace Faults
