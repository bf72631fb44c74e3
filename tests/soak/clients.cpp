#include "clients.h"

#include <windows.h>

#include <array>

#include "base/utf8_text.h"
#include "serve/unique_result.h"
#include "service/command_table.h"

namespace Soak {

namespace {

using Zq::Gantry::Server::Services::Wattleaf::Command;
using Zq::Gantry::Server::Services::Wattleaf::kLastCommand;
using Zq::Gantry::Server::Services::Wattleaf::NumberOf;
using Zq::Gantry::Server::Services::Wattleaf::ToUtf8;

/// Of so many commands one is the ranking, which writes dozens of icons, and a few decrypt.
constexpr unsigned int kLot = 40;
constexpr unsigned int kOfLastHours = 4;
constexpr std::array kQuick = {
    Command::kDailyAverage,      Command::kTreesSaved,      Command::kLastDays,
    Command::kLastMonths,        Command::kPlatformSupport, Command::kDataChanged,
    Command::kErrorsAndWarnings, Command::kDataAvailable,
};

unsigned int Draw(std::mt19937& random) {
  const unsigned int lot = random() % kLot;
  if (lot == 0) return NumberOf(Command::kTopApplications);
  if (lot <= kOfLastHours) return NumberOf(Command::kLastHours);
  return NumberOf(kQuick[random() % kQuick.size()]);
}

void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
  for (auto at = text.find(from); at != text.npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
}

}  // namespace

Clients::Clients(Service& service, std::uint32_t seed) : service_(service) {
  for (int i = 0; i < kThreads; ++i) {
    threads_.emplace_back([this, i, seed] { Run(i, seed + static_cast<std::uint32_t>(i)); });
  }
}

Clients::~Clients() {
  {
    const std::lock_guard guard(lock_);
    isEnding_ = true;
  }
  changed_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

void Clients::Begin(int commands) { BeginTurn(commands, /*all=*/false); }

void Clients::BeginAllCommands() { BeginTurn(static_cast<int>(kLastCommand), /*all=*/true); }

void Clients::BeginTurn(int commands, bool all) {
  {
    const std::lock_guard guard(lock_);
    ++turn_;
    commands_ = commands;
    isAll_ = all;
    running_ = kThreads;
  }
  changed_.notify_all();
}

Clients::Answers Clients::End() {
  std::unique_lock guard(lock_);
  changed_.wait(guard, [this] { return running_ == 0; });
  return std::exchange(answers_, {});
}

void Clients::Run(int thread, std::uint32_t seed) {
  std::mt19937 random(seed);
  for (int done = 0;; ++done) {
    int commands = 0;
    bool isAll = false;
    {
      std::unique_lock guard(lock_);
      changed_.wait(guard, [this, done] { return isEnding_ || turn_ > done; });
      if (isEnding_) return;
      commands = commands_;
      isAll = isAll_;
    }
    for (int i = 1; i <= commands; ++i) {
      RunCommand(thread, isAll ? static_cast<unsigned int>(i) : Draw(random));
    }
    {
      const std::lock_guard guard(lock_);
      --running_;
    }
    changed_.notify_all();
  }
}

void Clients::RunCommand(int thread, unsigned int command) {
  // A folder for each thread: two threads must not write the same icon at once.
  const std::wstring folder = kIconFolder + (L"-" + std::to_wstring(thread));
  std::wstring request = folder + L"?30";
  wchar_t* output = nullptr;
  const int status = service_.ExecuteCommand(/*session=*/nullptr, command, request.data(), &output,
                                             /*callback=*/{}, /*configuration=*/nullptr);
  const WattleafHost::UniqueResult result(output, WattleafHost::FreeResult{&service_});
  std::string text = output != nullptr ? ToUtf8(output) : "status " + std::to_string(status);
  if (command == NumberOf(Command::kTopApplications)) {
    ReplaceAll(text, "soak-" + std::to_string(thread) + "\\\\", "soak\\\\");
  }
  const std::lock_guard guard(lock_);
  ++answers_[{command, std::move(text)}];
}

}  // namespace Soak
