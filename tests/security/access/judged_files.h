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

/// A file in a place that FixedRoots protects, and one in a place that it does not.
inline constexpr wchar_t kProtected[] = L"C:\\Windows\\file.dll";
inline constexpr wchar_t kElsewhere[] = L"D:\\Users\\file.dll";

/// Fakes every system call that judging a file takes: signatures, catalogs, places and the client.
/// By default every file is unsigned and the thread serves no call.
struct JudgedFiles {
  JudgedFiles() = default;
  /// The thread serves the process `client`.
  explicit JudgedFiles(DWORD client) : rpc(FakeRpcQuery::ServingClient(client)) {}

  FixedRoots roots;
  FakeTrust trust;
  FakeCatalogs catalogs;
  FakeRpcQuery rpc;
  LogCapture log;

  /// Gives every file one signature with this verdict and key.
  void SignAll(std::uint32_t verdict, const std::string& keyText) {
    FakeSignature signature;
    signature.verdict = static_cast<LONG>(verdict);
    signature.key = KeyBytes(keyText);
    trust.embedded = {signature};
  }

  /// Gives every file a signature that IsFileTrusted accepts for the service's keys.
  void SignAllForTheService() {
    SignAll(Zq::Gantry::Security::kVerified, Zq::Gantry::Security::ServiceTrustedKeys.front());
  }

  /// The files whose embedded signatures were verified, in order, without repetitions in a row.
  [[nodiscard]] std::vector<std::wstring> VerifiedFiles() const {
    std::vector<std::wstring> files;
    for (const TrustCall& call : trust.VerifyCalls()) {
      if (files.empty() || files.back() != call.path) files.push_back(call.path);
    }
    return files;
  }

  /// Whether no path was expanded to judge its place: each expansion queries the client.
  [[nodiscard]] bool NoPlaceWasChecked() const { return rpc.Questions().empty(); }

  /// The bytes of a text such as "30 82 01".
  [[nodiscard]] static std::vector<std::uint8_t> KeyBytes(std::string_view text) {
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i + 1 < text.size(); i += 3) {
      bytes.push_back(
          static_cast<std::uint8_t>(std::stoi(std::string(text.substr(i, 2)), nullptr, 16)));
    }
    return bytes;
  }
};

}  // namespace TestSupport
