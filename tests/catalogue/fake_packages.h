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

/// A package manager of the test's own in the place of the system's, with packages in a folder, and
/// the joining and leaving of the apartment. One at a time.
class FakePackages {
 public:
  FakePackages();
  FakePackages(const FakePackages&) = delete;
  FakePackages& operator=(const FakePackages&) = delete;
  ~FakePackages();

  /// A package folder, told by lines as the stand-in reads them.
  void Add(const std::wstring& folder, const std::string& lines);
  std::wstring Folder(const std::wstring& folder) const { return root.File(folder); }

  TempFolder root;
  Standin::Packages::Script script;
  HRESULT initializeResult = S_OK;
  /// What was called, in order: "join 0" (with its model), "make CLASS", "leave" (with the number
  /// of the manager's objects that were still there).
  std::vector<std::string> calls;

 private:
  static HRESULT WINAPI Activate(HSTRING className, IInspectable** object);
  static HRESULT WINAPI Join(void* reserved, DWORD model);
  static void WINAPI Leave();

  Standin::ImportPatch activate_;
  Standin::ImportPatch join_;
  Standin::ImportPatch leave_;
};

/// Checks that no object and no text of the package manager outlives a test.
class PackagesTest : public testing::Test {
 protected:
  void TearDown() override;

  const RuntimeTextLedger texts;
  FakePackages packages;
};

}  // namespace TestSupport
