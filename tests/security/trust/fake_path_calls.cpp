#include "security/trust/fake_path_calls.h"

#include "support/call_attributes.h"

namespace TestSupport {

namespace {

FakeRpcQuery* currentRpcQuery = nullptr;

}  // namespace

FakeRpcQuery::FakeRpcQuery(RPC_STATUS status) : FakeRpcQuery(status, 0) {}

FakeRpcQuery::FakeRpcQuery(RPC_STATUS status, DWORD client)
    : status_(status), client_(client), patch_("RpcServerInqCallAttributesW", &Answer) {
  currentRpcQuery = this;
}

FakeRpcQuery::~FakeRpcQuery() { currentRpcQuery = nullptr; }

RPC_STATUS RPC_ENTRY FakeRpcQuery::Answer(RPC_BINDING_HANDLE binding, void* attributes) {
  auto* bytes = static_cast<unsigned char*>(attributes);
  currentRpcQuery->questions_.push_back({binding, {bytes, bytes + kCallAttributesBytes}});
  if (currentRpcQuery->status_ != RPC_S_OK) return currentRpcQuery->status_;
  WriteClientId(attributes, currentRpcQuery->client_);
  return RPC_S_OK;
}

std::wstring ExpansionFailure(const std::wstring& function, int error) {
  return L"class Zq::Gantry::Server::Services::UtilHelper.GetFullExpandedPath failed on function " +
         function + L" with result " + std::to_wstring(error);
}

std::vector<LogRecord> WarningsAndErrors(const LogCapture& log) {
  std::vector<LogRecord> records = log.Records();
  std::erase_if(records,
                [](const LogRecord& record) { return record.level == Standin::LogLevel::kInfo; });
  return records;
}

}  // namespace TestSupport
