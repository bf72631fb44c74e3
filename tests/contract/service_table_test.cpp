#include "contract/raw_table.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "service/zq_service.h"

// The service as the host sees it: places in a table. The numbers are the contract.
namespace Zq::Gantry::Server::Services {
namespace {

using testing::ElementsAre;
using TestSupport::CallSlot;
using TestSupport::DestroyThroughSlot;
using TestSupport::kDestructorSlots;

/// The slot of an operation by its place in the contract, where the destructor is number 1.
constexpr std::size_t Place(std::size_t number) {
  return number == 1 ? 0 : kDestructorSlots + number - 2;
}

std::vector<std::string> calls;

class RecordingService : public ZQService {
 public:
  ~RecordingService() override { calls.push_back("destructor"); }
  int StartSession(wchar_t* name, void** handle) override {
    calls.push_back("StartSession");
    *handle = name;
    return 21;
  }
  int EndSession(void** handle) override {
    calls.push_back("EndSession");
    *handle = this;
    return 31;
  }
  int ExecuteCommand(void* session, unsigned int command, wchar_t* input, wchar_t** output,
                     std::function<void(wchar_t*)> callback,
                     Security::RequestConfiguration* configuration) override {
    calls.push_back("ExecuteCommand " + std::to_string(command));
    EXPECT_EQ(session, this);
    EXPECT_EQ(static_cast<void*>(configuration), static_cast<void*>(output));
    *output = input;
    callback(input);
    return 41;
  }
  void FreeResult(void* buffer) override {
    calls.push_back(buffer == this ? "FreeResult" : "FreeResult of something else");
  }
  void startup_task() override { calls.push_back("startup_task"); }
  void power_event_task(unsigned long event) override {
    calls.push_back("power_event_task " + std::to_string(event));
  }
  void extra_task() override { calls.push_back("extra_task"); }
  bool query_ready() override {
    calls.push_back("query_ready");
    return false;
  }
  void session_change_task(unsigned long event, void* data) override {
    calls.push_back("session_change_task " + std::to_string(event));
    EXPECT_EQ(data, this);
  }
  void control_code_task(unsigned long code) override {
    calls.push_back("control_code_task " + std::to_string(code));
  }
};

/// Overrides only what the base leaves pure.
class PlainService : public ZQService {
 public:
  int StartSession(wchar_t*, void**) override { return 0; }
  int EndSession(void**) override { return 0; }
  int ExecuteCommand(void*, unsigned int, wchar_t*, wchar_t**, std::function<void(wchar_t*)>,
                     Security::RequestConfiguration*) override {
    return 0;
  }
};

TEST(ServiceTable, HoldsSessionsAndResultsInPlacesTwoThreeAndFive) {
  calls.clear();
  auto* service = new RecordingService();
  wchar_t name[] = L"host";
  void* handle = nullptr;
  EXPECT_EQ((CallSlot<int, wchar_t*, void**>(service, Place(2), name, &handle)), 21);
  EXPECT_EQ(handle, name);
  EXPECT_EQ((CallSlot<int, void**>(service, Place(3), &handle)), 31);
  EXPECT_EQ(handle, service);
  CallSlot<void, void*>(service, Place(5), service);
  DestroyThroughSlot(service, Place(1));
  EXPECT_THAT(calls, ElementsAre("StartSession", "EndSession", "FreeResult", "destructor"));
}

TEST(ServiceTable, HoldsTheCommandInPlaceFour) {
  calls.clear();
  RecordingService service;
  wchar_t input[] = L"request";
  wchar_t* output = nullptr;
  wchar_t* seen = nullptr;
  const std::function<void(wchar_t*)> callback = [&seen](wchar_t* text) { seen = text; };
  EXPECT_EQ((CallSlot<int, void*, unsigned int, wchar_t*, wchar_t**, std::function<void(wchar_t*)>,
                      void*>(&service, Place(4), &service, 7, input, &output, callback, &output)),
            41);
  EXPECT_EQ(output, input);
  EXPECT_EQ(seen, input);
  EXPECT_THAT(calls, ElementsAre("ExecuteCommand 7"));
}

TEST(ServiceTable, HoldsTheHostsTasksInPlacesSixToEleven) {
  calls.clear();
  RecordingService service;
  CallSlot<void>(&service, Place(6));
  CallSlot<void, unsigned long>(&service, Place(7), 70);
  CallSlot<void>(&service, Place(8));
  EXPECT_FALSE(CallSlot<bool>(&service, Place(9)));
  CallSlot<void, unsigned long, void*>(&service, Place(10), 100, &service);
  CallSlot<void, unsigned long>(&service, Place(11), 110);
  EXPECT_THAT(calls, ElementsAre("startup_task", "power_event_task 70", "extra_task", "query_ready",
                                 "session_change_task 100", "control_code_task 110"));
}

TEST(ServiceTable, HasHarmlessDefaultsInTheBase) {
  PlainService service;
  CallSlot<void>(&service, Place(6));
  CallSlot<void, unsigned long>(&service, Place(7), 1);
  CallSlot<void>(&service, Place(8));
  EXPECT_TRUE(CallSlot<bool>(&service, Place(9)));
  CallSlot<void, unsigned long, void*>(&service, Place(10), 7, nullptr);
  CallSlot<void, unsigned long>(&service, Place(11), 1);
  CallSlot<void, void*>(&service, Place(5), nullptr);
  CallSlot<void, void*>(&service, Place(5), std::malloc(16));
}

TEST(ServiceTable, IsTheOnlyFieldOfAService) { EXPECT_EQ(sizeof(ZQService), sizeof(void*)); }

}  // namespace
}  // namespace Zq::Gantry::Server::Services
