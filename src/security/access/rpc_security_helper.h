#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "platform/winrt/runtime_text.h"
#include "wattleaf_export.h"

namespace Zq::Gantry::Security {

/// Identifies the caller of a remote procedure call, and has the names that the check of a client's
/// manifest needs. Made for one query, on the thread that serves the call, and destroyed right
/// after it. The order of the fields is a contract with that check.
///
///   RpcSecurityHelper helper;
///   helper.ClientProcessHandles = knownClients;  // may stay empty
///   const std::wstring family = helper.GetPFNOfCaller();
///   const bool isOurs = family.ends_with(helper.PublisherId);  // false without a name
class RpcSecurityHelper {
 public:
  WATTLEAF_API RpcSecurityHelper();
  // Neither copied nor moved: the constants below are const members.
  RpcSecurityHelper(const RpcSecurityHelper&) = delete;
  RpcSecurityHelper& operator=(const RpcSecurityHelper&) = delete;
  /// Closes no handle of ClientProcessHandles.
  WATTLEAF_API ~RpcSecurityHelper();

  /// The package family name of the process whose remote procedure call the calling thread serves
  /// (GetPackageFamilyName), without any null character. Empty if it cannot be determined, which
  /// includes a client outside of a package: treat such a client as one without rights. The reason
  /// is logged once. The thread acts as the client during the query. Nothing is thrown.
  [[nodiscard]] WATTLEAF_API std::wstring GetPFNOfCaller() const;

  /// The publisher id that ends the package family names of the product family.
  const wchar_t* const PublisherId = L"q7m3xk2tdw9pa";
  /// File name of a client's manifest, without extension, and the extension.
  const std::wstring ManifestName = L"ZQManifest";
  const std::wstring ManifestExtension = L".xml";
  /// Extensions of the files with the manifest's signatures.
  const std::wstring CatalogExtension = L".cat";
  const std::wstring SignatureExtension = L".p7s";
  const std::wstring ZqSignatureExtension = L".zqc";
  /// File names of the catalogs of custom capabilities, one for each architecture.
  const std::wstring CapabilityCatalogX64 = L"zqcustomcapcompx64.cat";
  const std::wstring CapabilityCatalogX86 = L"zqcustomcapcompx86.cat";

  /// An HSTRING for the check's own use, null if there is none; released with the object.
  Platform::WinRt::UniqueHString ExtraPlatformText;
  /// By process id, handles to known clients (HANDLE), which stay the host's. They identify a
  /// client whose process cannot be opened; they need PROCESS_QUERY_LIMITED_INFORMATION only.
  std::map<std::uint32_t, void*> ClientProcessHandles;
  // For the check's own use, all three.
  std::shared_ptr<void> SharedPartOne;
  std::shared_ptr<void> SharedPartTwo;
  std::wstring ExtraText;
};

}  // namespace Zq::Gantry::Security
