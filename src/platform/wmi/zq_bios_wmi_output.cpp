#include "platform/wmi/zq_bios_wmi.h"

#include "platform/wmi/bios_wmi_names.h"

namespace Zq::Gantry::Server::Shared::WMI {

namespace {

using Platform::UniqueInterface;

constexpr char kFunction[] = "GetOutputData";

}  // namespace

HRESULT ZQBiosWmi::GetOutputData(IWbemClassObject* methodResult, std::uint32_t outputSize,
                                 std::uint8_t* output, std::uint32_t* returnCode) {
  UniqueInterface<IWbemClassObject> block;
  HRESULT result = OpenOutputBlock(methodResult, block);
  if (FAILED(result)) return result;
  result = ReadReturnCode(block.get(), returnCode);
  if (FAILED(result) || outputSize == 0) return result;
  return ReadOutputBytes(block.get(), outputSize, output);
}

HRESULT ZQBiosWmi::OpenOutputBlock(IWbemClassObject* methodResult,
                                   UniqueInterface<IWbemClassObject>& block) {
  Platform::ScopedVariant embedded;
  HRESULT result = methodResult->Get(kOutputParameter, 0, embedded.get(), nullptr, nullptr);
  result = RequireObject(result, embedded->vt == VT_UNKNOWN ? embedded->punkVal : nullptr);
  if (FAILED(result)) {
    Log().Warn(kFunction, L"OutputDataBlockInstance->Get(OutputDataBlock)", result);
    return result;
  }

  result = embedded->punkVal->QueryInterface(IID_IWbemClassObject,
                                             reinterpret_cast<void**>(block.out()));
  result = RequireObject(result, block.get());
  if (FAILED(result)) {
    Log().Warn(kFunction, L"OutputDataBlock->QueryInterface(OutputDataObject)", result);
  }
  return result;
}

HRESULT ZQBiosWmi::ReadReturnCode(IWbemClassObject* block, std::uint32_t* returnCode) {
  Platform::ScopedVariant code;
  const HRESULT result = block->Get(kReturnCodeMember, 0, code.get(), nullptr, nullptr);
  if (FAILED(result)) {
    Log().Warn(kFunction, L"OutputDataObject->Get(ReturnCode)", result);
    return result;
  }
  *returnCode = code->vt == VT_I4 ? static_cast<std::uint32_t>(code->lVal) : 0;
  return result;
}

HRESULT ZQBiosWmi::ReadOutputBytes(IWbemClassObject* block, std::uint32_t outputSize,
                                   std::uint8_t* output) {
  Platform::UniqueSafeArray prepared(SafeArrayCreateVector(VT_UI1, 0, outputSize));
  if (!prepared) {
    Log().Warn(kFunction, L"SafeArrayCreateVector(OutputDataSize)", E_FAIL);
    return E_FAIL;
  }

  Platform::ScopedVariant data;
  data.AdoptArray(VT_UI1, prepared.get());
  const HRESULT result = block->Get(kDataMember, 0, data.get(), nullptr, nullptr);
  // Get overwrites the variant without clearing it. If our array is still there, the variant
  // releases it.
  const bool isPrepared = (data->vt & VT_ARRAY) != 0 && data->parray == prepared.get();
  if (isPrepared) static_cast<void>(prepared.release());
  if (FAILED(result)) {
    Log().Warn(kFunction, L"OutputDataObject->Get(outputData)", result);
    return result;
  }
  CopyOutputBytes(*data, outputSize, output);
  return result;
}

/// Kept on purpose: an answer of another shape or size is logged and not a failure (tests
/// ZQBiosWmiOutput.LogsAShortAnswerAndWritesNothing, ZQBiosWmiOutput.RejectsATwoDimensionalArray).
void ZQBiosWmi::CopyOutputBytes(const VARIANT& data, std::uint32_t outputSize,
                                std::uint8_t* output) {
  const FailureLog log = Log();
  if (data.vt != (VT_ARRAY | VT_UI1) || !Platform::IsVectorOf(data.parray, VT_UI1, 1)) {
    log.logger->LogWarning(
        Logging::LoggingData{L"%S.%S - return data is invalid", log.component, nullptr},
        log.typeName, kFunction);
    return;
  }

  const SAFEARRAYBOUND bound = data.parray->rgsabound[0];
  if (bound.cElements != outputSize) {
    log.logger->LogWarning(
        Logging::LoggingData{
            L"%S.%S - invalid return data size. requested %d byte, but retuned %d byte",
            log.component, nullptr},
        log.typeName, kFunction, static_cast<int>(outputSize), static_cast<int>(bound.cElements));
    return;
  }
  if (bound.lLbound < 0) return;
  // Kept on purpose: the count is the end of the indexes, even with a lower bound above 0 (test
  // ZQBiosWmiOutput.CopiesFromTheLowerBoundUpToTheCount).
  for (LONG i = bound.lLbound; i < static_cast<LONG>(bound.cElements); ++i) {
    static_cast<void>(SafeArrayGetElement(data.parray, &i, &output[i]));
  }
}

}  // namespace Zq::Gantry::Server::Shared::WMI
