#pragma once

#include <gtest/gtest.h>

#include <string>

#include "collection/open_helper.h"
#include "service/wattleaf_service.h"
#include "support/temp_folder.h"

namespace TestSupport {

/// The status and the text of a command; the text is empty without a result.
struct CommandAnswer {
  int status = 0;
  std::wstring text;
};

/// Runs a command with an empty input.
[[nodiscard]] inline CommandAnswer Execute(unsigned int command) {
  Zq::Gantry::Server::Services::Wattleaf::WattleafService service;
  std::wstring input;
  wchar_t* output = nullptr;
  const int status = service.ExecuteCommand(nullptr, command, input.data(), &output, {}, nullptr);
  CommandAnswer answer{status, output != nullptr ? output : L""};
  service.FreeResult(output);
  return answer;
}

/// Starts each test with the singleton as it is after construction, on an empty data folder.
class ExecuteCommandFixture : public testing::Test {
 protected:
  ExecuteCommandFixture() {
    OfSingleton(&OpenHelper::PlatformSupportState) = -2;
    OfSingleton(&OpenHelper::dataAvailable) = false;
    OfSingleton(&OpenHelper::dataChanged) = true;
    OfSingleton(&OpenHelper::dailyLedger).clear();
    OfSingleton(&OpenHelper::errorsAndWarningsJson).clear();
    OfSingleton(&OpenHelper::collectionPath) = folder.Path().c_str();
  }

  const TempFolder folder;
};

}  // namespace TestSupport
