#pragma once

#include "collection/wattleaf_helper.h"

namespace TestSupport {

/// A helper of the test's own, with its state and its protected operations in reach.
class OpenHelper : public Zq::Gantry::Server::Services::Wattleaf::WattleafHelper {
 public:
  using WattleafHelper::CalculateDailyPowerConsumption;
  using WattleafHelper::ConvertPowerLogXmltoJson;
  using WattleafHelper::MyNativeCallback;
  using WattleafHelper::OnGetErrorAndWarnings;
  using WattleafHelper::OnGetTop20PowerApps;
  using WattleafHelper::ProcessingCallback;

  using WattleafHelper::collectionPath;
  using WattleafHelper::collectionStarted;
  using WattleafHelper::collector;
  using WattleafHelper::collectorFileName;
  using WattleafHelper::collectorModule;
  using WattleafHelper::dailyLedger;
  using WattleafHelper::dataAvailable;
  using WattleafHelper::dataChanged;
  using WattleafHelper::dataMutex;
  using WattleafHelper::errorsAndWarningsJson;
  using WattleafHelper::hostDirectory;
  using WattleafHelper::PlatformSupportState;
  using WattleafHelper::running;
  using WattleafHelper::storeMutex;
  using WattleafHelper::uwpApps;
  using WattleafHelper::win32Apps;
  using WattleafHelper::worker;
};

}  // namespace TestSupport
