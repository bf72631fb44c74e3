#pragma once

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <cstdint>
#include <string>

#include "host/notebook/notebook.h"
#include "host/notebook/notebook_days.h"
#include "support/scoped_variable.h"

namespace TestSupport {

/// Runs a pass with a seed under which the last two days have energy; its answers as JSON.
inline rapidjson::Document AnswersAfterAPass() {
  const NotebookDays days;
  const auto seed = days.SeedWhere(
      [&days](std::uint64_t one) { return days.HasEnergy(one, 1) && days.HasEnergy(one, 2); });
  const ScopedVariable chosen(L"WATTLEAF_COLLECTOR_SEED", std::to_wstring(seed));
  rapidjson::Document answers;
  const NotebookRun run = RunOnNotebook({L"serve-once", L"--json"});
  EXPECT_FALSE(answers.Parse(run.host.output.c_str()).HasParseError()) << run.host.output;
  return answers;
}

/// The text of a command's answer.
[[nodiscard]] inline std::string AnswerText(const rapidjson::Document& answers,
                                            unsigned int command) {
  return answers["commands"][command - 1]["text"].GetString();
}

}  // namespace TestSupport
