#include "doctor/collector_facts.h"

#include <windows.h>

#include <wintrust.h>
// After the types it uses.
#include <softpub.h>

#include <algorithm>
#include <exception>
#include <map>
#include <memory>
#include <vector>

#include "base/utf8_text.h"
#include "collection/collector_status.h"
#include "collection/data_collector.h"
#include "platform/win32/owners.h"
#include "security/trust/trusted_keys.h"
#include "security/trust/zq_authenticode_helper.h"

namespace WattleafHost {

namespace {

using Zq::Gantry::Platform::UniqueLocalBlock;
using Zq::Gantry::Platform::UniqueModule;
using Zq::Gantry::Security::ServiceTrustedKeys;
using Zq::Gantry::Security::SignerDescriptor;
using Zq::Gantry::Security::ZQAuthenticodeHelper;
using namespace Zq::Gantry::Server::Services::Wattleaf;

/// Also for a file whose signatures the library does not list: it has none, or was altered.
std::uint32_t SystemVerdict(const std::wstring& path) {
  WINTRUST_FILE_INFO file{};
  file.cbStruct = sizeof(file);
  file.pcwszFilePath = path.c_str();
  WINTRUST_DATA data{};
  data.cbStruct = sizeof(data);
  data.dwUIChoice = WTD_UI_NONE;
  data.fdwRevocationChecks = WTD_REVOKE_NONE;
  data.dwUnionChoice = WTD_CHOICE_FILE;
  data.pFile = &file;
  data.dwStateAction = WTD_STATEACTION_VERIFY;
  GUID action = WINTRUST_ACTION_GENERIC_VERIFY_V2;
  const auto verdict = static_cast<std::uint32_t>(WinVerifyTrust(/*hwnd=*/nullptr, &action, &data));
  data.dwStateAction = WTD_STATEACTION_CLOSE;
  WinVerifyTrust(/*hwnd=*/nullptr, &action, &data);
  return verdict;
}

SignatureFacts FactsOf(const SignerDescriptor& signer) {
  // The first eight bytes of the text are the same for all keys of one length.
  constexpr std::size_t kKeyBegin = 24;
  constexpr std::size_t kKeyChars = 23;
  SignatureFacts facts;
  facts.signer = ToUtf8(signer.commonName);
  if (signer.publicKey.size() > kKeyBegin) {
    facts.key = signer.publicKey.substr(kKeyBegin, kKeyChars);
  }
  facts.verdict = signer.verifyResult;
  facts.isKeyAccepted =
      std::ranges::find(ServiceTrustedKeys, signer.publicKey) != ServiceTrustedKeys.end();
  return facts;
}

/// The system's text for an error, without its line end.
std::string ErrorText(DWORD error) {
  wchar_t* text = nullptr;
  FormatMessageW(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, error, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
  const UniqueLocalBlock block(text);
  std::string line = text == nullptr ? std::string("no text of the system") : ToUtf8(text);
  while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
  return line;
}

void IgnoreData(const char**, int) {}

/// Asks the collector as the library does, then stops it.
void Start(CreateCollector create, CollectorFacts& facts) {
  const std::unique_ptr<DataCollector> collector(create());
  if (!collector) {
    facts.startProblem = "CreateZQXExportClass returned no object";
    return;
  }
  if (!collector->OnLoad()) {
    facts.startProblem = "OnLoad returned false";
    return;
  }
  collector->SetDataCallback(&IgnoreData);
  const std::vector<int> kinds{kPowerSamples};
  const auto statuses = collector->StartCollecting(kinds);
  const auto status = statuses.find(kPowerSamples);
  if (status == statuses.end()) {
    facts.startProblem = "StartCollecting returned no status of power samples";
  } else {
    facts.status = status->second;
  }
  static_cast<void>(collector->StopCollecting(kinds));
}

void StartGuarded(CreateCollector create, CollectorFacts& facts) {
  try {
    Start(create, facts);
  } catch (const std::exception& failure) {
    facts.startProblem = std::string("an exception: ") + failure.what();
  } catch (...) {
    facts.startProblem = "an exception without a text";
  }
}

void Load(const std::wstring& path, bool start, CollectorFacts& facts) {
  const UniqueModule module(LoadLibraryW(path.c_str()));
  facts.loadError = module ? 0 : GetLastError();
  if (!module) {
    facts.loadErrorText = ErrorText(*facts.loadError);
    return;
  }
  const auto create = reinterpret_cast<CreateCollector>(
      reinterpret_cast<void*>(GetProcAddress(module.get(), kCreateCollectorExport)));
  facts.hasFactory = create != nullptr;
  if (create != nullptr && start) StartGuarded(create, facts);
}

}  // namespace

CollectorFacts ReadCollectorFacts(const std::wstring& path, bool start) {
  CollectorFacts facts;
  facts.path = ToUtf8(path);
  facts.exists = GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
  if (!facts.exists) return facts;
  facts.systemVerdict = SystemVerdict(path);
  const auto signatures = ZQAuthenticodeHelper::GetAllSignatures(path.c_str());
  for (const SignerDescriptor& signer : signatures) facts.signatures.push_back(FactsOf(signer));
  facts.isAcceptedBySystem = ZQAuthenticodeHelper::IsTrustedByWindows(signatures);
  facts.isKeyAccepted = ZQAuthenticodeHelper::IsTrustedByMeridian(signatures, &ServiceTrustedKeys);
  facts.isPlaceAllowed = ZQAuthenticodeHelper::IsPathAllowed(path.c_str());
  // By the library's own rule: only a file that it would load is loaded here.
  if (ZQAuthenticodeHelper::IsFileTrusted(path.c_str(), &ServiceTrustedKeys) &&
      facts.isPlaceAllowed) {
    Load(path, start, facts);
  }
  return facts;
}

}  // namespace WattleafHost
