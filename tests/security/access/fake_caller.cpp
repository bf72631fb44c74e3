#include "fake_caller.h"

#include <algorithm>
#include <sstream>

#include "support/call_attributes.h"

namespace TestSupport {

namespace {

FakeCaller* current = nullptr;

std::string Text(const char* call, HANDLE handle) {
  std::ostringstream text;
  text << call << ' ' << std::hex << reinterpret_cast<std::uintptr_t>(handle);
  return text.str();
}

}  // namespace

FakeCaller::FakeCaller() { current = this; }
FakeCaller::~FakeCaller() { current = nullptr; }

void FakeCaller::ClearRecords() {
  order.clear();
  queries.clear();
  bindings.clear();
  opened.clear();
  duplicatedFrom.clear();
  duplicatedWith.clear();
  lengths.clear();
  buffers.clear();
  closed.clear();
}

RPC_STATUS RPC_ENTRY FakeCaller::Query(RPC_BINDING_HANDLE binding, void* attributes) {
  auto* bytes = static_cast<unsigned char*>(attributes);
  const RPC_STATUS status = current->queryStatus[std::min<std::size_t>(current->queries.size(), 1)];
  current->order.push_back("query");
  current->bindings.push_back(binding);
  current->queries.push_back({bytes, bytes + kCallAttributesBytes});
  // A failed query writes here too: callers must not use what it leaves.
  WriteClientId(attributes, current->client);
  return status;
}

HANDLE WINAPI FakeCaller::Open(DWORD access, BOOL inherit, DWORD client) {
  current->order.push_back("open");
  current->opened.insert(current->opened.end(), {access, static_cast<DWORD>(inherit), client});
  return client == 0 ? nullptr : current->process;
}

BOOL WINAPI FakeCaller::Duplicate(HANDLE fromProcess, HANDLE handle, HANDLE toProcess, HANDLE* copy,
                                  DWORD access, BOOL inherit, DWORD options) {
  current->order.push_back("duplicate");
  current->duplicatedFrom.insert(current->duplicatedFrom.end(), {fromProcess, handle, toProcess});
  current->duplicatedWith.insert(current->duplicatedWith.end(),
                                 {access, static_cast<DWORD>(inherit), options});
  *copy = current->copy;
  return current->duplicated;
}

RPC_STATUS RPC_ENTRY FakeCaller::Impersonate(RPC_BINDING_HANDLE binding) {
  current->order.push_back("impersonate");
  current->bindings.push_back(binding);
  return current->impersonateStatus;
}

RPC_STATUS RPC_ENTRY FakeCaller::Revert() {
  current->order.push_back("revert");
  return current->revertStatus;
}

LONG WINAPI FakeCaller::QueryName(HANDLE process, UINT32* length, wchar_t* name) {
  const bool isFirst = current->lengths.empty();
  current->order.push_back(Text(isFirst ? "length of" : "name of", process));
  current->lengths.push_back(*length);
  current->buffers.push_back(name);
  if (isFirst) {
    *length = static_cast<UINT32>(current->name.size());
    if (current->duringFirstNameQuery != nullptr) current->duringFirstNameQuery();
    return current->lengthStatus;
  }
  current->name.copy(name, std::min<std::size_t>(*length, current->written));
  return current->nameStatus;
}

BOOL WINAPI FakeCaller::Close(HANDLE handle) {
  current->order.push_back(Text("close", handle));
  current->closed.push_back(handle);
  return TRUE;
}

}  // namespace TestSupport
