#pragma once

#include <windows.h>

#include <wbemidl.h>

#include <cstdint>

#include "logging/trace_logger.h"
#include "platform/wmi/failure_log.h"
#include "platform/wmi/wide_document.h"

namespace Zq::Gantry::Server::Shared::WMI {

/// Results of PublicWmi::GetPropertyValue.
inline constexpr std::uint32_t kPropertyRead = 0;
inline constexpr std::uint32_t kNothingRead = 0x20000002;
inline constexpr std::uint32_t kPropertyNotFound = 0x2000000D;
inline constexpr std::uint32_t kInvalidClass = 0x2000000F;
inline constexpr std::uint32_t kInvalidQuery = 0x20000010;
inline constexpr std::uint32_t kInvalidNamespace = 0x20000012;

/// Reads the property OEMStringArray of Win32_ComputerSystem through WMI. A plain value, made for
/// one read on one thread; it keeps no connection. Each failed call logs one warning. Where a text
/// for WMI cannot be allocated, _com_error passes through.
class PublicWmi {
 public:
  /// Adds the property's value to `document`, which is an object, as its member "result"; with
  /// several objects the last one's value. Blocks for as long as WMI takes.
  [[nodiscard]] std::uint32_t GetPropertyValue(WideDocument& document);

  /// All objects of the class; null on failure. The caller owns the enumerator.
  [[nodiscard]] IEnumWbemClassObject* EnumClassObject(std::uint32_t& status);

  /// Null on failure. The caller owns the service and has joined COM before.
  [[nodiscard]] IWbemServices* ConnectToWmi(std::uint32_t& status);

  /// Appends the elements of an array of texts, 32-bit numbers or truth values to `target`. False
  /// for an empty array, one of another shape, and where an element could not be read; elements
  /// before that one stay in `target`. `source` stays the caller's.
  [[nodiscard]] bool GetSafeArrayData(VARIANT source, WideValue& target, WideDocument& document);

 private:
  FailureLog Log() const { return {logger_, typeName_, L""}; }
  void ReadObjects(IEnumWbemClassObject* objects, WideDocument& document, std::uint32_t& status);
  bool ReadProperty(IWbemClassObject* object, WideValue& held, WideDocument& document,
                    std::uint32_t& status);
  bool StoreValue(const VARIANT& source, WideValue& held, WideDocument& document);

  Logging::TraceLogger* logger_ = Logging::LogManager::GetLogger();
  // A fixed text, since type information spells the name differently with each toolchain.
  const char* typeName_ = "class Zq::Gantry::Server::Shared::WMI::PublicWmi";
};

}  // namespace Zq::Gantry::Server::Shared::WMI
