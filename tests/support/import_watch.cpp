#include "support/import_watch.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include <gtest/gtest.h>

#include "import_patch.h"

namespace TestSupport {

namespace {

constexpr std::string_view kUnwatchedLibraries[] = {
    "libgcc_s_seh-1.dll", "libstdc++-6.dll",    "libwinpthread-1.dll", "msvcp140.dll",
    "vcruntime140.dll",   "vcruntime140_1.dll", "Logging.dll"};

// Grouped by purpose.
constexpr std::string_view kUnwatchedFunctions[] = {
    // Memory.
    "malloc", "calloc", "realloc", "free", "_aligned_malloc", "_aligned_free", "_msize", "memcpy",
    "memmove", "memset", "memcmp", "memchr", "wmemcpy", "wmemset", "VirtualQuery", "VirtualProtect",
    // Strings and numbers.
    "strlen", "strnlen", "strcmp", "strncmp", "strcpy", "strncpy", "strchr", "strrchr", "strstr",
    "strcoll", "strxfrm", "strtol", "strtoul", "strtod", "wcslen", "wcsnlen", "wcscmp", "wcsncmp",
    "wcscpy", "wcschr", "wcsrchr", "wcsstr", "wcscoll", "wcsxfrm", "wcstol", "wcstoul", "wcstod",
    "_stricmp", "_strnicmp", "_wcsicmp", "_wcsnicmp", "tolower", "toupper", "towlower", "towupper",
    "isalpha", "isdigit", "isspace", "iswalpha", "iswdigit", "iswspace", "iswctype", "mbstowcs",
    "wcstombs", "mbrtowc", "wcrtomb", "localeconv", "setlocale", "atoi", "_vsnprintf",
    "_vsnwprintf", "qsort", "rand", "MultiByteToWideChar", "WideCharToMultiByte",
    "IsDBCSLeadByteEx", "___lc_codepage_func", "___mb_cur_max_func",
    // Error codes.
    "_errno", "GetLastError", "SetLastError", "strerror",
    // Locks and thread-local storage.
    "EnterCriticalSection", "LeaveCriticalSection", "InitializeCriticalSection",
    "DeleteCriticalSection", "TlsGetValue", "_lock", "_unlock"};

template <typename T>
T* At(HMODULE module, std::uintptr_t offset) {
  return reinterpret_cast<T*>(reinterpret_cast<std::uintptr_t>(module) + offset);
}

template <std::size_t Size>
bool IsIn(const std::string_view (&names)[Size], std::string_view name) {
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

/// Whether `address` is code: imports may also be variables.
bool IsCode(const void* address) {
  MEMORY_BASIC_INFORMATION region{};
  constexpr DWORD kExecutable =
      PAGE_EXECUTE | PAGE_EXECUTE_READ | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
  return VirtualQuery(address, &region, sizeof(region)) != 0 && (region.Protect & kExecutable) != 0;
}

void WriteSlot(void** slot, void* value) {
  DWORD protection = 0;
  VirtualProtect(slot, sizeof(void*), PAGE_READWRITE, &protection);
  *slot = value;
  VirtualProtect(slot, sizeof(void*), protection, &protection);
}

/// Machine code that replaces an imported function: it records the function's position and jumps to
/// it. All registers are preserved, so any function can be watched.
class Stub {
 public:
  static constexpr std::size_t kBytes = 64;

  explicit Stub(unsigned char* place) : next_(place) {}

  void Write(const void* count, std::uint32_t most, const void* calls, std::uint32_t position,
             const void* original) {
    Bytes({0x50, 0x51});  // push rax; push rcx
    Bytes({0x48, 0xB8});  // mov rax, count
    Value(count);
    Bytes({0xB9, 1, 0, 0, 0});        // mov ecx, 1
    Bytes({0xF0, 0x0F, 0xC1, 0x08});  // lock xadd [rax], ecx
    Bytes({0x81, 0xF9});              // cmp ecx, most
    Value(most);
    Bytes({0x73, 17});    // jae over the next two
    Bytes({0x48, 0xB8});  // mov rax, calls
    Value(calls);
    Bytes({0xC7, 0x04, 0x88});  // mov dword [rax + 4 * rcx], position
    Value(position);
    Bytes({0x59, 0x58});              // pop rcx; pop rax
    Bytes({0xFF, 0x25, 0, 0, 0, 0});  // jmp to the address that follows
    Value(original);
  }

 private:
  void Bytes(std::initializer_list<unsigned char> bytes) {
    next_ = std::copy(bytes.begin(), bytes.end(), next_);
  }
  template <typename T>
  void Value(T value) {
    std::memcpy(next_, &value, sizeof(value));
    next_ += sizeof(value);
  }

  unsigned char* next_;
};

}  // namespace

ImportWatch::ImportWatch() {
  AddModule(GetModuleHandleW(nullptr));
  if (const HMODULE library = GetModuleHandleW(L"libstdc++-6.dll")) AddModule(library);
  code_.reset(VirtualAlloc(nullptr, watched_.size() * Stub::kBytes, MEM_COMMIT | MEM_RESERVE,
                           PAGE_READWRITE));
  if (code_ == nullptr) {
    ADD_FAILURE() << "cannot allocate the stubs";
    watched_.clear();
    return;
  }
  WriteStubs();
}

ImportWatch::~ImportWatch() {
  for (const Watched& one : watched_) WriteSlot(one.slot, one.original);
}

void ImportWatch::AddModule(HMODULE module) {
  const auto* dos = At<IMAGE_DOS_HEADER>(module, 0);
  const auto* headers = At<IMAGE_NT_HEADERS>(module, static_cast<std::uintptr_t>(dos->e_lfanew));
  const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  const auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress);
  for (; library->Name != 0; ++library) {
    if (IsIn(kUnwatchedLibraries, At<char>(module, library->Name))) continue;
    const auto* names = At<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
    auto* addresses = At<IMAGE_THUNK_DATA>(module, library->FirstThunk);
    for (; names->u1.AddressOfData != 0; ++names, ++addresses) {
      if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
      const auto* entry = At<IMAGE_IMPORT_BY_NAME>(module, names->u1.AddressOfData);
      const std::string name = reinterpret_cast<const char*>(entry->Name);
      auto** slot = reinterpret_cast<void**>(&addresses->u1.Function);
      if (IsIn(kUnwatchedFunctions, name) || !IsCode(*slot)) continue;
      watched_.push_back({slot, *slot, name});
    }
  }
}

void ImportWatch::WriteStubs() {
  auto* code = static_cast<unsigned char*>(code_.get());
  for (std::uint32_t i = 0; i < watched_.size(); ++i) {
    Stub(code + i * Stub::kBytes).Write(&count_, kCapacity, calls_.data(), i, watched_[i].original);
  }
  DWORD before = 0;
  VirtualProtect(code, watched_.size() * Stub::kBytes, PAGE_EXECUTE_READ, &before);
  FlushInstructionCache(GetCurrentProcess(), code, watched_.size() * Stub::kBytes);
  for (std::uint32_t i = 0; i < watched_.size(); ++i) {
    WriteSlot(watched_[i].slot, code + i * Stub::kBytes);
  }
}

std::vector<std::string> ImportWatch::Calls() const {
  const std::uint32_t count = count_;
  EXPECT_LE(count, kCapacity) << "more calls than the watch can record";
  std::vector<std::string> names;
  for (std::uint32_t i = 0; i < std::min(count, kCapacity); ++i) {
    names.push_back(watched_[calls_[i]].name);
  }
  return names;
}

}  // namespace TestSupport
