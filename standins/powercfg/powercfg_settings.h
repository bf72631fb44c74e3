#pragma once

// Stand-in: what the environment tells POWERCFG.

#include <cstdint>
#include <string>

namespace Standin {

enum class ToolOutput { kReport, kNothing, kBroken };

struct PowercfgSettings {
  std::uint64_t seed;      // WATTLEAF_POWERCFG_SEED; even ones give UTF-16, odd ones UTF-8
  int days;                // WATTLEAF_POWERCFG_DAYS
  std::int64_t now;        // WATTLEAF_POWERCFG_NOW in seconds since 1970; the clock where unset
  int status;              // WATTLEAF_POWERCFG_STATUS: to fail with before anything is written
  ToolOutput output;       // WATTLEAF_POWERCFG_OUTPUT: "report", "nothing" (a success), "broken"
  std::string only;        // WATTLEAF_POWERCFG_ONLY; see ReportSettings
  std::wstring truthPath;  // WATTLEAF_POWERCFG_TRUTH: gets a copy of the last report; none if empty
};

PowercfgSettings ReadPowercfgSettings();

}  // namespace Standin
