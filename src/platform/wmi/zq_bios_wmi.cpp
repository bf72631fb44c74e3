#include "platform/wmi/zq_bios_wmi.h"

#include <string>
#include <utility>

#include "platform/win32/com_owners.h"
#include "platform/wmi/bios_wmi_names.h"
#include "platform/wmi/wmi_connection.h"

namespace Zq::Gantry::Server::Shared::WMI {

namespace {

using Platform::MakeBstr;
using Platform::UniqueBstr;
using Platform::UniqueInterface;

constexpr LONG kInstanceTimeoutMs = 2000;

/// The firmware has one method for each output size.
std::wstring MethodName(std::uint32_t outputSize) {
  return kMethodPrefix + std::to_wstring(static_cast<std::int32_t>(outputSize));
}

}  // namespace

int ZQBiosWmi::GetReady() {
  if (ready_ != 0) return 1;

  service_.reset();
  Platform::ComMembership membership;
  if (FAILED(membership.Result())) {
    Log().Warn("GetReady", L"CoInitializeEx", membership.Result());
  }

  WmiConnection connection = ConnectToNamespace(kBiosNamespace, "GetReady", Log());
  // Kept on purpose: without a locator the thread stays a member.
  if (connection.failedStep == ConnectStep::kLocator) membership.GiveUp();
  if (!connection.service) return 0;

  service_ = std::move(connection.service);
  membership_.emplace(std::move(membership));
  ready_ = 1;
  return 1;
}

void ZQBiosWmi::CloseBiosConnection() {
  if (ready_ == 0) return;
  service_.reset();  // while the thread is still a member
  membership_.reset();
  ready_ = 0;
}

HRESULT ZQBiosWmi::ExecuteCommand(std::int32_t command, std::uint32_t inputSize,
                                  const std::uint8_t* input, std::uint32_t outputSize,
                                  std::uint8_t* output, std::uint32_t* returnCode) {
  if (ready_ == 0 && GetReady() == 0) return E_FAIL;

  const UniqueBstr methodName = MakeBstr(MethodName(outputSize).c_str());
  UniqueInterface<IWbemClassObject> instance;
  HRESULT result = PrepareInput(methodName.get(), command, inputSize, input, instance);
  if (FAILED(result)) return result;

  Platform::ScopedVariant path;
  result = GetBiosMethodObjectPath(path.get());
  if (FAILED(result)) return result;

  UniqueInterface<IWbemClassObject> methodResult;
  result = CallMethod(*path, methodName.get(), instance.get(), methodResult);
  if (FAILED(result)) return result;
  return GetOutputData(methodResult.get(), outputSize, output, returnCode);
}

HRESULT ZQBiosWmi::FetchClass(const wchar_t* name, const char* function,
                              UniqueInterface<IWbemClassObject>& definition) {
  const UniqueBstr className = MakeBstr(name);
  HRESULT result = service_.get()->GetObject(className.get(), 0, /*context=*/nullptr,
                                             definition.out(), /*callResult=*/nullptr);
  result = RequireObject(result, definition.get());
  // Kept on purpose: the text names the input block for the class of the methods too.
  if (FAILED(result)) Log().Warn(function, L"IWbemServices->GetObject(InputDataBlock)", result);
  return result;
}

HRESULT ZQBiosWmi::PrepareInput(const wchar_t* methodName, std::int32_t command,
                                std::uint32_t inputSize, const std::uint8_t* input,
                                UniqueInterface<IWbemClassObject>& instance) {
  UniqueInterface<IWbemClassObject> methods;
  HRESULT result = FetchClass(kMethodClass, "ExecuteCommand", methods);
  if (FAILED(result)) return result;

  UniqueInterface<IWbemClassObject> signature;
  result = methods.get()->GetMethod(methodName, 0, signature.out(), /*outputSignature=*/nullptr);
  result = RequireObject(result, signature.get());
  methods.reset();
  if (FAILED(result)) {
    Log().Warn("ExecuteCommand", L"IWbemClassObject->GetMethod(BiosWmiMethod)", result);
    return result;
  }
  return SetupInputDataBlock(command, inputSize, input, signature.get(), instance.out());
}

HRESULT ZQBiosWmi::GetBiosMethodObjectPath(VARIANT* path) {
  const UniqueBstr className = MakeBstr(kInstanceClass);
  UniqueInterface<IEnumWbemClassObject> instances;
  HRESULT result = service_.get()->CreateInstanceEnum(
      className.get(), WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY,
      /*context=*/nullptr, instances.out());
  result = RequireObject(result, instances.get());
  if (FAILED(result)) {
    Log().Warn("GetBiosMethodObjectPath", L"IWbemServices->CreateInstanceEnum(BiosWmiMethod)",
               result);
    return result;
  }

  UniqueInterface<IWbemClassObject> instance;
  ULONG returned = 0;
  result = instances.get()->Next(kInstanceTimeoutMs, 1, instance.out(), &returned);
  instances.reset();
  if (FAILED(result) || !instance) {
    Log().Warn("GetBiosMethodObjectPath", L"IEnumWbemClassObject->Next()", result);
    // Kept on purpose: neither the end of the enumeration nor its time-out is a failure; the caller
    // goes on with an empty path.
    return result;
  }

  result = instance.get()->Get(kPathProperty, 0, path, nullptr, nullptr);
  if (FAILED(result)) {
    Log().Warn("GetBiosMethodObjectPath", L"IWbemClassObject->Get(path)", result);
  }
  return result;
}

HRESULT ZQBiosWmi::CallMethod(const VARIANT& path, BSTR methodName, IWbemClassObject* input,
                              UniqueInterface<IWbemClassObject>& methodResult) {
  // COM takes a null text for an empty one.
  wchar_t* const objectPath = path.vt == VT_BSTR ? path.bstrVal : nullptr;
  HRESULT result = service_.get()->ExecMethod(objectPath, methodName, 0, /*context=*/nullptr, input,
                                              methodResult.out(), /*callResult=*/nullptr);
  result = RequireObject(result, methodResult.get());
  if (FAILED(result)) {
    Log().Warn("ExecuteCommand", L"IWbemServices->ExecMethod(BIOS method)", result);
  }
  return result;
}

}  // namespace Zq::Gantry::Server::Shared::WMI
