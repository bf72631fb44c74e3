#pragma once

#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>

#include <functional>
#include <string>
#include <vector>

#include "import_patch.h"
#include "platform/automation_ledger.h"
#include "registered_firmware.h"
#include "support/call_record.h"
#include "support/log_capture.h"

namespace TestSupport {

[[nodiscard]] constexpr HRESULT Result(unsigned long code) { return static_cast<HRESULT>(code); }

/// Counts COM's process-wide calls and records them with all their arguments. CoCreateInstance and
/// CoSetProxyBlanket do their work; the others are faked, since the thread is in the apartment
/// already. One at a time.
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
  /// The number of live WMI objects at each CoUninitialize: no proxy may be released after it.
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

/// The lines that FakeCom and the stand-in record for a connection to `wmiNamespace`, beginning
/// with CoInitializeEx.
[[nodiscard]] std::vector<std::string> ConnectionCalls(const std::string& wmiNamespace);

/// Checks that `line` is in the record and that only releases of objects follow it.
void ExpectOnlyReleasesAfter(const std::string& line, const CallRecord& record);

/// A supported notebook, the log and an AutomationLedger. Checks that no WMI object outlives a
/// test. WMI calls, COM calls, ends of objects and log lines are in one record.
class WmiTest : public testing::Test {
 protected:
  WmiTest();
  ~WmiTest() override;

  /// Resets the stand-in's script to these words.
  void Simulate(const std::string& words) { ASSERT_TRUE(firmware.script().Reset(words).empty()); }
  void TearDown() override {
    EXPECT_EQ(Standin::Firmware::LiveObjects(), 0);
    EXPECT_EQ(ledger.Outstanding(), 0U);
  }

  /// The HRESULT of the _com_error that `call` throws if `text` cannot be allocated; S_OK if it
  /// throws none. Checks that nothing leaks.
  [[nodiscard]] HRESULT ThrownWithout(const wchar_t* text, const std::function<void()>& call);

  AutomationLedger ledger;
  CallRecord record;
  Standin::Firmware::RegisteredFirmware firmware;
  LogCapture log{record};
};

}  // namespace TestSupport
