#pragma once

#include <string>

#include "wattleaf_export.h"

// WattleafHelper as other modules see it: the operations that the library exports, without the
// fields and the operations of its own. A new host uses the service (service/service_factory.h),
// whose commands call the same operations. Inside the library the class is that of
// collection/wattleaf_helper.h, which also says what each operation does; no source includes both.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// The one object that holds the library's state. It is only ever used through Instance().
class WattleafHelper {
 public:
  WattleafHelper() = delete;
  WattleafHelper(const WattleafHelper&) = delete;
  WattleafHelper& operator=(const WattleafHelper&) = delete;

  /// Made on first use; concurrent first calls make one object. The library destroys it.
  [[nodiscard]] WATTLEAF_API static WattleafHelper& Instance();

  /// What the worker does: a host that calls startup_task needs none of these.
  [[nodiscard]] WATTLEAF_API bool StartCollection();
  WATTLEAF_API void StopCollection();
  WATTLEAF_API void StartProcessing();

  /// Commands 7, 8 and 10.
  [[nodiscard]] WATTLEAF_API int IsPlatformSupported();
  [[nodiscard]] WATTLEAF_API bool IsDataChanged();
  [[nodiscard]] WATTLEAF_API bool IsDataAvailable();

  /// Commands 1 and 3.
  [[nodiscard]] WATTLEAF_API float GetDailyAveragePowerConsumption();
  [[nodiscard]] WATTLEAF_API float GetTreeSavedCount();

  /// Commands 4, 5, 6, 2 and 9. Without an answer, `result` stays as it was.
  WATTLEAF_API void GetDailyPowerConsumption(std::wstring& result);
  WATTLEAF_API void GetWeeklyPowerConsumption(std::wstring& result);
  WATTLEAF_API void GetMonthlyPowerConsumption(std::wstring& result);
  WATTLEAF_API void GetTop20PowerApps(std::wstring& request, std::wstring& result);
  WATTLEAF_API void GetErrorsAndWarnings(std::wstring& result);
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
