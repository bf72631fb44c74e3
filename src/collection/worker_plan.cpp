#include "collection/worker_plan.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

void RunWorker(WorkerSteps& steps) {
  steps.Wait(kStartDelay);
  if (!steps.StartCollector()) return;

  steps.LoadDesktopCatalogue();
  steps.LoadPackagedCatalogue();
  while (steps.MayContinue()) {
    steps.UpdateLedger();
    steps.UpdateRanking();
    steps.MarkDataAvailable();
    steps.Wait(kPassInterval);
  }
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
