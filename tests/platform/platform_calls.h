#pragma once

#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>

#include <string>
#include <vector>

#include "automation_ledger.h"
#include "import_patch.h"
#include "registered_firmware.h"
#include "support/call_record.h"
#include "support/log_capture.h"

namespace TestSupport {

constexpr HRESULT Result(unsigned long code) { return static_cast<HRESULT>(code); }

/// COM's process-wide calls, counted, recorded with all their arguments and, apart from those that
/// make and secure objects, faked in the test program's import table. The thread belongs to the
/// apartment already, so joining and leaving need not be real. One at a time.
class FakeCom {
 public:
  explicit FakeCom(CallRecord& record);
  FakeCom(const FakeCom&) = delete;
  FakeCom& operator=(const FakeCom&) = delete;
  ~FakeCom();

  HRESULT initializeResult = S_OK;
  HRESULT securityResult = S_OK;
  int initialized = 0;
  int uninitialized = 0;
  /// Objects of WMI at each leaving: a proxy must not be released after it.
  std::vector<int> liveWhenLeft;

 private:
  static HRESULT WINAPI Initialize(void* reserved, DWORD model);
  static void WINAPI Uninitialize();
  static HRESULT WINAPI InitializeSecurity(PSECURITY_DESCRIPTOR descriptor, LONG services,
                                           SOLE_AUTHENTICATION_SERVICE* list, void* reserved1,
                                           DWORD level, DWORD impersonation, void* authList,
                                           DWORD capabilities, void* reserved3);
  static HRESULT WINAPI CreateInstance(REFCLSID classId, IUnknown* outer, DWORD context, REFIID iid,
                                       void** object);
  static HRESULT WINAPI SetBlanket(IUnknown* proxy, DWORD authentication, DWORD authorisation,
                                   OLECHAR* principal, DWORD level, DWORD impersonation,
                                   RPC_AUTH_IDENTITY_HANDLE identity, DWORD capabilities);

  CallRecord& record_;
  Standin::ImportPatch initialize_;
  Standin::ImportPatch uninitialize_;
  Standin::ImportPatch security_;
  Standin::ImportPatch create_;
  Standin::ImportPatch blanket_;
};

/// What FakeCom and the stand-in record of a connection to `wmiNamespace` that is made, from
/// joining the apartment on.
std::vector<std::string> ConnectionCalls(const std::string& wmiNamespace);

/// Checks that after `line`, which was recorded, objects were released and nothing else happened.
void ExpectOnlyReleasesAfter(const std::string& line, const CallRecord& record);

/// A supported notebook, the log, the watch over texts and arrays, and the check that no object of
/// WMI outlives a test. Calls of WMI and of COM, ends of objects and log lines stand in one record.
class WmiTest : public testing::Test {
 protected:
  WmiTest();
  ~WmiTest() override;

  /// Begins again with these words of the stand-in.
  void Simulate(const std::string& words) { ASSERT_TRUE(firmware.script().Reset(words).empty()); }
  void TearDown() override {
    EXPECT_EQ(Standin::Firmware::LiveObjects(), 0);
    EXPECT_EQ(ledger.Outstanding(), 0U);
  }

  AutomationLedger ledger;
  CallRecord record;
  Standin::Firmware::RegisteredFirmware firmware;
  LogCapture log{record};
};

}  // namespace TestSupport
