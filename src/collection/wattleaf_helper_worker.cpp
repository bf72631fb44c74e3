#include "collection/wattleaf_helper.h"

#include <windows.h>

#include <memory>
#include <thread>

#include "collection/worker_plan.h"
#include "platform/win32/thread_handle.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// Keeps this module loaded until the process ends: the worker sleeps in its code for up to a day.
/// If a host could free the library, it would wait that long, or the worker would wake up in code
/// that is no longer there.
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
  // Kept on purpose: a second call leaks the first thread object, whose thread continues. Deleting
  // it would end the process.
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
    bool MayContinue() override { return helper_.running.load(std::memory_order_relaxed); }
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
