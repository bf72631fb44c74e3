#pragma once

#include <chrono>

// The order of the worker's steps and the pauses between them. WattleafHelper implements the steps.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// From the start of the thread to the first step.
inline constexpr std::chrono::milliseconds kStartDelay{90'000};
/// From the end of a pass to the start of the next.
inline constexpr std::chrono::milliseconds kPassInterval{86'400'000};

/// The worker's steps. All are called on the worker's thread; their exceptions propagate.
class WorkerSteps {
 public:
  virtual ~WorkerSteps() = default;

  virtual void Wait(std::chrono::milliseconds length) = 0;
  /// True if the collector runs.
  virtual bool StartCollector() = 0;
  virtual void LoadDesktopCatalogue() = 0;
  virtual void LoadPackagedCatalogue() = 0;
  /// Called before each pass; false ends the worker.
  virtual bool MayContinue() = 0;
  virtual void UpdateLedger() = 0;
  virtual void UpdateRanking() = 0;
  virtual void MarkDataAvailable() = 0;
};

/// Runs the worker: the delay, the collector, both catalogues, then passes with an interval between
/// them until MayContinue returns false. Returns at once if the collector does not start.
void RunWorker(WorkerSteps& steps);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
