#include "services.h"

#include <cstdlib>
#include <string>
#include <vector>

#include "class_object.h"
#include "firmware_script.h"
#include "machine.h"
#include "platform/win32/com_owners.h"
#include "variants.h"

namespace Standin::Firmware {

namespace {

using Zq::Gantry::Platform::ScopedVariant;
using Zq::Gantry::Platform::UniqueInterface;

constexpr wchar_t kInstancePath[] =
    L"\\\\NOTEBOOK\\root\\wmi:ZqqBIntM.InstanceName=\"ACPI\\\\PNP0C14\\\\ZQ_0\"";
constexpr wchar_t kMethodPrefix[] = L"zqqBIOSInt";

/// Returns its objects in order, one for each call, and each of them once.
class Enumerator final : public LiveObject<UnusedEnumeratorMethods> {
 public:
  explicit Enumerator(std::string className) : className_(std::move(className)) {}
  /// Takes over the reference; a null object is returned as null.
  void Add(IWbemClassObject* object) { objects_.emplace_back(object); }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IEnumWbemClassObject) return E_NOINTERFACE;
    *object = static_cast<IEnumWbemClassObject*>(this);
    AddRef();
    return S_OK;
  }
  STDMETHODIMP Next(LONG timeout, ULONG count, IWbemClassObject** objects,
                    ULONG* returned) override {
    *objects = nullptr;
    *returned = 0;
    const std::string detail = std::to_string(timeout) + " " + std::to_string(count);
    if (const auto result = TheScript().Enter("Next(" + className_ + ")", detail)) return *result;
    if (next_ == objects_.size()) return static_cast<HRESULT>(WBEM_S_FALSE);
    *objects = objects_[next_++].release();
    *returned = 1;
    return S_OK;
  }

 private:
  ~Enumerator() override { TheScript().End("enumerator"); }

  std::string className_;
  std::vector<UniqueInterface<IWbemClassObject>> objects_;
  std::size_t next_ = 0;
};

/// The flags, and a remark if the call passes a context or asks for a call result.
std::string Options(LONG flags, const IWbemContext* context, const void* callResult = nullptr) {
  return std::to_string(flags) + (context != nullptr ? " with context" : "") +
         (callResult != nullptr ? " with call result" : "");
}

LONG NumberOf(const ClassObject& block, const wchar_t* member) {
  ScopedVariant value;
  block.Read(member, value);
  return value->vt == VT_I4 ? value->lVal : 0;
}

std::vector<std::uint8_t> BytesOf(const ClassObject& block, const wchar_t* member, bool& isNull) {
  ScopedVariant value;
  block.Read(member, value);
  const bool isArray = value->vt == (VT_ARRAY | VT_UI1);
  isNull = isArray && value->parray == nullptr;
  if (!isArray || isNull) return {};
  const auto* data = static_cast<const std::uint8_t*>(value->parray->pvData);
  return {data, data + value->parray->rgsabound[0].cElements};
}

ReceivedCommand ReadCommand(const wchar_t* method, const ClassObject& block) {
  ReceivedCommand command;
  command.method = Narrow(method);
  bool nullSign = false;
  for (const std::uint8_t byte : BytesOf(block, L"Sign", nullSign)) {
    command.sign += static_cast<char>(byte);
  }
  command.command = NumberOf(block, L"Command");
  command.commandType = NumberOf(block, L"CommandType");
  command.size = NumberOf(block, L"Size");
  command.data = BytesOf(block, L"zqqBData", command.nullData);
  return command;
}

/// The embedded input block, which `input` owns; null if there is no block of this stand-in.
ClassObject* InputBlock(IWbemClassObject* input) {
  const auto* instance = dynamic_cast<const ClassObject*>(input);
  if (instance == nullptr) return nullptr;
  ScopedVariant value;
  instance->Read(L"InData", value);
  return value->vt == VT_UNKNOWN ? dynamic_cast<ClassObject*>(value->punkVal) : nullptr;
}

IWbemClassObject* MakeResult(const std::vector<std::uint8_t>& bytes) {
  const UniqueInterface<ClassObject> block(new ClassObject(L"zqqBDataOut"));
  block.get()->SetProperty(L"rwReturnCode", [](VARIANT* value) { MakeNumber(value, 0); });
  block.get()->SetProperty(L"Data", [bytes](VARIANT* value) { MakeAnswerData(value, bytes); });
  block.get()->NameQuery("QueryInterface(OutData)");

  VARIANT embedded;
  VariantInit(&embedded);
  embedded.vt = VT_UNKNOWN;
  embedded.punkVal = block.get();
  auto* result = new ClassObject(L"__PARAMETERS");
  result->SetProperty(L"OutData", embedded);
  return result;
}

}  // namespace

