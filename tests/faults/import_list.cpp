#include "import_list.h"

#include <cstdint>
#include <stdexcept>

namespace Faults {

namespace {

template <typename T>
T* At(HMODULE module, std::uintptr_t offset) {
  return reinterpret_cast<T*>(reinterpret_cast<std::uintptr_t>(module) + offset);
}

bool IsCode(const void* address) {
  MEMORY_BASIC_INFORMATION region{};
  constexpr DWORD kExecutable =
      PAGE_EXECUTE | PAGE_EXECUTE_READ | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
  return VirtualQuery(address, &region, sizeof(region)) != 0 && (region.Protect & kExecutable) != 0;
}

void AddLibrary(HMODULE module, const IMAGE_IMPORT_DESCRIPTOR& library,
                std::vector<Import>& imports) {
  const auto* names = At<IMAGE_THUNK_DATA>(module, library.OriginalFirstThunk);
  auto* addresses = At<IMAGE_THUNK_DATA>(module, library.FirstThunk);
  for (; names->u1.AddressOfData != 0; ++names, ++addresses) {
    const char* file = At<char>(module, library.Name);
    if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) {
      throw std::runtime_error(std::string("an import without a name from ") + file);
    }
    const auto* entry = At<IMAGE_IMPORT_BY_NAME>(module, names->u1.AddressOfData);
    auto** slot = reinterpret_cast<void**>(&addresses->u1.Function);
    imports.push_back({file, reinterpret_cast<const char*>(entry->Name), slot, IsCode(*slot)});
  }
}

}  // namespace

std::vector<Import> ImportsOf(HMODULE module) {
  const auto* dos = At<IMAGE_DOS_HEADER>(module, 0);
  const auto* headers = At<IMAGE_NT_HEADERS>(module, static_cast<std::uintptr_t>(dos->e_lfanew));
  const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  std::vector<Import> imports;
  const auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress);
  for (; library->Name != 0; ++library) AddLibrary(module, *library, imports);
  return imports;
}

void WriteSlot(void** slot, void* value) {
  DWORD protection = 0;
  VirtualProtect(slot, sizeof(void*), PAGE_READWRITE, &protection);
  *slot = value;
  VirtualProtect(slot, sizeof(void*), protection, &protection);
}

}  // namespace Faults
