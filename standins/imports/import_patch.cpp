#include "import_patch.h"

#include <cstdint>
#include <cstring>
#include <string>

namespace Standin {

namespace {

template <typename T>
T* At(HMODULE module, std::uintptr_t offset) {
  return reinterpret_cast<T*>(reinterpret_cast<std::uintptr_t>(module) + offset);
}

void WriteSlot(void** slot, void* value) {
  DWORD protection = 0;
  VirtualProtect(slot, sizeof(void*), PAGE_READWRITE, &protection);
  *slot = value;
  VirtualProtect(slot, sizeof(void*), protection, &protection);
}

void** FindInDescriptor(HMODULE module, const IMAGE_IMPORT_DESCRIPTOR& descriptor,
                        const char* name) {
  const auto* names = At<IMAGE_THUNK_DATA>(module, descriptor.OriginalFirstThunk);
  auto* addresses = At<IMAGE_THUNK_DATA>(module, descriptor.FirstThunk);
  for (; names->u1.AddressOfData != 0; ++names, ++addresses) {
    if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
    const auto* entry = At<IMAGE_IMPORT_BY_NAME>(module, names->u1.AddressOfData);
    if (std::strcmp(reinterpret_cast<const char*>(entry->Name), name) == 0) {
      return reinterpret_cast<void**>(&addresses->u1.Function);
    }
  }
  return nullptr;
}

}  // namespace

void** FindImportSlot(HMODULE module, const char* name) {
  const auto* dos = At<IMAGE_DOS_HEADER>(module, 0);
  const auto* headers = At<IMAGE_NT_HEADERS>(module, static_cast<std::uintptr_t>(dos->e_lfanew));
  const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  if (directory.VirtualAddress == 0) return nullptr;

  const auto* descriptor = At<IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress);
  for (; descriptor->Name != 0; ++descriptor) {
    if (void** slot = FindInDescriptor(module, *descriptor, name)) return slot;
  }
  return nullptr;
}

HMODULE ModuleThatCalls(const char* name) {
  const HMODULE program = GetModuleHandleW(nullptr);
  if (FindImportSlot(program, name) != nullptr) return program;
  for (const wchar_t* library : {L"libstdc++-6.dll", L"libwinpthread-1.dll"}) {
    const HMODULE module = GetModuleHandleW(library);
    if (module != nullptr && FindImportSlot(module, name) != nullptr) return module;
  }
  return program;
}

ImportPatch::ImportPatch(HMODULE module, const char* name, void* replacement, int)
    : slot_(FindImportSlot(module, name)) {
  if (slot_ == nullptr) throw std::runtime_error(std::string("not imported: ") + name);
  original_ = *slot_;
  WriteSlot(slot_, replacement);
}

ImportPatch::~ImportPatch() { WriteSlot(slot_, original_); }

}  // namespace Standin
