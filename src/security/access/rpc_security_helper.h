#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "platform/winrt/runtime_text.h"
#include "wattleaf_export.h"

namespace Zq::Gantry::Security {

/// Who calls, and the names that the check of a client's manifest works with. Made for one question
/// and given up at once. The order of the fields is a contract with that check.
class RpcSecurityHelper {
 public:
  WATTLEAF_API RpcSecurityHelper();
  RpcSecurityHelper(const RpcSecurityHelper&) = delete;
  RpcSecurityHelper& operator=(const RpcSecurityHelper&) = delete;
  /// Closes no handle of ClientProcessHandles.
  WATTLEAF_API ~RpcSecurityHelper();

  /// The package family name of the process whose remote procedure call the calling thread serves,
  /// without any zero character. Empty where it could not be established, which is to be treated as
  /// a client without rights; the reason is logged once. A client that is no packaged application
  /// has no name either. Acts as the client while it asks. Nothing is thrown.
  WATTLEAF_API std::wstring GetPFNOfCaller() const;

  /// The publisher id that ends the package family names of the product family.
  const wchar_t* const PublisherId = L"q7m3xk2tdw9pa";
  const std::wstring ManifestName = L"ZQManifest";
  const std::wstring ManifestExtension = L".xml";
  const std::wstring CatalogExtension = L".cat";
  const std::wstring SignatureExtension = L".p7s";
  const std::wstring ZqSignatureExtension = L".zqc";
  const std::wstring CapabilityCatalogX64 = L"zqcustomcapcompx64.cat";
  const std::wstring CapabilityCatalogX86 = L"zqcustomcapcompx86.cat";

  /// An HSTRING of the check's own, null if it has none; released with the object.
  Platform::WinRt::UniqueHString ExtraPlatformText;
  /// By process id, handles to known clients (HANDLE), which stay the host's. By them a client is
  /// identified whose process cannot be opened; PROCESS_QUERY_LIMITED_INFORMATION is enough.
  std::map<std::uint32_t, void*> ClientProcessHandles;
  std::shared_ptr<void> SharedPartOne;  ///< the check's own, like the next two
  std::shared_ptr<void> SharedPartTwo;
  std::wstring ExtraText;
};

}  // namespace Zq::Gantry::Security
