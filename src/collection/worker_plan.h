#pragma once

#include <chrono>

namespace Zq::Gantry::Server::Services::Wattleaf {

inline constexpr std::chrono::milliseconds kStartDelay{90'000};
/// Counts from the end of a pass to the start of the next.
inline constexpr std::chrono::milliseconds kPassInterval{86'400'000};

/// What the worker does, one function for each step.
class WorkerSteps {
 public:
  virtual ~WorkerSteps() = default;

  virtual void Wait(std::chrono::milliseconds length) = 0;
  virtual bool StartCollector() = 0;
  virtual void LoadDesktopCatalogue() = 0;
  virtual void LoadPackagedCatalogue() = 0;
  virtual bool MayGoOn() = 0;
  virtual void UpdateLedger() = 0;
  virtual void UpdateRanking() = 0;
  virtual void MarkDataAvailable() = 0;
};

/// The worker's life: delay, collector, catalogues, then a pass each interval for as long as it may
/// go on. Ends at once where the collector does not start.
void RunWorker(WorkerSteps& steps);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
