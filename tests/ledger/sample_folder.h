#pragma once

#include <string>

#include "base/date_time_text.h"
#include "support/temp_folder.h"

namespace TestSupport {

/// An empty data folder, and the paths of the sample files of one day in it.
struct SampleFolder {
  const TempFolder folder{};
  const Zq::Gantry::Server::Services::Wattleaf::DateTime day = LocalTime(2024, 3, 1);
  const std::wstring encrypted = folder.File(L"PcmSampleData_2024-03-01.json");
  const std::wstring plain = folder.File(L"unencrypt-PcmSampleData_2024-03-01.json");
};

}  // namespace TestSupport
