#include "platform/wmi/zq_bios_wmi.h"

#include <array>

#include "platform/wmi/bios_wmi_names.h"

namespace Zq::Gantry::Server::Shared::WMI {

namespace {

using Platform::UniqueInterface;

constexpr std::array<std::uint8_t, 4> kSignature{'S', 'E', 'C', 'U'};
constexpr LONG kCommandType = 0x45;

}  // namespace

HRESULT ZQBiosWmi::SetupInputDataBlock(std::int32_t command, std::uint32_t inputSize,
                                       const std::uint8_t* input, IWbemClassObject* methodSignature,
                                       IWbemClassObject** instance) {
  UniqueInterface<IWbemClassObject> block;
  HRESULT result = SpawnDataBlock(block);
  if (FAILED(result)) return result;
  result = FillDataBlock(block.get(), command, inputSize, input);
  if (FAILED(result)) return result;

  UniqueInterface<IWbemClassObject> methodInput;
  result = methodSignature->SpawnInstance(0, methodInput.out());
  result = RequireObject(result, methodInput.get());
  if (FAILED(result)) {
    Log().Warn("SetupInputDataBlock", L"IWbemClassObject->SpawnInstance(BiosMethodInstance)",
               result);
    return result;
  }

  Platform::ScopedVariant embedded;
  embedded.ShareObject(block.get());
  result = methodInput.get()->Put(kInputParameter, 0, embedded.get(), /*type=*/0);
  if (FAILED(result)) {
    Log().Warn("SetupInputDataBlock", L"BiosMethodInstance->Put(InputDataBlockClass)", result);
    return result;
  }
  *instance = methodInput.release();
  return result;
}

HRESULT ZQBiosWmi::SpawnDataBlock(UniqueInterface<IWbemClassObject>& block) {
  UniqueInterface<IWbemClassObject> definition;
  HRESULT result = FetchClass(kInputClass, "SetupInputDataBlock", definition);
  if (FAILED(result)) return result;

  result = definition.get()->SpawnInstance(0, block.out());
  result = RequireObject(result, block.get());
  if (FAILED(result)) {
    Log().Warn("SetupInputDataBlock", L"IWbemClassObject->SpawnInstance(InputDataBlockInstance)",
               result);
  }
  return result;
}

HRESULT ZQBiosWmi::FillDataBlock(IWbemClassObject* block, std::int32_t command,
                                 std::uint32_t inputSize, const std::uint8_t* input) {
  HRESULT result = PutBytes(block, kSignMember, kSignature.data(), kSignature.size(),
                            L"InputDataBlockInstance->Put(Sign)");
  if (FAILED(result)) return result;
  result = PutNumber(block, kCommandMember, command, L"InputDataBlockInstance->Put(Command)");
  if (FAILED(result)) return result;
  result = PutNumber(block, kCommandTypeMember, kCommandType,
                     L"InputDataBlockInstance->Put(CommandType)");
  if (FAILED(result)) return result;
  result = PutNumber(block, kSizeMember, static_cast<LONG>(inputSize),
                     L"InputDataBlockInstance->Put(Size)");
  if (FAILED(result)) return result;
  return PutBytes(block, kInputMember, input, inputSize, L"InputDataBlockInstance->Put(inputData)");
}

HRESULT ZQBiosWmi::PutBytes(IWbemClassObject* block, const wchar_t* member,
                            const std::uint8_t* bytes, std::uint32_t size,
                            const wchar_t* failedCall) {
  Platform::UniqueSafeArray array;
  // Without bytes, the variant has its array type and a null array.
  if (size != 0) {
    const HRESULT created = CreateSafeArray(array.out(), bytes, size);
    if (FAILED(created)) return created;
  }
  Platform::ScopedVariant value;
  value.AdoptArray(VT_UI1, array.release());
  const HRESULT result = block->Put(member, 0, value.get(), /*type=*/0);
  if (FAILED(result)) Log().Warn("SetupInputDataBlock", failedCall, result);
  return result;
}

HRESULT ZQBiosWmi::PutNumber(IWbemClassObject* block, const wchar_t* member, LONG number,
                             const wchar_t* failedCall) {
  Platform::ScopedVariant value;
  value.SetInt32(number);
  const HRESULT result = block->Put(member, 0, value.get(), /*type=*/0);
  if (FAILED(result)) Log().Warn("SetupInputDataBlock", failedCall, result);
  return result;
}

HRESULT ZQBiosWmi::CreateSafeArray(SAFEARRAY** array, const std::uint8_t* bytes,
                                   std::uint32_t size) {
  Platform::UniqueSafeArray created(SafeArrayCreateVector(VT_UI1, 0, size));
  if (!created) {
    Log().Warn("CreateSafeArray", L"SafeArrayCreateVector()", E_FAIL);
    return E_FAIL;
  }
  for (std::uint32_t i = 0; i < size; ++i) {
    auto index = static_cast<LONG>(i);
    std::uint8_t byte = bytes[i];
    const HRESULT result = SafeArrayPutElement(created.get(), &index, &byte);
    if (FAILED(result)) {
      Log().Warn("CreateSafeArray", L"SafeArrayPutElement()", result);
      return result;
    }
  }
  *array = created.release();
  return S_OK;
}

}  // namespace Zq::Gantry::Server::Shared::WMI
