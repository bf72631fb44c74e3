#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "collection/fake_collector.h"
#include "import_patch.h"

namespace TestSupport {

/// Replaces the collector library in the program's loader calls by one that creates a
/// FakeCollector. The trust checks before the load are real, except for two calls that not every
/// system has. One at a time.
class FakeCollectorLibrary {
 public:
  FakeCollectorLibrary();
  FakeCollectorLibrary(const FakeCollectorLibrary&) = delete;
  FakeCollectorLibrary& operator=(const FakeCollectorLibrary&) = delete;
  ~FakeCollectorLibrary();

  /// The handle that the loader returns for the library.
  [[nodiscard]] static HMODULE Module();

  CollectorScript script;
  bool loads = true;    ///< LoadLibraryW succeeds
  bool exports = true;  ///< the library has its export
  bool createsNull = false;
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

/// The folder of the test program; the signed and unsigned sample files are below it.
[[nodiscard]] std::wstring ProgramFolder();

/// A folder under Program Files with the collector's file: a copy of "signed.dll" or
/// "unsigned.dll". The destructor removes it.
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
