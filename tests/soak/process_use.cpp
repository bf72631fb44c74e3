#include "process_use.h"

#include <windows.h>

#include <psapi.h>

#include <array>

#include "support/open_handles.h"

namespace Soak {

namespace {

/// Adds the blocks of a heap, each with what the heap adds to it.
void AddBlocks(HANDLE heap, ProcessUse& use) {
  constexpr WORD kNoBlock = PROCESS_HEAP_REGION | PROCESS_HEAP_UNCOMMITTED_RANGE;
  PROCESS_HEAP_ENTRY entry{};
  HeapLock(heap);
  while (HeapWalk(heap, &entry)) {
    if ((entry.wFlags & kNoBlock) != 0) continue;
    const long bytes = static_cast<long>(entry.cbData) + entry.cbOverhead;
    ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? use.heapBytes : use.freeBytes) += bytes;
  }
  HeapUnlock(heap);
}

long CommittedBytes() {
  std::size_t bytes = 0;
  const char* address = nullptr;
  MEMORY_BASIC_INFORMATION region{};
  while (VirtualQuery(address, &region, sizeof(region)) != 0) {
    if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) bytes += region.RegionSize;
    address = static_cast<const char*>(region.BaseAddress) + region.RegionSize;
  }
  return static_cast<long>(bytes);
}

}  // namespace

ProcessUse MeasureProcess() {
  ProcessUse use;
  use.handles = TestSupport::CountOpenHandles();

  PROCESS_MEMORY_COUNTERS memory{};
  GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof(memory));
  use.privateBytes = static_cast<long>(memory.PagefileUsage);
  use.committedBytes = CommittedBytes();

  std::array<HANDLE, 64> heaps{};
  const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
  for (DWORD i = 0; i < count && i < heaps.size(); ++i) AddBlocks(heaps[i], use);
  return use;
}

}  // namespace Soak