Services::~Services() { TheScript().End("services"); }

STDMETHODIMP Services::QueryInterface(REFIID iid, void** object) {
  *object = nullptr;
  if (iid == IID_IUnknown || iid == IID_IWbemServices) *object = static_cast<IWbemServices*>(this);
  if (iid == IID_IClientSecurity) *object = static_cast<IClientSecurity*>(this);
  if (*object == nullptr) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

STDMETHODIMP Services::GetObject(const BSTR path, LONG flags, IWbemContext* context,
                                 IWbemClassObject** object, IWbemCallResult** callResult) {
  *object = nullptr;
  const std::wstring name = path;
  const std::string call = "GetObject(" + NarrowBstr(path) + ")";
  if (const auto result = TheScript().Enter(call, Options(flags, context, callResult))) {
    return *result;
  }
  if (name != L"zqqBIntM" && name != L"zqqBDataIn") return static_cast<HRESULT>(WBEM_E_NOT_FOUND);
  *object = new ClassObject(name);
  return S_OK;
}

STDMETHODIMP Services::CreateInstanceEnum(const BSTR filter, LONG flags, IWbemContext* context,
                                          IEnumWbemClassObject** objects) {
  *objects = nullptr;
  const std::string detail = NarrowBstr(filter) + " " + Options(flags, context);
  if (const auto result = TheScript().Enter("CreateInstanceEnum", detail)) return *result;
  auto* instance = new ClassObject(filter);
  instance->SetProperty(L"__PATH", [](VARIANT* value) { MakeText(value, kInstancePath); });
  auto* enumerator = new Enumerator(Narrow(filter));
  enumerator->Add(instance);
  *objects = enumerator;
  return S_OK;
}

STDMETHODIMP Services::ExecQuery(const BSTR language, const BSTR query, LONG flags,
                                 IWbemContext* context, IEnumWbemClassObject** objects) {
  *objects = nullptr;
  const std::string detail =
      NarrowBstr(language) + "|" + NarrowBstr(query) + "|" + Options(flags, context);
  if (const auto result = TheScript().Enter("ExecQuery", detail)) return *result;
  auto* enumerator = new Enumerator("Win32_ComputerSystem");
  if (TheScript().Has("null-computer-system")) enumerator->Add(nullptr);
  for (int i = TheScript().Has("two-computer-systems") ? 0 : 1; i < 2; ++i) {
    auto* system = new ClassObject(L"Win32_ComputerSystem");
    system->SetProperty(L"OEMStringArray", MakeOemStrings);
    enumerator->Add(system);
  }
  *objects = enumerator;
  return S_OK;
}

STDMETHODIMP Services::ExecMethod(const BSTR path, const BSTR method, LONG flags,
                                  IWbemContext* context, IWbemClassObject* input,
                                  IWbemClassObject** output, IWbemCallResult** callResult) {
  *output = nullptr;
  const std::string detail =
      NarrowBstr(path) + "|" + NarrowBstr(method) + " " + Options(flags, context, callResult);
  if (const auto result = TheScript().Enter("ExecMethod", detail)) return *result;
  const ClassObject* block = InputBlock(input);
  if (path == nullptr || std::wstring(path) != kInstancePath || block == nullptr) {
    return static_cast<HRESULT>(WBEM_E_INVALID_PARAMETER);
  }
  const long bytes = std::wcstol(method + std::size(kMethodPrefix) - 1, nullptr, 10);
  *output =
      MakeResult(TheMachine().Run(ReadCommand(method, *block), static_cast<std::size_t>(bytes)));
  return S_OK;
}

STDMETHODIMP Services::SetBlanket(IUnknown*, DWORD authentication, DWORD authorisation,
                                  OLECHAR* principal, DWORD level, DWORD impersonation,
                                  void* identity, DWORD capabilities) {
  std::string detail;
  for (const DWORD number : {authentication, authorisation, level, impersonation, capabilities}) {
    detail += (detail.empty() ? "" : ",") + std::to_string(number);
  }
  if (principal != nullptr) detail += " with principal";
  if (identity != nullptr) detail += " with identity";
  return TheScript().Enter("SetBlanket", detail).value_or(S_OK);
}

}  // namespace Standin::Firmware
