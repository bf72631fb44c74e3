#pragma once

#include <windows.h>

#include <wbemidl.h>

#include <cstdint>

#include "logging/trace_logger.h"
#include "platform/win32/com_owners.h"
#include "platform/wmi/failure_log.h"

namespace Zq::Gantry::Server::Shared::WMI {

/// Sends commands to the BIOS through the firmware's WMI classes, over one connection that lasts
/// as long as the object. For one thread: the connection is a membership of that thread in the
/// multithreaded COM apartment. Each failed call logs one warning. Where a text for WMI cannot be
/// allocated, _com_error passes through.
class ZQBiosWmi {
 public:
  ZQBiosWmi() = default;
  ZQBiosWmi(const ZQBiosWmi&) = delete;
  ZQBiosWmi& operator=(const ZQBiosWmi&) = delete;
  ~ZQBiosWmi() { CloseBiosConnection(); }

  /// Connects first where that has not succeeded yet; E_FAIL where it does not. `output` holds
  /// `outputSize` bytes and keeps its content where the answer has another size, which is logged
  /// and is no failure. `returnCode` receives the firmware's own code, which nobody judges.
  [[nodiscard]] HRESULT ExecuteCommand(std::int32_t command, std::uint32_t inputSize,
                                       const std::uint8_t* input, std::uint32_t outputSize,
                                       std::uint8_t* output, std::uint32_t* returnCode);

  /// 1 when connected.
  [[nodiscard]] int GetReady();

  /// Makes an instance of the method's input signature that holds the command; the caller owns it.
  [[nodiscard]] HRESULT SetupInputDataBlock(std::int32_t command, std::uint32_t inputSize,
                                            const std::uint8_t* input,
                                            IWbemClassObject* methodSignature,
                                            IWbemClassObject** instance);

  /// The object that gets the calls. Where there is none, or none in time, that is logged and no
  /// failure, and `path` stays empty.
  [[nodiscard]] HRESULT GetBiosMethodObjectPath(VARIANT* path);

  [[nodiscard]] HRESULT GetOutputData(IWbemClassObject* methodResult, std::uint32_t outputSize,
                                      std::uint8_t* output, std::uint32_t* returnCode);

  /// An array of bytes; the caller owns it.
  [[nodiscard]] HRESULT CreateSafeArray(SAFEARRAY** array, const std::uint8_t* bytes,
                                        std::uint32_t size);

  void CloseBiosConnection();

 private:
  FailureLog Log() const { return {logger_, typeName_, L"WattleafService"}; }
  HRESULT FetchClass(const wchar_t* name, const char* function,
                     Platform::UniqueInterface<IWbemClassObject>& definition);
  HRESULT PrepareInput(const wchar_t* methodName, std::int32_t command, std::uint32_t inputSize,
                       const std::uint8_t* input,
                       Platform::UniqueInterface<IWbemClassObject>& instance);
  HRESULT CallMethod(const VARIANT& path, BSTR methodName, IWbemClassObject* input,
                     Platform::UniqueInterface<IWbemClassObject>& methodResult);
  HRESULT SpawnDataBlock(Platform::UniqueInterface<IWbemClassObject>& block);
  HRESULT FillDataBlock(IWbemClassObject* block, std::int32_t command, std::uint32_t inputSize,
                        const std::uint8_t* input);
  HRESULT PutBytes(IWbemClassObject* block, const wchar_t* member, const std::uint8_t* bytes,
                   std::uint32_t size, const wchar_t* failedCall);
  HRESULT PutNumber(IWbemClassObject* block, const wchar_t* member, LONG number,
                    const wchar_t* failedCall);
  HRESULT OpenOutputBlock(IWbemClassObject* methodResult,
                          Platform::UniqueInterface<IWbemClassObject>& block);
  HRESULT ReadReturnCode(IWbemClassObject* block, std::uint32_t* returnCode);
  HRESULT ReadOutputBytes(IWbemClassObject* block, std::uint32_t outputSize, std::uint8_t* output);
  void CopyOutputBytes(const VARIANT& data, std::uint32_t outputSize, std::uint8_t* output);

  Logging::TraceLogger* logger_ = Logging::LogManager::GetLogger();
  // A fixed text, since type information spells the name differently with each toolchain.
  const char* typeName_ = "class Zq::Gantry::Server::Shared::WMI::ZQBiosWmi";
  std::int32_t ready_ = 0;
  Platform::UniqueInterface<IWbemServices> service_;
};

}  // namespace Zq::Gantry::Server::Shared::WMI
