#pragma once

#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>

#include <optional>
#include <string>
#include <vector>

#include "import_patch.h"
#include "registered_firmware.h"
#include "support/log_capture.h"

namespace TestSupport {

constexpr HRESULT Result(unsigned long code) { return static_cast<HRESULT>(code); }

/// COM's process-wide calls, counted and played in the test program's import table. The thread
/// belongs to the apartment already, so joining and leaving need not be real. One at a time.
class PlayedCom {
 public:
  PlayedCom();
  PlayedCom(const PlayedCom&) = delete;
  PlayedCom& operator=(const PlayedCom&) = delete;
  ~PlayedCom();

  HRESULT initializeResult = S_OK;
  HRESULT securityResult = S_OK;
  int initialized = 0;
  int uninitialized = 0;
  /// Objects of WMI at each leaving: a proxy must not be released behind it.
  std::vector<int> liveWhenLeft;
  std::vector<DWORD> models;
  /// "descriptor services list reserved level impersonation list capabilities reserved".
  std::vector<std::string> securityCalls;

 private:
  static HRESULT WINAPI Initialize(void* reserved, DWORD model);
  static void WINAPI Uninitialize();
  static HRESULT WINAPI InitializeSecurity(PSECURITY_DESCRIPTOR descriptor, LONG services,
                                           SOLE_AUTHENTICATION_SERVICE* list, void* reserved1,
                                           DWORD level, DWORD impersonation, void* authList,
                                           DWORD capabilities, void* reserved3);

  Standin::ImportPatch initialize_;
  Standin::ImportPatch uninitialize_;
  Standin::ImportPatch security_;
};

/// A supported notebook, the log, and the check that no object of WMI outlives a test.
class WmiTest : public testing::Test {
 protected:
  /// Begins again with these words of the stand-in.
  void Play(const std::string& words) { ASSERT_TRUE(firmware.script().Reset(words).empty()); }
  void TearDown() override { EXPECT_EQ(Standin::Firmware::LiveObjects(), 0); }

  Standin::Firmware::RegisteredFirmware firmware;
  LogCapture log;
};

}  // namespace TestSupport
