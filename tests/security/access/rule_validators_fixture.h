#pragma once

#include <gmock/gmock.h>

#include <map>
#include <string>

#include "security/access/fake_rules.h"
#include "security/access/rule_validators.h"
#include "security/trust/fake_path_calls.h"
#include "support/log_capture.h"
#include "support/runtime_text_ledger.h"

namespace TestSupport {

/// Calls the judges with fake nodes and values. After each test no object and no text may be left
/// and, unless the test clears `isQuiet`, no line may have been logged.
class RuleValidatorTest : public testing::Test {
 protected:
  template <typename Value>
  bool Judge(const wchar_t* kind, const std::wstring& rule, Value value) {
    return Zq::Gantry::Security::RuleValidators.at(kind)(MakeNode(calls, {rule, {}}),
                                                         Box(calls, value));
  }

  template <typename Value>
  bool InRange(const std::map<std::wstring, std::wstring>& attributes, Value value) {
    return Zq::Gantry::Security::RuleValidators.at(L"numeric_range")(
        MakeNode(calls, {L"", attributes}), Box(calls, value));
  }

  void TearDown() override {
    EXPECT_EQ(Standin::Packages::LiveObjects(), 0);
    if (isQuiet) {
      EXPECT_THAT(log.Records(), testing::IsEmpty());
    }
  }

  const RuntimeTextLedger texts;
  LogCapture log;
  FakeRpcQuery noClient;
  RuleCalls calls;
  bool isQuiet = true;
};

}  // namespace TestSupport
