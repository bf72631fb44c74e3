#pragma once

#include <windows.h>

#include <wincrypt.h>
#include <wintrust.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "import_patch.h"
#include "support/call_record.h"

namespace TestSupport {

/// One signature as the fake system finds it.
struct FakeSignature {
  LONG verdict = 0;
  std::vector<std::uint8_t> key = {0x30, 0x0a};
  /// As CertStrToNameW takes it: "CN=A, O=B".
  std::wstring subject = L"CN=Signer";
  std::wstring issuer = L"CN=Authority";
  /// Where not empty, the subject in its encoded form instead.
  std::vector<std::uint8_t> encodedSubject;
};

/// One call of WinVerifyTrust, with copies of what it was given.
struct TrustCall {
  bool hasWindow = false;
  GUID action = {};
  DWORD dataSize = 0;
  DWORD ui = 0;
  DWORD revocation = 0;
  DWORD choice = 0;
  DWORD stateAction = 0;
  bool hasState = false;
  DWORD settingsSize = 0;
  DWORD index = 0;
  DWORD flags = 0;
  bool hasPolicy = false;
  /// Of the file choice.
  DWORD fileInfoSize = 0;
  std::wstring path;
  bool hasFileHandle = false;
  bool hasKnownSubject = false;
  /// Of the catalog choice.
  DWORD catalogInfoSize = 0;
  DWORD catalogVersion = 0;
  std::wstring catalogPath;
  std::wstring memberTag;
  std::wstring memberPath;
  bool hasMemberHandle = false;
  HANDLE catalogAdmin = nullptr;
};

/// Fakes WinVerifyTrust and the calls that read its state, for as long as it lives. One at a time.
///
/// Each verification opens a state of its own, whatever its verdict. The test fails for a
/// verification that would lose the state before or whose catalog context is not open, for a state
/// that is read or closed when it is not open, and for one that is still open at the end. A close
/// writes over the signature settings and over what the state had handed out.
class FakeTrust {
 public:
  FakeTrust();
  FakeTrust(const FakeTrust&) = delete;
  FakeTrust& operator=(const FakeTrust&) = delete;
  ~FakeTrust();

  /// What a file carries itself, and what catalogs say of it. Without any: no signature.
  std::vector<FakeSignature> embedded;
  std::vector<FakeSignature> byCatalog;
  /// The verdict where there is no signature.
  LONG verdictOfNone = TRUST_E_NOSIGNATURE;
  /// What the verify calls leave in cSecondarySigs, one after the other; afterwards nothing is
  /// written. Without a value: the number of signatures less one.
  std::optional<std::vector<DWORD>> secondaryCounts;

  /// Failures.
  bool leaveStateNull = false;
  bool hideProvider = false;
  bool hideSigner = false;
  bool hideCertificate = false;
  bool hideCertificateContext = false;

  /// Takes each call too, in one order with what else adds to it: "verify embedded 0", "verify
  /// catalog 0", "provider", "signer", "certificate", "subject", "issuer", "close".
  CallRecord* record = nullptr;
  /// What was seen. `openStates` must be 0 in the end.
  std::vector<TrustCall> calls;
  int openStates = 0;

  std::vector<TrustCall> VerifyCalls() const { return CallsOf(WTD_STATEACTION_VERIFY); }
  std::vector<TrustCall> CloseCalls() const { return CallsOf(WTD_STATEACTION_CLOSE); }

 private:
  struct Patches;

  std::vector<TrustCall> CallsOf(DWORD stateAction) const;
  std::unique_ptr<Patches> patches_;
};

/// The text of a key of `bytes` as the system writes it; for lists of keys.
std::string KeyTextOf(const std::vector<std::uint8_t>& bytes);

/// The DER form of a name such as "CN=A, O=B".
std::vector<std::uint8_t> EncodeName(const std::wstring& name);

}  // namespace TestSupport
