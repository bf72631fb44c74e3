#pragma once

#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>
#include <roapi.h>

#include <string>
#include <vector>

#include "import_patch.h"
#include "package_script.h"
#include "support/runtime_text_ledger.h"
#include "support/temp_folder.h"

namespace TestSupport {

/// Replaces the system's package manager by a simulated one whose packages are folders, and records
/// how the apartment is joined and left. One at a time.
class FakePackages {
 public:
  FakePackages();
  FakePackages(const FakePackages&) = delete;
  FakePackages& operator=(const FakePackages&) = delete;
  ~FakePackages();

  /// Adds a package folder; `lines` are in the stand-in's format of package.txt.
  void Add(const std::wstring& folder, const std::string& lines);
  [[nodiscard]] std::wstring Folder(const std::wstring& folder) const { return root.File(folder); }

  TempFolder root;
  Standin::Packages::Script script;
  HRESULT initializeResult = S_OK;
  /// The calls in order: "join 0" with the apartment model, "make CLASS", and "leave 0" with the
  /// number of the manager's objects that still exist.
  std::vector<std::string> calls;

 private:
  static HRESULT WINAPI Activate(HSTRING className, IInspectable** object);
  static HRESULT WINAPI Join(void* reserved, DWORD model);
  static void WINAPI Leave();

  Standin::ImportPatch activate_;
  Standin::ImportPatch join_;
  Standin::ImportPatch leave_;
};

/// Fails a test that leaks an object or a text of the package manager.
class PackagesTest : public testing::Test {
 protected:
  void TearDown() override;

  const RuntimeTextLedger texts;
  FakePackages packages;
};

}  // namespace TestSupport
