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

/// One signature that the fake system finds.
struct FakeSignature {
  LONG verdict = 0;
  std::vector<std::uint8_t> key = {0x30, 0x0a};
  /// As CertStrToNameW takes it: "CN=A, O=B".
  std::wstring subject = L"CN=Signer";
  std::wstring issuer = L"CN=Authority";
  /// If not empty, the encoded subject, which replaces `subject`.
  std::vector<std::uint8_t> encodedSubject;
};

/// The failing verdicts that keep a signature on the list, as WinVerifyTrust returns them.
inline constexpr LONG kExpiredVerdict = static_cast<LONG>(0x800B0101);
inline constexpr LONG kUntrustedRootVerdict = static_cast<LONG>(0x800B0109);
/// TRUST_E_BAD_DIGEST.
inline constexpr LONG kBadDigestVerdict = static_cast<LONG>(0x80096010);

/// A signature with the key bytes 0x30 and `lastKeyByte`.
[[nodiscard]] FakeSignature Signature(LONG verdict, std::uint8_t lastKeyByte);

/// One call of WinVerifyTrust, with copies of its arguments.
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
  /// For WTD_CHOICE_FILE.
  DWORD fileInfoSize = 0;
  std::wstring path;
  bool hasFileHandle = false;
  bool hasKnownSubject = false;
  /// For WTD_CHOICE_CATALOG.
  DWORD catalogInfoSize = 0;
  DWORD catalogVersion = 0;
  std::wstring catalogPath;
  std::wstring memberTag;
  std::wstring memberPath;
  bool hasMemberHandle = false;
  HANDLE catalogAdmin = nullptr;
};

/// Fakes WinVerifyTrust and the calls that read its state while this object exists. One at a time.
///
/// Each verification opens a state of its own, with any verdict. The test fails for a verification
/// that would overwrite an open state or whose catalog context is not open, for a state that is
/// read or closed when it is not open, and for one that is still open at the end. A close
/// overwrites the signature settings and the data that the state handed out.
class FakeTrust {
 public:
  FakeTrust();
  FakeTrust(const FakeTrust&) = delete;
  FakeTrust& operator=(const FakeTrust&) = delete;
  ~FakeTrust();

  /// The signatures in the file, and those of catalogs that list it. By default there are none.
  std::vector<FakeSignature> embedded;
  std::vector<FakeSignature> byCatalog;
  /// The counts that successive verify calls write to cSecondarySigs; later calls write nothing.
  /// Without a value, each call writes the number of signatures less one.
  std::optional<std::vector<DWORD>> secondaryCounts;

  /// Failures.
  bool leaveStateNull = false;
  bool hideProvider = false;
  bool hideSigner = false;
  bool hideCertificate = false;
  bool hideCertificateContext = false;

  /// If not null, gets each call too, in one order with the other users of the record: "verify
  /// embedded 0", "verify catalog 0", "provider", "signer", "certificate", "subject", "issuer",
  /// "close".
  CallRecord* record = nullptr;
  /// The calls so far; the destructor checks that no state is open.
  std::vector<TrustCall> calls;
  int openStates = 0;

  [[nodiscard]] std::vector<TrustCall> VerifyCalls() const {
    return CallsOf(WTD_STATEACTION_VERIFY);
  }
  [[nodiscard]] std::vector<TrustCall> CloseCalls() const { return CallsOf(WTD_STATEACTION_CLOSE); }

 private:
  struct Patches;

  std::vector<TrustCall> CallsOf(DWORD stateAction) const;
  std::unique_ptr<Patches> patches_;
};

/// The DER form of a name such as "CN=A, O=B".
[[nodiscard]] std::vector<std::uint8_t> EncodeName(const std::wstring& name);

}  // namespace TestSupport
