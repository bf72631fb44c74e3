// Tasks, as far as std::async needs them: each on a thread of its own.
#pragma once
#include <memory>
#include <functional>
#include <windows.h>
namespace Concurrency {
template <class T>
struct task;
template <>
struct task<void> {
  struct State {
    std::function<void()> f;
    HANDLE done;
    ~State() { CloseHandle(done); }
  };
  std::shared_ptr<State> s;
  static DWORD WINAPI run(void* p) {
    auto q = (std::shared_ptr<State>*)p;
    (*q)->f();
    (*q)->f = nullptr;
    SetEvent((*q)->done);
    delete q;
    return 0;
  }
  bool is_done() const { return WaitForSingleObject(s->done, 0) == 0; }
  void wait() const { WaitForSingleObject(s->done, INFINITE); }
  void get() const { wait(); }
};
template <class F>
task<void> create_task(F f) {
  task<void> t;
  t.s = std::make_shared<task<void>::State>();
  auto c = std::make_shared<F>(std::move(f));
  t.s->f = [c] { (*c)(); };
  t.s->done = CreateEventW(0, TRUE, FALSE, 0);
  CloseHandle(
      CreateThread(0, 0, task<void>::run, new std::shared_ptr<task<void>::State>(t.s), 0, 0));
  return t;
}
struct task_options {};
}  // namespace Concurrency
