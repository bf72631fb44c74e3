#include "collection/wattleaf_helper.h"

#include <windows.h>

#include <memory>
#include <thread>

#include "collection/worker_plan.h"
#include "platform/win32/thread_handle.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// Keeps this module loaded until the process ends: a worker sleeps in its code for a day, and a
/// host that frees the library must find neither a wait of a day nor code that has gone.
void PinModule() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                     reinterpret_cast<const wchar_t*>(&PinModule), &module);
}

}  // namespace

void WattleafHelper::StartProcessing() {
  PinModule();
  running.store(true, std::memory_order_relaxed);
  auto thread = std::make_unique<std::thread>(&WattleafHelper::ProcessingCallback, this);
  SetThreadPriority(Platform::ThreadHandle(*thread), THREAD_PRIORITY_LOWEST);
  // Kept on purpose: a second call gives the first thread object up. Deleting it would end the
  // process, and its thread goes on.
  static_cast<void>(worker.release());
  worker = std::move(thread);
}

void WattleafHelper::ProcessingCallback() {
  class Steps final : public WorkerSteps {
   public:
    explicit Steps(WattleafHelper& helper) : helper_(helper) {}

    void Wait(std::chrono::milliseconds length) override {
      Sleep(static_cast<DWORD>(length.count()));
    }
    bool StartCollector() override { return helper_.StartCollection(); }
    void LoadDesktopCatalogue() override { helper_.LoadInstalledWin32Apps(); }
    void LoadPackagedCatalogue() override { helper_.LoadInstalledUWPApps(); }
    bool MayGoOn() override { return helper_.running.load(std::memory_order_relaxed); }
    void UpdateLedger() override { helper_.CalculateDailyPowerConsumption(); }
    void UpdateRanking() override { helper_.OnGetTop20PowerApps(); }
    void MarkDataAvailable() override {
      helper_.dataAvailable.store(true, std::memory_order_relaxed);
    }

   private:
    WattleafHelper& helper_;
  };

  Steps steps(*this);
  RunWorker(steps);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
