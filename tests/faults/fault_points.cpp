#include "fault_points.h"

#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <stdexcept>

namespace Faults {

namespace {

class Code {
 public:
  explicit Code(unsigned char* place) : next_(place) {}

  void Bytes(std::initializer_list<unsigned char> bytes) {
    for (const unsigned char byte : bytes) *next_++ = byte;
  }
  void LoadRax(const void* address) {
    Bytes({0x48, 0xB8});
    std::memcpy(next_, &address, sizeof(address));
    next_ += sizeof(address);
  }

 private:
  unsigned char* next_;
};

}  // namespace

FaultPoints::FaultPoints(HMODULE module, const std::map<std::string, void*>& replacements)
    : imports_(ImportsOf(module)),
      points_(std::make_unique<Point[]>(imports_.size())),
      code_(VirtualAlloc(nullptr, imports_.size() * kCodeBytes, MEM_COMMIT | MEM_RESERVE,
                         PAGE_EXECUTE_READWRITE)) {
  if (code_ == nullptr) throw std::runtime_error("no memory for the machine code");
  auto* code = static_cast<unsigned char*>(code_.get());
  for (std::size_t i = 0; i < imports_.size(); ++i) {
    const Import& import = imports_[i];
    if (!import.isFunction) continue;
    const auto replacement = replacements.find(import.name);
    points_[i].target = replacement != replacements.end() ? replacement->second : *import.slot;
    indices_[import.name] = i;
    WriteCode(code + i * kCodeBytes, points_[i]);
    WriteSlot(import.slot, code + i * kCodeBytes);
  }
  FlushInstructionCache(GetCurrentProcess(), code, imports_.size() * kCodeBytes);
}

// Uses rax and r10 only, which hold no argument of any call.
void FaultPoints::WriteCode(unsigned char* place, Point& point) {
  static_assert(offsetof(Point, failAt) == 4 && offsetof(Point, target) == 8 &&
                offsetof(Point, failure) == 16);
  Code code(place);
  code.LoadRax(&isCounting_);
  code.Bytes({0x83, 0x38, 0x00});  // cmp dword [rax], 0
  code.Bytes({0x74, 30});          // je to the second load
  code.LoadRax(&point);
  code.Bytes({0x41, 0xBA, 1, 0, 0, 0});        // mov r10d, 1
  code.Bytes({0xF0, 0x44, 0x0F, 0xC1, 0x10});  // lock xadd [rax], r10d
  code.Bytes({0x44, 0x3B, 0x50, 0x04});        // cmp r10d, [rax + 4]
  code.Bytes({0x75, 3});                       // jne to the second load
  code.Bytes({0xFF, 0x60, 0x10});              // jmp [rax + 16]
  code.LoadRax(&point);
  code.Bytes({0xFF, 0x60, 0x08});  // jmp [rax + 8]
}

FaultPoints::Point* FaultPoints::Find(const std::string& name) const {
  const auto index = indices_.find(name);
  return index != indices_.end() ? &points_[index->second] : nullptr;
}

void FaultPoints::Fail(const std::string& name, std::uint32_t position, void* failure) {
  Point* point = Find(name);
  if (point == nullptr) throw std::runtime_error("not imported: " + name);
  point->failure = failure;
  point->failAt = position - 1;
}

void FaultPoints::Begin() {
  for (std::size_t i = 0; i < imports_.size(); ++i) points_[i].calls = 0;
  isCounting_ = 1;
}

void FaultPoints::End() { isCounting_ = 0; }

std::uint32_t FaultPoints::Calls(const std::string& name) const {
  const Point* point = Find(name);
  return point != nullptr ? point->calls : 0;
}

void* FaultPoints::Target(const std::string& name) const {
  const Point* point = Find(name);
  return point != nullptr ? point->target : nullptr;
}

void FaultPoints::SetTarget(const std::string& name, void* target) {
  if (Point* point = Find(name)) point->target = target;
}

}  // namespace Faults
