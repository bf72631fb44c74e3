// A library of the same C++ runtime as the service, which does next to nothing: what stays behind
// when it is loaded and freed is what the system and the runtime leave.

#include <cstddef>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string>

/// Uses of the runtime what the service uses: memory, an exception, a lock, a static per thread.
extern "C" __declspec(dllexport) std::size_t UseTheRuntime() {
  static thread_local std::size_t calls = 0;
  static std::map<std::size_t, std::string> texts;
  static std::mutex lock;
  const std::lock_guard guard(lock);
  try {
    texts[++calls] = std::string(100, 'a');
    throw std::runtime_error("expected");
  } catch (const std::exception&) {
    return texts.size();
  }
}
