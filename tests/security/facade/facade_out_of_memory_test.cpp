// The answers of the facade when any one allocation fails. A program of its own, since it replaces
// the allocation of the whole program and of the shared C++ library, which allocates the strings.

#include "security/facade/zq_authenticode_facade.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <optional>

#include "import_patch.h"
#include "security/access/judged_files.h"
#include "security/access/tool_launch.h"

namespace {

// How many more allocations succeed before one fails; -1 for all.
long long remaining = -1;

bool paused = false;

bool MustFail() {
  if (paused || remaining < 0) return false;
  return remaining-- == 0;
}

void* Allocate(std::size_t size) {
  if (!MustFail()) {
    if (void* block = std::malloc(size == 0 ? 1 : size)) return block;
  }
  throw std::bad_alloc();
}

void* AllocateForTheCppLibrary(std::size_t size) {
  return MustFail() ? nullptr : std::malloc(size);
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace Zq::Gantry::Security {
namespace {

using TestSupport::JudgedFiles;

/// Calls `check` with each of its allocations failing in turn. Returns how often it was true in
/// spite of the failure; `steps` is the number of allocations that failed.
int CountAcceptances(const std::function<bool()>& check, int& steps) {
  int acceptances = 0;
  for (steps = 0;; ++steps) {
    remaining = steps;
    bool answer = false;
    try {
      answer = check();
    } catch (const std::bad_alloc&) {
      // An exception is no acceptance.
    }
    const bool failed = remaining == -1;
    remaining = -1;
    if (!failed) return acceptances;
    if (answer) ++acceptances;
  }
}

/// Lets no allocation fail inside a faked call: the real one does not use this program's memory.
template <int Tag, typename Result, typename... Arguments>
class Unfailing {
 public:
  explicit Unfailing(const char* name) : patch_(name, &Call) {
    original_ = patch_.template Original<Result(Arguments...)>();
  }

 private:
  static Result Call(Arguments... arguments) {
    paused = true;
    const Result result = original_(arguments...);
    paused = false;
    return result;
  }

  static inline Result (*original_)(Arguments...) = nullptr;
  Standin::ImportPatch patch_;
};

void IgnoreLog(void*, Standin::LogLevel, const wchar_t*, const wchar_t*) {}

class FacadeOutOfMemory : public testing::Test {
 protected:
  FacadeOutOfMemory() {
    files_.SignAll(kVerified, "30 0a");
    const HMODULE cppLibrary = GetModuleHandleW(L"libstdc++-6.dll");
    if (cppLibrary != nullptr) strings_.emplace(cppLibrary, "malloc", &AllocateForTheCppLibrary);
    Standin::SetLogSink(&IgnoreLog, nullptr);
  }

  JudgedFiles files_;
  std::optional<Standin::ImportPatch> strings_;
  Unfailing<0, LONG, HWND, GUID*, void*> verify_{"WinVerifyTrust"};
  Unfailing<1, RPC_STATUS, void*, void*> client_{"RpcServerInqCallAttributesW"};
  Unfailing<2, BOOL, HANDLE*, const GUID*, const wchar_t*, const void*, DWORD> acquire_{
      "CryptCATAdminAcquireContext2"};
  Unfailing<3, BOOL, HANDLE, DWORD> release_{"CryptCATAdminReleaseContext"};
  ZQAuthenticodeFacade facade_;
  int steps_ = 0;
};

TEST_F(FacadeOutOfMemory, NeverTrustsAnotherSignersFileAsDropbox) {
  const auto check = [this] { return facade_.IsDropboxFileTrusted(L"C:\\Windows\\file.dll"); };
  ASSERT_FALSE(check());
  EXPECT_EQ(CountAcceptances(check, steps_), 0);
  EXPECT_GT(steps_, 5);
}

TEST_F(FacadeOutOfMemory, NeverTrustsAnUnknownKeyAsTheServices) {
  const auto check = [this] { return facade_.IsServiceFileTrusted(L"C:\\Windows\\file.dll"); };
  ASSERT_FALSE(check());
  EXPECT_EQ(CountAcceptances(check, steps_), 0);
  EXPECT_GT(steps_, 5);
}

TEST_F(FacadeOutOfMemory, NeverAcceptsAnUnsignedFile) {
  files_.trust.embedded.clear();
  const auto check = [this] {
    return facade_.IsWindowsTrustedFileAllowed(L"C:\\Windows\\file.dll");
  };
  EXPECT_EQ(CountAcceptances(check, steps_), 0);
  EXPECT_GT(steps_, 0);
}

TEST_F(FacadeOutOfMemory, NeverAllowsAnUntrustedFileToBeRegistered) {
  const auto check = [] {
    return IsLaunchAllowedBy(
        ToolLaunchTable,
        {L"%windir%\\System32\\regsvr32.exe", false, L"/s C:\\Windows\\file.dll", L""},
        [] { return std::wstring(L"C7E40B19.ZQHarbourDesk_q7m3xk2tdw9pa"); });
  };
  ASSERT_FALSE(check());
  EXPECT_EQ(CountAcceptances(check, steps_), 0);
  EXPECT_GT(steps_, 10);
}

}  // namespace
}  // namespace Zq::Gantry::Security
