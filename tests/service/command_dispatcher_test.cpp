#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "service/command_table.h"
#include "service/wattleaf_service.h"

using namespace Zq::Gantry::Server::Services;
using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

struct Answer {
  int status = 0;
  std::wstring text;
};

Answer Ask(unsigned int command) {
  WattleafService service;
  std::wstring input;
  wchar_t* output = nullptr;
  const int status = service.ExecuteCommand(nullptr, command, input.data(), &output, {}, nullptr);
  Answer answer{status, output != nullptr ? output : L""};
  service.FreeResult(output);
  return answer;
}

}  // namespace

TEST(CommandDispatcher, Command8AnswersTrueRightAfterCreation) {
  const Answer answer = Ask(8);
  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(answer.text, L"true");
}

TEST(CommandDispatcher, Command10AnswersFalseBeforeCollectionHasStarted) {
  const Answer answer = Ask(10);
  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(answer.text, L"false");
}

TEST(CommandDispatcher, NumbersOutsideOneToTenAreUnknown) {
  EXPECT_EQ(Ask(0).status, 0x20000001);
  EXPECT_EQ(Ask(11).status, 0x20000001);
}
