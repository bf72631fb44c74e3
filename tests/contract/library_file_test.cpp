#include "contract/raw_table.h"

#include <windows.h>

#include <gmock/gmock.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "platform/win32/owners.h"
#include "support/log_capture.h"
#include "support/program_folder.h"

// The shipped file as a host uses it: loaded from disk, the factory found by name, the service
// called by slot. No header of the exported interface is included.
namespace {

using testing::ElementsAre;
using TestSupport::CallSlot;
using TestSupport::DestroyThroughSlot;
using TestSupport::Info;
using TestSupport::kDestructorSlots;
using Zq::Gantry::Platform::UniqueModule;

constexpr std::size_t kStartSession = kDestructorSlots;
constexpr std::size_t kEndSession = kDestructorSlots + 1;
constexpr std::size_t kExecuteCommand = kDestructorSlots + 2;
constexpr std::size_t kFreeResult = kDestructorSlots + 3;
constexpr std::size_t kStartupTask = kDestructorSlots + 4;
constexpr std::size_t kQueryReady = kDestructorSlots + 7;

std::wstring LibraryPath() { return TestSupport::PathBesideProgram(L"WattleafService.dll"); }

UniqueModule LoadTheLibrary() { return UniqueModule(LoadLibraryW(LibraryPath().c_str())); }

void* MakeService(const UniqueModule& library) {
  const FARPROC factory = GetProcAddress(library.get(), "ZQCreateService");
  if (factory == nullptr) return nullptr;
  return reinterpret_cast<void* (*)()>(reinterpret_cast<void*>(factory))();
}

bool IsLoaded() { return GetModuleHandleW(L"WattleafService.dll") != nullptr; }

int Execute(void* service, unsigned int command, const wchar_t* input, wchar_t** output) {
  std::wstring text = input;
  return CallSlot<int, void*, unsigned int, wchar_t*, wchar_t**, std::function<void(wchar_t*)>,
                  void*>(service, kExecuteCommand, nullptr, command, text.data(), output, nullptr,
                         nullptr);
}

std::vector<char> VersionResource() {
  DWORD unused = 0;
  const DWORD bytes = GetFileVersionInfoSizeW(LibraryPath().c_str(), &unused);
  std::vector<char> resource(bytes);
  if (bytes != 0 && !GetFileVersionInfoW(LibraryPath().c_str(), 0, bytes, resource.data())) {
    resource.clear();
  }
  return resource;
}

std::wstring VersionText(const std::vector<char>& resource, const std::wstring& name) {
  wchar_t* text = nullptr;
  UINT chars = 0;
  const std::wstring path = L"\\StringFileInfo\\040904B0\\" + name;
  if (!VerQueryValueW(resource.data(), path.c_str(), reinterpret_cast<void**>(&text), &chars)) {
    return L"(missing)";
  }
  return text;
}

TEST(LibraryFile, ServesSessionsThroughFactoryAndTableAlone) {
  const TestSupport::LogCapture log;
  const UniqueModule library = LoadTheLibrary();
  ASSERT_TRUE(library);
  void* service = MakeService(library);
  ASSERT_NE(service, nullptr);
  wchar_t name[] = L"host";
  void* session = nullptr;
  EXPECT_EQ((CallSlot<int, wchar_t*, void**>(service, kStartSession, name, &session)), 0);
  EXPECT_NE(session, nullptr);
  EXPECT_EQ((CallSlot<int, void**>(service, kEndSession, &session)), 0);
  EXPECT_TRUE(CallSlot<bool>(service, kQueryReady));
  DestroyThroughSlot(service, 0);
  EXPECT_THAT(log.Records(), ElementsAre(Info(L"WattleafService::StartSession"),
                                         Info(L"WattleafService::EndSession")));
}

TEST(LibraryFile, MakesAnotherServiceAtEachCall) {
  const TestSupport::LogCapture log;
  const UniqueModule library = LoadTheLibrary();
  ASSERT_TRUE(library);
  void* first = MakeService(library);
  void* second = MakeService(library);
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_NE(first, second);
  DestroyThroughSlot(first, 0);
  wchar_t* output = nullptr;
  EXPECT_EQ(Execute(second, 8, L"", &output), 0);
  CallSlot<void, void*>(second, kFreeResult, output);
  DestroyThroughSlot(second, 0);
}

TEST(LibraryFile, ReturnsTheTextOfACommandAndFreesIt) {
  const TestSupport::LogCapture log;
  const UniqueModule library = LoadTheLibrary();
  ASSERT_TRUE(library);
  void* service = MakeService(library);
  ASSERT_NE(service, nullptr);
  wchar_t* output = nullptr;
  EXPECT_EQ(Execute(service, 10, L"", &output), 0);
  ASSERT_NE(output, nullptr);
  EXPECT_STREQ(output, L"false");
  CallSlot<void, void*>(service, kFreeResult, output);
  EXPECT_EQ(Execute(service, 11, L"", &output), 0x20000001);
  DestroyThroughSlot(service, 0);
}

/// Runs in a process of its own, since the library stays loaded; the exit status is 7 if it does.
[[noreturn]] void StartTheWorkerAndFreeTheLibrary() {
  UniqueModule library = LoadTheLibrary();
  void* service = MakeService(library);
  CallSlot<void>(service, kStartupTask);
  DestroyThroughSlot(service, 0);
  library.reset();
  std::exit(IsLoaded() ? 7 : 1);
}

TEST(LibraryFile, StaysLoadedWhileItsWorkerSleepsAfterTheHostFreedIt) {
  EXPECT_EXIT(StartTheWorkerAndFreeTheLibrary(), testing::ExitedWithCode(7), "");
}

TEST(LibraryFile, IsUnloadedWhenNoWorkerWasStarted) {
  UniqueModule library = LoadTheLibrary();
  ASSERT_TRUE(library);
  void* service = MakeService(library);
  ASSERT_NE(service, nullptr);
  DestroyThroughSlot(service, 0);
  library.reset();
  EXPECT_FALSE(IsLoaded());
}

TEST(LibraryFile, HasAVersionResource) {
  const std::vector<char> resource = VersionResource();
  ASSERT_FALSE(resource.empty());
  EXPECT_EQ(VersionText(resource, L"FileVersion"), WATTLEAF_EXPECTED_VERSION);
  EXPECT_EQ(VersionText(resource, L"ProductVersion"), WATTLEAF_EXPECTED_VERSION);
  EXPECT_EQ(VersionText(resource, L"OriginalFilename"), L"WattleafService.dll");
  EXPECT_EQ(VersionText(resource, L"ProductName"), L"WattleafService");
}

TEST(LibraryFile, SaysInItsVersionResourceThatItsKeysAreNotForProduction) {
  const std::vector<char> resource = VersionResource();
  ASSERT_FALSE(resource.empty());
  VS_FIXEDFILEINFO* fixed = nullptr;
  UINT bytes = 0;
  ASSERT_TRUE(VerQueryValueW(resource.data(), L"\\", reinterpret_cast<void**>(&fixed), &bytes));
  const bool isSpecial = (fixed->dwFileFlags & fixed->dwFileFlagsMask & VS_FF_SPECIALBUILD) != 0;
  const std::wstring notice = WATTLEAF_EXPECTED_KEY_NOTICE;
  EXPECT_EQ(isSpecial, !notice.empty());
  EXPECT_EQ(VersionText(resource, L"SpecialBuild"), notice.empty() ? L"(missing)" : notice);
}

TEST(LibraryFile, HasTheSameVersionInNumbersAndText) {
  const std::vector<char> resource = VersionResource();
  ASSERT_FALSE(resource.empty());
  VS_FIXEDFILEINFO* fixed = nullptr;
  UINT bytes = 0;
  ASSERT_TRUE(VerQueryValueW(resource.data(), L"\\", reinterpret_cast<void**>(&fixed), &bytes));
  const std::wstring numbers = std::to_wstring(HIWORD(fixed->dwFileVersionMS)) + L"." +
                               std::to_wstring(LOWORD(fixed->dwFileVersionMS)) + L"." +
                               std::to_wstring(HIWORD(fixed->dwFileVersionLS));
  EXPECT_EQ(numbers, WATTLEAF_EXPECTED_VERSION);
  EXPECT_EQ(fixed->dwFileType, static_cast<DWORD>(VFT_DLL));
}

}  // namespace
