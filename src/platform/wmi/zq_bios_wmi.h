#pragma once

#include <windows.h>

#include <wbemidl.h>

#include <cstdint>
#include <optional>

#include "logging/trace_logger.h"
#include "platform/win32/com_owners.h"
#include "platform/wmi/wmi_connection.h"

namespace Zq::Gantry::Server::Shared::WMI {

/// Sends commands to the BIOS through the firmware's WMI classes (bios_wmi_names.h), over one
/// connection that lasts from the first command to CloseBiosConnection or the end of the object.
///
/// For one thread: the connection includes a membership of that thread in the multithreaded COM
/// apartment. Each failed call logs one warning, named after the operation that made it, and its
/// HRESULT is returned. If memory for a text runs out, _com_error propagates.
class ZQBiosWmi {
 public:
  ZQBiosWmi() = default;
  ZQBiosWmi(const ZQBiosWmi&) = delete;
  ZQBiosWmi& operator=(const ZQBiosWmi&) = delete;
  ~ZQBiosWmi() { CloseBiosConnection(); }

  /// Sends one command, after connecting if necessary; E_FAIL if that fails. Blocks until the
  /// firmware answers. `command` is 1 to read or 2 to write. `output` has room for `outputSize`
  /// bytes, which select the firmware's method; it keeps its content if the answer has another
  /// size, which is logged and not a failure. `returnCode` receives the firmware's own code, which
  /// is not judged here.
  [[nodiscard]] HRESULT ExecuteCommand(std::int32_t command, std::uint32_t inputSize,
                                       const std::uint8_t* input, std::uint32_t outputSize,
                                       std::uint8_t* output, std::uint32_t* returnCode);

  /// Connects if there is no connection yet. 1: connected; 0: a step failed. Kept on purpose: if
  /// the WMI locator cannot be made, the thread stays a member of the apartment.
  [[nodiscard]] int GetReady();

  /// Makes an instance of the method's input signature that holds the command. The caller owns
  /// `*instance`, which is written after success only.
  [[nodiscard]] HRESULT SetupInputDataBlock(std::int32_t command, std::uint32_t inputSize,
                                            const std::uint8_t* input,
                                            IWbemClassObject* methodSignature,
                                            IWbemClassObject** instance);

  /// The path of the firmware's one instance, as VT_BSTR. If there is no instance, or not within 2
  /// seconds, that is logged and not a failure, and `path` stays empty.
  [[nodiscard]] HRESULT GetBiosMethodObjectPath(VARIANT* path);

  /// Reads the method's result, under the rules of ExecuteCommand for `output` and `returnCode`.
  [[nodiscard]] HRESULT GetOutputData(IWbemClassObject* methodResult, std::uint32_t outputSize,
                                      std::uint8_t* output, std::uint32_t* returnCode);

  /// A copy of `bytes` as a safe array of VT_UI1. The caller owns `*array`, which is written after
  /// success only.
  [[nodiscard]] HRESULT CreateSafeArray(SAFEARRAY** array, const std::uint8_t* bytes,
                                        std::uint32_t size);

  /// Releases the connection and leaves COM. Does nothing without a connection.
  void CloseBiosConnection();

 private:
  [[nodiscard]] FailureLog Log() const { return {logger_, typeName_, L"WattleafService"}; }
  /// The definition of a class (IWbemServices::GetObject).
  [[nodiscard]] HRESULT FetchClass(const wchar_t* name, const char* function,
                                   Platform::UniqueInterface<IWbemClassObject>& definition);
  /// SetupInputDataBlock for the signature of the method with this name.
  [[nodiscard]] HRESULT PrepareInput(const wchar_t* methodName, std::int32_t command,
                                     std::uint32_t inputSize, const std::uint8_t* input,
                                     Platform::UniqueInterface<IWbemClassObject>& instance);
  /// Calls the method of the instance at `path`, which may be empty (IWbemServices::ExecMethod).
  [[nodiscard]] HRESULT CallMethod(const VARIANT& path, BSTR methodName, IWbemClassObject* input,
                                   Platform::UniqueInterface<IWbemClassObject>& methodResult);
  /// A new, empty instance of the input data block.
  [[nodiscard]] HRESULT SpawnDataBlock(Platform::UniqueInterface<IWbemClassObject>& block);
  /// Writes all members of the block.
  [[nodiscard]] HRESULT FillDataBlock(IWbemClassObject* block, std::int32_t command,
                                      std::uint32_t inputSize, const std::uint8_t* input);
  // Write one member; `failedCall` is the name of the call in the warning.
  [[nodiscard]] HRESULT PutBytes(IWbemClassObject* block, const wchar_t* member,
                                 const std::uint8_t* bytes, std::uint32_t size,
                                 const wchar_t* failedCall);
  [[nodiscard]] HRESULT PutNumber(IWbemClassObject* block, const wchar_t* member, LONG number,
                                  const wchar_t* failedCall);
  /// The output data block in the method's result.
  [[nodiscard]] HRESULT OpenOutputBlock(IWbemClassObject* methodResult,
                                        Platform::UniqueInterface<IWbemClassObject>& block);
  /// The firmware's own code; 0 if the member has another type than VT_I4.
  [[nodiscard]] HRESULT ReadReturnCode(IWbemClassObject* block, std::uint32_t* returnCode);
  /// The answer's bytes, under the rules of ExecuteCommand.
  [[nodiscard]] HRESULT ReadOutputBytes(IWbemClassObject* block, std::uint32_t outputSize,
                                        std::uint8_t* output);
  void CopyOutputBytes(const VARIANT& data, std::uint32_t outputSize, std::uint8_t* output);

  Logging::TraceLogger* logger_ = Logging::LogManager::GetLogger();
  // A fixed text, since type information spells the name differently with each toolchain.
  const char* typeName_ = "class Zq::Gantry::Server::Shared::WMI::ZQBiosWmi";
  std::int32_t ready_ = 0;  ///< 1 while there is a connection
  Platform::UniqueInterface<IWbemServices> service_;
  std::optional<Platform::ComMembership> membership_;  ///< of the connection
};

}  // namespace Zq::Gantry::Server::Shared::WMI
