#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "collection/fake_collector.h"
#include "import_patch.h"

namespace TestSupport {

/// Takes the place of the collector library in the program's loader calls, with a FakeCollector
/// inside. The checks before the load are the real ones, apart from two calls that not every system
/// has. One at a time.
class FakeCollectorLibrary {
 public:
  FakeCollectorLibrary();
  FakeCollectorLibrary(const FakeCollectorLibrary&) = delete;
  FakeCollectorLibrary& operator=(const FakeCollectorLibrary&) = delete;
  ~FakeCollectorLibrary();

  /// What the loader gives for the library.
  static HMODULE Module();

  CollectorScript script;
  bool loads = true;
  bool exports = true;
  bool makesNull = false;
  /// The names that were loaded, and how often the library was freed.
  std::vector<std::wstring> loaded;
  int freed = 0;

 private:
  static HMODULE WINAPI Load(const wchar_t* name);
  static FARPROC WINAPI Find(HMODULE module, const char* name);
  static BOOL WINAPI Free(HMODULE module);
  static Zq::Gantry::Server::Services::Wattleaf::DataCollector* Create();

  Standin::ImportPatch load_;
  Standin::ImportPatch find_;
  Standin::ImportPatch free_;
  Standin::ImportPatch clientCall_;
  Standin::ImportPatch catalogs_;
};

/// The folder of the test program, which has the collector's samples below it.
std::wstring ProgramFolder();

/// A folder below Program Files that holds the collector's file: a copy of "signed.dll" or
/// "unsigned.dll". Removed at the end.
class ProtectedFolder {
 public:
  explicit ProtectedFolder(const wchar_t* sample);
  ProtectedFolder(const ProtectedFolder&) = delete;
  ProtectedFolder& operator=(const ProtectedFolder&) = delete;
  ~ProtectedFolder();

  const std::wstring& Path() const { return path_; }

 private:
  std::wstring File() const { return path_ + L"\\TelemetryZQXWrapper.dll"; }

  std::wstring path_ =
      L"C:\\Program Files\\wattleaf-test-" + std::to_wstring(GetCurrentProcessId());
};

}  // namespace TestSupport
