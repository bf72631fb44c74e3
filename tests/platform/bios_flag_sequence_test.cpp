#include "platform/wmi/support_decision.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Zq::Gantry::Server::Shared::WMI;

namespace {

struct Sent {
  int command;
  std::vector<std::uint8_t> input;
  std::size_t outputBytes;
};

/// The answer to one command. `first` is its first byte; -1 writes nothing.
struct Answer {
  bool success = true;
  int first = -1;
};

class FakeBios {
 public:
  explicit FakeBios(std::vector<Answer> answers) : answers_(std::move(answers)) {}

  bool ReadFlag() {
    return ReadPlatformFlag([this](const BiosCommand& command) {
      const Answer answer = answers_.at(sent.size());
      sent.push_back(
          {command.command, {command.input.begin(), command.input.end()}, command.output.size()});
      if (answer.first >= 0) command.output[0] = static_cast<std::uint8_t>(answer.first);
      return answer.success;
    });
  }

  std::vector<Sent> sent;

 private:
  std::vector<Answer> answers_;
};

}  // namespace

TEST(ReadPlatformFlag, SendsWriteReadBackAndFlagReadInOrder) {
  FakeBios bios({{}, {true, 7}, {true, 1}});
  EXPECT_TRUE(bios.ReadFlag());
  ASSERT_EQ(bios.sent.size(), 3U);

  std::vector<std::uint8_t> written(130, 0);
  written[0] = 0x0A;
  written[1] = 0x01;
  written[2] = 0x07;
  EXPECT_EQ(bios.sent[0].command, 2);
  EXPECT_EQ(bios.sent[0].input, written);
  EXPECT_EQ(bios.sent[0].outputBytes, 0U);
  EXPECT_EQ(bios.sent[1].command, 1);
  EXPECT_EQ(bios.sent[1].input, (std::vector<std::uint8_t>{0x0A, 0x01}));
  EXPECT_EQ(bios.sent[1].outputBytes, 128U);
  EXPECT_EQ(bios.sent[2].command, 1);
  EXPECT_EQ(bios.sent[2].input, (std::vector<std::uint8_t>{0x0B, 0x01}));
  EXPECT_EQ(bios.sent[2].outputBytes, 128U);
}

TEST(ReadPlatformFlag, EndsAfterAFailedWrite) {
  FakeBios bios({Answer{false}});
  EXPECT_FALSE(bios.ReadFlag());
  EXPECT_EQ(bios.sent.size(), 1U);
}

TEST(ReadPlatformFlag, EndsBeforeTheFlagWhenTheReadBackIsSix) {
  FakeBios bios({{}, {true, 6}});
  EXPECT_FALSE(bios.ReadFlag());
  EXPECT_EQ(bios.sent.size(), 2U);
}

TEST(ReadPlatformFlag, EndsAfterAFailedReadBackThatLeftASeven) {
  FakeBios bios({{}, {false, 7}});
  EXPECT_FALSE(bios.ReadFlag());
  EXPECT_EQ(bios.sent.size(), 2U);
}

TEST(ReadPlatformFlag, TreatsAReadBackThatWritesNothingAsZero) {
  FakeBios bios({{}, {true}});
  EXPECT_FALSE(bios.ReadFlag());
  EXPECT_EQ(bios.sent.size(), 2U);
}

TEST(ReadPlatformFlag, UsesOnlyTheLowestBitOfTheFlag) {
  for (const int first : {1, 3, 0x81, 0xFF}) {
    EXPECT_TRUE(FakeBios({{}, {true, 7}, {true, first}}).ReadFlag()) << first;
  }
  for (const int first : {0, 2, 0x80, 0xFE}) {
    EXPECT_FALSE(FakeBios({{}, {true, 7}, {true, first}}).ReadFlag()) << first;
  }
}

TEST(ReadPlatformFlag, IsFalseWhenTheFlagReadFails) {
  EXPECT_FALSE(FakeBios({{}, {true, 7}, {false, 1}}).ReadFlag());
}

TEST(ReadPlatformFlag, UsesTheReadBackWhenTheFlagReadWritesNothing) {
  EXPECT_TRUE(FakeBios({{}, {true, 7}, {true}}).ReadFlag());
}
