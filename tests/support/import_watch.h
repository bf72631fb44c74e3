#pragma once

#include <windows.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace TestSupport {

/// Watches every system call of the program for as long as it lives: all functions in its import
/// table, and in that of the C++ library that it shares, which calls the system for it. What is
/// called does its work as before, a fake included that was in place when the watch began.
///
/// Not watched is what a program cannot avoid: memory, texts and numbers of the C library, locks,
/// error codes (the list is in the source), the C++ runtime itself, and the log.
class ImportWatch {
 public:
  ImportWatch();
  ImportWatch(const ImportWatch&) = delete;
  ImportWatch& operator=(const ImportWatch&) = delete;
  ~ImportWatch();

  /// The names of the functions called so far, by any thread, in the order of the calls. Fails the
  /// test if there were more than can be kept.
  std::vector<std::string> Calls() const;

 private:
  static constexpr std::uint32_t kMostCalls = 4096;

  struct Watched {
    void** slot;
    void* original;
    std::string name;
  };
  struct FreeCode {
    void operator()(void* code) const { VirtualFree(code, 0, MEM_RELEASE); }
  };

  void AddModule(HMODULE module);
  void WriteStubs();

  std::vector<Watched> watched_;
  std::unique_ptr<void, FreeCode> code_;
  std::atomic<std::uint32_t> count_{0};
  std::array<std::uint32_t, kMostCalls> calls_{};  ///< positions in watched_
};

}  // namespace TestSupport
