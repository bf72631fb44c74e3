#pragma once

#include "collection/wattleaf_helper.h"

namespace TestSupport {

/// A helper with public access to its state and its protected operations.
class OpenHelper : public Zq::Gantry::Server::Services::Wattleaf::WattleafHelper {
 public:
  using WattleafHelper::CalculateDailyPowerConsumption;
  using WattleafHelper::ConvertPowerLogXmltoJson;
  using WattleafHelper::GetDevicePath;
  using WattleafHelper::LoadInstalledUWPApps;
  using WattleafHelper::LoadInstalledWin32Apps;
  using WattleafHelper::MyNativeCallback;
  using WattleafHelper::OnGetErrorAndWarnings;
  using WattleafHelper::OnGetTop20PowerApps;
  using WattleafHelper::ParseManifest;
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

/// A field of the singleton, which all tests of a program share.
template <typename Field>
[[nodiscard]] Field& OfSingleton(
    Field Zq::Gantry::Server::Services::Wattleaf::WattleafHelper::*field) {
  return Zq::Gantry::Server::Services::Wattleaf::WattleafHelper::Instance().*field;
}

}  // namespace TestSupport
