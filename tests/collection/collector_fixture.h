#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "collection/fake_collector_library.h"
#include "collection/open_helper.h"
#include "import_patch.h"
#include "support/call_record.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

namespace TestSupport {

/// A helper on a supported platform, with a FakeCollectorLibrary and a data folder that does not
/// exist yet.
class CollectorFixture : public testing::Test {
 protected:
  CollectorFixture();
  ~CollectorFixture() override;

  /// StartCollection with a collector file that passes both checks.
  bool StartTrusted();

  /// The log without the lines of the two checks.
  [[nodiscard]] std::vector<LogRecord> CollectorRecords() const;

  void ExpectUnloaded() const;

  /// Throws `exception` in one call of the collector.
  template <typename Exception>
  void ThrowIn(const std::string& call, Exception exception) {
    library.script.onCall = [call, exception](const std::string& entered) {
      if (entered == call) throw exception;
    };
  }

  TempFolder data;
  std::wstring dataFolder = data.File(L"a\\b");
  CallRecord record;
  LogCapture log{record};
  FakeCollectorLibrary library;
  std::unique_ptr<OpenHelper> helper;

 private:
  static BOOL WINAPI CreateFolder(const wchar_t* path, SECURITY_ATTRIBUTES* security);

  static inline CollectorFixture* current = nullptr;
  Standin::ImportPatch createFolder_{"CreateDirectoryW", &CreateFolder};
};

}  // namespace TestSupport
