#include "platform/wmi/public_wmi.h"

#include <string>

#include "platform/win32/com_owners.h"
#include "platform/wmi/wmi_connection.h"

namespace Zq::Gantry::Server::Shared::WMI {

namespace {

using Platform::UniqueBstr;
using Platform::UniqueInterface;

constexpr wchar_t kNamespace[] = L"ROOT\\CIMV2";
constexpr wchar_t kSelect[] = L"SELECT * FROM ";
constexpr wchar_t kClassName[] = L"Win32_ComputerSystem";
constexpr wchar_t kPropertyName[] = L"OEMStringArray";  // VT_ARRAY | VT_BSTR, or VT_NULL
constexpr wchar_t kResultMember[] = L"result";

// The header declares these as values of unsigned enumerations.
constexpr auto kWbemNotFound = static_cast<HRESULT>(WBEM_E_NOT_FOUND);
constexpr auto kWbemInvalidClass = static_cast<HRESULT>(WBEM_E_INVALID_CLASS);
constexpr auto kWbemInvalidQuery = static_cast<HRESULT>(WBEM_E_INVALID_QUERY);
constexpr auto kWbemInvalidNamespace = static_cast<HRESULT>(WBEM_E_INVALID_NAMESPACE);
constexpr auto kWithoutTimeout = static_cast<LONG>(WBEM_INFINITE);

std::uint32_t StatusOfNext(HRESULT result, std::uint32_t status) {
  if (result == kWbemInvalidClass) return kInvalidClass;
  if (result == kWbemInvalidQuery) return kInvalidQuery;
  return status;
}

}  // namespace

std::uint32_t PublicWmi::GetPropertyValue(WideDocument& document) {
  std::uint32_t status = kNothingRead;
  const Platform::ComMembership membership;
  if (FAILED(membership.Result())) {
    Log().Warn("GetPropertyValue", L"CoInitializeEx", membership.Result());
  }

  const UniqueInterface<IEnumWbemClassObject> objects(EnumClassObject(status));
  if (objects) ReadObjects(objects.get(), document, status);
  return status;
}

/// The member is added only after the last object. If an object fails after another one's value was
/// read, the status may therefore stay kPropertyRead without a member.
void PublicWmi::ReadObjects(IEnumWbemClassObject* objects, WideDocument& document,
                            std::uint32_t& status) {
  WideValue held;
  for (;;) {
    UniqueInterface<IWbemClassObject> object;
    ULONG returned = 0;
    HRESULT result = objects->Next(kWithoutTimeout, 1, object.out(), &returned);
    if (returned != 0) result = RequireObject(result, object.get());
    if (FAILED(result)) {
      Log().Warn("GetPropertyValue", L"IEnumWbemClassObject->Next", result);
      status = StatusOfNext(result, status);
      return;
    }
    if (returned == 0) break;
    if (!ReadProperty(object.get(), held, document, status)) return;
  }
  if (status == kPropertyRead) {
    document.AddMember(rapidjson::StringRef(kResultMember), held, document.GetAllocator());
  }
}

bool PublicWmi::ReadProperty(IWbemClassObject* object, WideValue& held, WideDocument& document,
                             std::uint32_t& status) {
  Platform::ScopedVariant value;
  const HRESULT result = object->Get(kPropertyName, 0, value.get(), nullptr, nullptr);
  if (FAILED(result)) {
    Log().Warn("GetPropertyValue", L"IWbemClassObject->Get", result);
    if (result == kWbemNotFound) status = kPropertyNotFound;
    return false;
  }
  if (StoreValue(*value, held, document)) status = kPropertyRead;
  return true;
}

bool PublicWmi::StoreValue(const VARIANT& source, WideValue& held, WideDocument& document) {
  switch (source.vt) {
    case VT_I4:
      held.SetInt(static_cast<int>(source.lVal));
      return true;
    case VT_BSTR:
      held.SetString(source.bstrVal != nullptr ? source.bstrVal : L"", document.GetAllocator());
      return true;
    case VT_BOOL:
      held.SetBool(source.boolVal != 0);
      return true;
    case VT_ARRAY | VT_I4:
    case VT_ARRAY | VT_BSTR:
    case VT_ARRAY | VT_BOOL:
      held.SetArray();
      return GetSafeArrayData(source, held, document);
    default:
      return false;
  }
}

IEnumWbemClassObject* PublicWmi::EnumClassObject(std::uint32_t& status) {
  const UniqueInterface<IWbemServices> service(ConnectToWmi(status));
  if (!service) return nullptr;

  const UniqueBstr language = Platform::MakeBstr(L"WQL");
  const UniqueBstr query = Platform::MakeBstr((std::wstring(kSelect) + kClassName).c_str());
  UniqueInterface<IEnumWbemClassObject> objects;
  HRESULT result = service.get()->ExecQuery(language.get(), query.get(),
                                            WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY,
                                            /*context=*/nullptr, objects.out());
  result = RequireObject(result, objects.get());
  if (FAILED(result)) {
    Log().Warn("EnumClassObject", L"IWbemServices->ExecQuery", result);
    return nullptr;
  }
  return objects.release();
}

IWbemServices* PublicWmi::ConnectToWmi(std::uint32_t& status) {
  WmiConnection connection = ConnectToNamespace(kNamespace, "ConnectToWmi", Log());
  if (connection.failedStep == ConnectStep::kServer && connection.result == kWbemInvalidNamespace) {
    status = kInvalidNamespace;
  }
  return connection.service.release();
}

}  // namespace Zq::Gantry::Server::Shared::WMI
