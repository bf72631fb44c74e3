#pragma once

#include <windows.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace TestSupport {

/// Records every system call of the program while it exists: the calls through the program's import
/// table and through that of the shared C++ library. Each call still reaches its function, or the
/// fake that was in place when the watch began.
///
/// Calls that no program can avoid are not recorded: memory, strings and numbers of the C library,
/// locks, error codes (the list is in the source), the C++ runtime itself, and the log.
class ImportWatch {
 public:
  ImportWatch();
  ImportWatch(const ImportWatch&) = delete;
  ImportWatch& operator=(const ImportWatch&) = delete;
  ~ImportWatch();

  /// The names of the functions called so far, by any thread, in call order. Fails the test if
  /// there were more than kCapacity.
  [[nodiscard]] std::vector<std::string> Calls() const;

 private:
  static constexpr std::uint32_t kCapacity = 4096;

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
  std::array<std::uint32_t, kCapacity> calls_{};  ///< positions in watched_
};

}  // namespace TestSupport
