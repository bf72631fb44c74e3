#pragma once

#include <windows.h>

#include <wbemidl.h>

#include <cstdint>

#include "logging/trace_logger.h"
#include "platform/wmi/support_decision.h"
#include "platform/wmi/wmi_connection.h"

namespace Zq::Gantry::Server::Shared::WMI {

/// Results of PublicWmi::GetPropertyValue.
inline constexpr std::uint32_t kPropertyRead = 0;
inline constexpr std::uint32_t kNothingRead = 0x20000002;       ///< any other failure
inline constexpr std::uint32_t kPropertyNotFound = 0x2000000D;  ///< WBEM_E_NOT_FOUND
inline constexpr std::uint32_t kInvalidClass = 0x2000000F;      ///< WBEM_E_INVALID_CLASS
inline constexpr std::uint32_t kInvalidQuery = 0x20000010;      ///< WBEM_E_INVALID_QUERY
inline constexpr std::uint32_t kInvalidNamespace = 0x20000012;  ///< WBEM_E_INVALID_NAMESPACE

/// Reads the property OEMStringArray of Win32_ComputerSystem through WMI. Made for one read on one
/// thread; it keeps no connection. Each failed call logs one warning. If memory for a text runs
/// out, _com_error propagates.
class PublicWmi {
 public:
  /// Adds the property's value to `document`, which is an object, as its member "result". If there
  /// are several objects, it is the last one's value. Returns kPropertyRead or one of the failures
  /// above. If a later object fails, the result may be kPropertyRead without the member. Blocks
  /// until WMI answers. The calling thread is a member of COM meanwhile.
  [[nodiscard]] std::uint32_t GetPropertyValue(WideDocument& document);

  /// All objects of the class; null on failure. The caller owns the enumerator and must have joined
  /// COM. `status` is changed by some failures only.
  [[nodiscard]] IEnumWbemClassObject* EnumClassObject(std::uint32_t& status);

  /// Connects to ROOT\CIMV2; null on failure. The caller owns the service and must have joined COM.
  /// `status` is changed only if the namespace is invalid.
  [[nodiscard]] IWbemServices* ConnectToWmi(std::uint32_t& status);

  /// Appends the elements of an array of texts, 32-bit numbers or truth values to `target`. False
  /// for an empty array, for one of another shape, and if an element could not be read; the
  /// elements before that one stay in `target`. `source` stays the caller's.
  [[nodiscard]] bool GetSafeArrayData(VARIANT source, WideValue& target, WideDocument& document);

 private:
  [[nodiscard]] FailureLog Log() const { return {logger_, typeName_, L""}; }
  /// Reads the property of each object, and adds the last value to `document`.
  void ReadObjects(IEnumWbemClassObject* objects, WideDocument& document, std::uint32_t& status);
  /// Reads the property of one object into `held`. False if the call fails, which ends the read.
  [[nodiscard]] bool ReadProperty(IWbemClassObject* object, WideValue& held, WideDocument& document,
                                  std::uint32_t& status);
  /// Converts a value. False for a type that is not read, or an array that is empty or could not be
  /// read.
  [[nodiscard]] bool StoreValue(const VARIANT& source, WideValue& held, WideDocument& document);

  Logging::TraceLogger* logger_ = Logging::LogManager::GetLogger();
  // A fixed text, since type information spells the name differently with each toolchain.
  const char* typeName_ = "class Zq::Gantry::Server::Shared::WMI::PublicWmi";
};

}  // namespace Zq::Gantry::Server::Shared::WMI
