#include "platform_time.h"

#include <dpapi.h>
#include <io.h>
#include <stdio.h>
#include <wincrypt.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <system_error>

namespace Bench {

namespace {

using std::chrono::steady_clock;

struct Spent {
  double seconds = 0;
  std::size_t calls = 0;
};
std::array<Spent, 2> spent;
bool isCounting = false;

Spent& Of(PlatformPart part) { return spent[static_cast<std::size_t>(part)]; }

class Stopwatch {
 public:
  explicit Stopwatch(PlatformPart part) : spent_(Of(part)) {}
  Stopwatch(const Stopwatch&) = delete;
  Stopwatch& operator=(const Stopwatch&) = delete;
  ~Stopwatch() {
    if (!isCounting) return;
    spent_.seconds += std::chrono::duration<double>(steady_clock::now() - start_).count();
    ++spent_.calls;
  }

 private:
  Spent& spent_;
  const steady_clock::time_point start_ = steady_clock::now();
};

/// A function that calls another one and adds its time to a part. `Number` distinguishes functions
/// of one type and part.
template <int Number, PlatformPart Part, typename Function>
struct Timed;

template <int Number, PlatformPart Part, typename Result, typename... Arguments>
struct Timed<Number, Part, Result(Arguments...)> {
  static inline Result (*original)(Arguments...) = nullptr;

  static Result Call(Arguments... arguments) {
    const Stopwatch stopwatch(Part);
    return original(arguments...);
  }

  /// Does nothing if the library does not import the function.
  static void Patch(HMODULE library, const char* name,
                    std::vector<std::unique_ptr<Standin::ImportPatch>>& patches) {
    if (Standin::FindImportSlot(library, name) == nullptr) return;
    patches.push_back(std::make_unique<Standin::ImportPatch>(library, name, &Call));
    original = patches.back()->Original<Result(Arguments...)>();
  }
};

int (*originalSystem)(const char*) = nullptr;

int StartTool(const char* command) {
  isCounting = false;
  return originalSystem(command);
}

}  // namespace

// On 64-bit Windows all functions have one calling convention, so WINAPI is left out.
PlatformTime::PlatformTime(HMODULE library) {
  using enum PlatformPart;
  using std::filesystem::file_status;
  using std::filesystem::path;
  Timed<0, kDataProtection, decltype(CryptUnprotectData)>::Patch(library, "CryptUnprotectData",
                                                                 patches_);
  Timed<0, kFiles, decltype(_wfopen)>::Patch(library, "_wfopen", patches_);
  Timed<0, kFiles, decltype(_wfopen_s)>::Patch(library, "_wfopen_s", patches_);
  Timed<0, kFiles, decltype(fread)>::Patch(library, "fread", patches_);
  Timed<0, kFiles, std::size_t(const void*, std::size_t, std::size_t, std::FILE*)>::Patch(
      library, "fwrite", patches_);
  Timed<0, kFiles, decltype(fclose)>::Patch(library, "fclose", patches_);
  Timed<0, kFiles, decltype(_filelengthi64)>::Patch(library, "_filelengthi64", patches_);
  Timed<0, kFiles, decltype(_wunlink)>::Patch(library, "_wunlink", patches_);
  Timed<0, kFiles, decltype(GetFileAttributesW)>::Patch(library, "GetFileAttributesW", patches_);
  Timed<0, kFiles, decltype(GetFileAttributesExW)>::Patch(library, "GetFileAttributesExW",
                                                          patches_);
  Timed<0, kFiles, decltype(GetFileInformationByHandle)>::Patch(
      library, "GetFileInformationByHandle", patches_);
  Timed<0, kFiles, decltype(FindFirstFileW)>::Patch(library, "FindFirstFileW", patches_);
  Timed<0, kFiles, decltype(FindNextFileW)>::Patch(library, "FindNextFileW", patches_);
  Timed<0, kFiles, decltype(CreateFileW)>::Patch(library, "CreateFileW", patches_);
  Timed<0, kFiles, decltype(ReadFile)>::Patch(library, "ReadFile", patches_);
  Timed<0, kFiles, file_status(const path&)>::Patch(
      library, "_ZNSt10filesystem6statusERKNS_7__cxx114pathE", patches_);
  Timed<1, kFiles, file_status(const path&)>::Patch(
      library, "_ZNSt10filesystem14symlink_statusERKNS_7__cxx114pathE", patches_);
  Timed<0, kFiles, file_status(const path&, std::error_code&)>::Patch(
      library, "_ZNSt10filesystem14symlink_statusERKNS_7__cxx114pathERSt10error_code", patches_);

  patches_.push_back(std::make_unique<Standin::ImportPatch>(library, "system", &StartTool));
  originalSystem = patches_.back()->Original<int(const char*)>();
}

void PlatformTime::Reset() {
  spent = {};
  isCounting = true;
}

double PlatformTime::Seconds(PlatformPart part) const { return Of(part).seconds; }

std::size_t PlatformTime::Calls(PlatformPart part) const { return Of(part).calls; }

double PlatformTime::Seconds() const {
  double seconds = 0;
  for (const Spent& part : spent) seconds += part.seconds;
  return seconds;
}

}  // namespace Bench
