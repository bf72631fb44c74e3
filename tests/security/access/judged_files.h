#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "security/trust/fake_catalogs.h"
#include "security/trust/fake_path_calls.h"
#include "security/trust/fake_trust.h"
#include "security/trust/signer_descriptor.h"
#include "security/trust/trusted_keys.h"
#include "support/log_capture.h"

namespace TestSupport {

/// Fakes everything that a judgement of a file asks the system for: signatures, catalogs, places
/// and the client. Without changes every file is unsigned and no call is being served.
struct JudgedFiles {
  JudgedFiles() = default;
  /// The thread serves the process `client`.
  explicit JudgedFiles(DWORD client) : rpc(FakeRpcQuery::ServingClient(client)) {}

  FixedRoots roots;
  FakeTrust trust;
  FakeCatalogs catalogs;
  FakeRpcQuery rpc;
  LogCapture log;

  /// Every file bears one signature with this verdict and key.
  void SignAll(std::uint32_t verdict, const std::string& keyText) {
    FakeSignature signature;
    signature.verdict = static_cast<LONG>(verdict);
    signature.key = KeyBytes(keyText);
    trust.embedded = {signature};
  }

  /// Every file passes IsFileTrusted with the service's keys.
  void SignAllForTheService() {
    SignAll(Zq::Gantry::Security::kVerified, Zq::Gantry::Security::ServiceTrustedKeys.front());
  }

  /// The files whose embedded signatures were asked for, in order and each once in a row.
  std::vector<std::wstring> FilesAskedFor() const {
    std::vector<std::wstring> files;
    for (const TrustCall& call : trust.VerifyCalls()) {
      if (files.empty() || files.back() != call.path) files.push_back(call.path);
    }
    return files;
  }

  /// The bytes behind "30 82 01 ..."
  static std::vector<std::uint8_t> KeyBytes(std::string_view text) {
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i + 1 < text.size(); i += 3) {
      bytes.push_back(
          static_cast<std::uint8_t>(std::stoi(std::string(text.substr(i, 2)), nullptr, 16)));
    }
    return bytes;
  }
};

}  // namespace TestSupport
