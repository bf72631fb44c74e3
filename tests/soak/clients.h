#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "service/zq_service.h"

namespace Soak {

/// Threads of clients that run the ten commands in seeded order, in turns that begin and end
/// together. They live as long as the object, so that only the service makes or frees something
/// between two turns.
class Clients {
 public:
  static constexpr int kThreads = 16;
  /// The folder for icons in the answers, in place of each thread's own.
  static constexpr wchar_t kIconFolder[] = L"C:\\users\\Public\\Wattleaf soak";

  using Service = Zq::Gantry::Server::Services::ZQService;

  Clients(Service& service, std::uint32_t seed);
  Clients(const Clients&) = delete;
  Clients& operator=(const Clients&) = delete;
  ~Clients();

  /// Begins a turn in which each thread runs so many commands.
  void Begin(int commands);
  /// Begins a turn in which each thread runs each command once, all the same one at about the same
  /// time: this takes as much memory as the clients ever need.
  void BeginAllCommands();
  /// Waits for the end of the turn. Returns the distinct answers of each command with their number.
  /// An answer without a text is the status.
  using Answers = std::map<std::pair<unsigned int, std::string>, int>;
  [[nodiscard]] Answers End();

 private:
  void Run(int thread, std::uint32_t seed);
  void BeginTurn(int commands, bool all);
  void RunCommand(int thread, unsigned int command);

  Service& service_;
  std::mutex lock_;
  std::condition_variable changed_;
  int turn_ = 0;
  int commands_ = 0;
  bool isAll_ = false;
  int running_ = 0;
  bool isEnding_ = false;
  Answers answers_;
  std::vector<std::thread> threads_;
};

}  // namespace Soak
