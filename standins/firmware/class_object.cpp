#include "class_object.h"

#include <cstdint>
#include <memory>

namespace Standin::Firmware {

namespace {

using Zq::Gantry::Platform::ScopedVariant;

std::string DescribeArray(const SAFEARRAY* array) {
  if (array == nullptr) return " null";
  const auto* bytes = static_cast<const std::uint8_t*>(array->pvData);
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text = " ";
  for (ULONG i = 0; i < array->rgsabound[0].cElements; ++i) {
    text += kDigits[bytes[i] / 16];
    text += kDigits[bytes[i] % 16];
  }
  return text;
}

/// The type's number, then hexadecimal bytes, "null" or a decimal number.
std::string Describe(const VARIANT& value) {
  std::string text = std::to_string(value.vt);
  if (value.vt == (VT_ARRAY | VT_UI1)) text += DescribeArray(value.parray);
  if (value.vt == VT_I4) text += " " + std::to_string(value.lVal);
  return text;
}

/// `target` is empty. VariantCopy refuses a null array, which is copied here.
void CopyVariant(VARIANT* target, const VARIANT& source) {
  if ((source.vt & VT_ARRAY) != 0 && source.parray == nullptr) {
    *target = source;
  } else {
    VariantCopy(target, const_cast<VARIANT*>(&source));
  }
}

}  // namespace

ClassObject::~ClassObject() { TheScript().End(Narrow(className_.c_str())); }

STDMETHODIMP ClassObject::QueryInterface(REFIID iid, void** object) {
  *object = nullptr;
  const bool named = iid == IID_IWbemClassObject;
  if (named && !queryCall_.empty()) {
    if (const auto result = TheScript().Enter(queryCall_)) return *result;
  }
  if (!named && iid != IID_IUnknown) return E_NOINTERFACE;
  *object = static_cast<IWbemClassObject*>(this);
  AddRef();
  return S_OK;
}

STDMETHODIMP ClassObject::Get(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE* type,
                              LONG* flavor) {
  const std::string call = "Get(" + Narrow(name) + ")";
  const bool plain = type == nullptr && flavor == nullptr;
  const std::string detail = std::to_string(flags) + (plain ? "" : " with type or flavor");
  if (const auto result = TheScript().Enter(call, detail)) return *result;
  VariantMaker make = TheScript().FindAnswer(call);
  if (!make) {
    const auto property = properties_.find(name);
    if (property == properties_.end()) return static_cast<HRESULT>(WBEM_E_NOT_FOUND);
    make = property->second;
  }
  // Like the real one, overwrites what the variant held without clearing it.
  VariantInit(value);
  make(value);
  return S_OK;
}

STDMETHODIMP ClassObject::Put(LPCWSTR name, LONG flags, VARIANT* value, CIMTYPE type) {
  const std::string detail =
      Describe(*value) + " " + std::to_string(flags) + " " + std::to_string(type);
  if (const auto result = TheScript().Enter("Put(" + Narrow(name) + ")", detail)) return *result;
  SetProperty(name, *value);
  return S_OK;
}

void ClassObject::SetProperty(const std::wstring& name, const VARIANT& value) {
  const auto copy = std::make_shared<ScopedVariant>();
  CopyVariant(copy->get(), value);
  properties_[name] = [copy](VARIANT* target) { CopyVariant(target, **copy); };
}

STDMETHODIMP ClassObject::SpawnInstance(LONG flags, IWbemClassObject** instance) {
  *instance = nullptr;
  const std::string call = "SpawnInstance(" + Narrow(className_.c_str()) + ")";
  if (const auto result = TheScript().Enter(call, std::to_string(flags))) return *result;
  *instance = new ClassObject(className_);
  return S_OK;
}

STDMETHODIMP ClassObject::GetMethod(LPCWSTR name, LONG flags, IWbemClassObject** input,
                                    IWbemClassObject** output) {
  *input = nullptr;
  if (output != nullptr) *output = nullptr;
  const std::string detail = Narrow(name) + " " + std::to_string(flags) +
                             (output != nullptr ? " with output signature" : "");
  if (const auto result = TheScript().Enter("GetMethod", detail)) return *result;
  if (className_ != L"zqqBIntM") return static_cast<HRESULT>(WBEM_E_NOT_FOUND);
  *input = new ClassObject(L"__PARAMETERS");
  return S_OK;
}

void ClassObject::Read(const std::wstring& name, ScopedVariant& value) const {
  const auto property = properties_.find(name);
  if (property != properties_.end()) property->second(value.get());
}

}  // namespace Standin::Firmware
