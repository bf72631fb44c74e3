#include "fake_packages.h"

#include <winstring.h>

#include "runtime_object.h"
#include "simulated_packages.h"

namespace TestSupport {

namespace {

FakePackages* fake = nullptr;

}  // namespace

FakePackages::FakePackages()
    : activate_("RoActivateInstance", &Activate),
      join_("CoInitializeEx", &Join),
      leave_("CoUninitialize", &Leave) {
  fake = this;
}

FakePackages::~FakePackages() { fake = nullptr; }

void FakePackages::Add(const std::wstring& folder, const std::string& lines) {
  CreateDirectoryW(Folder(folder).c_str(), nullptr);
  WriteWholeFile(Folder(folder) + L"\\package.txt", lines);
}

HRESULT WINAPI FakePackages::Activate(HSTRING className, IInspectable** object) {
  std::string call = "make ";
  for (const wchar_t* c = WindowsGetStringRawBuffer(className, nullptr); *c != 0; ++c) {
    call += static_cast<char>(*c);
  }
  fake->calls.push_back(call);
  const auto& root = fake->root.Path();
  return Standin::Packages::HandOut(fake->script, "ActivateInstance", object, [&] {
    return Standin::Packages::MakeManager(root, fake->script);
  });
}

HRESULT WINAPI FakePackages::Join(void* reserved, DWORD model) {
  EXPECT_EQ(reserved, nullptr);
  fake->calls.push_back("join " + std::to_string(model));
  return fake->initializeResult;
}

void WINAPI FakePackages::Leave() {
  const int left = Standin::Packages::LiveObjects();
  fake->calls.push_back("leave " + std::to_string(left));
}

void PackagesTest::TearDown() { EXPECT_EQ(Standin::Packages::LiveObjects(), 0); }

}  // namespace TestSupport
