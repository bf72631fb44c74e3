#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "import_list.h"

namespace Faults {

/// Counts the calls that a module makes through its import table, and lets one of them fail.
/// Each entry is replaced by machine code that keeps all arguments, so a function of any signature
/// can be counted. Calls are counted only between Begin and End, on every thread.
class FaultPoints {
 public:
  /// `replacements` are called in place of the imported functions of these names.
  FaultPoints(HMODULE module, const std::map<std::string, void*>& replacements);
  FaultPoints(const FaultPoints&) = delete;
  FaultPoints& operator=(const FaultPoints&) = delete;

  [[nodiscard]] const std::vector<Import>& Imports() const { return imports_; }

  /// From now on `failure` is called in place of the `position`-th call (from 1) of `name`.
  void Fail(const std::string& name, std::uint32_t position, void* failure);
  void Begin();
  void End();

  /// The calls of a function that were counted; 0 for a name that is not imported.
  [[nodiscard]] std::uint32_t Calls(const std::string& name) const;
  /// What is called when the function does not fail.
  [[nodiscard]] void* Target(const std::string& name) const;
  void SetTarget(const std::string& name, void* target);

 private:
  /// Read and written by the machine code, at fixed offsets.
  struct Point {
    std::uint32_t calls = 0;
    std::uint32_t failAt = kNever;
    void* target = nullptr;
    void* failure = nullptr;
  };
  static constexpr std::uint32_t kNever = 0xFFFFFFFF;
  static constexpr std::size_t kCodeBytes = 64;
  struct FreeCode {
    void operator()(void* code) const { VirtualFree(code, 0, MEM_RELEASE); }
  };

  [[nodiscard]] Point* Find(const std::string& name) const;
  void WriteCode(unsigned char* place, Point& point);

  std::vector<Import> imports_;
  std::unique_ptr<Point[]> points_;
  std::map<std::string, std::size_t> indices_;
  std::unique_ptr<void, FreeCode> code_;
  std::uint32_t isCounting_ = 0;
};

}  // namespace Faults
