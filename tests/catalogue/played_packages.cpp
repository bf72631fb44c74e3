#include "played_packages.h"

#include <winstring.h>

#include "played_manager.h"
#include "runtime_object.h"

namespace TestSupport {

namespace {

PlayedPackages* played = nullptr;

}  // namespace

PlayedPackages::PlayedPackages()
    : activate_("RoActivateInstance", &Activate),
      join_("CoInitializeEx", &Join),
      leave_("CoUninitialize", &Leave) {
  played = this;
}

PlayedPackages::~PlayedPackages() { played = nullptr; }

void PlayedPackages::Add(const std::wstring& folder, const std::string& lines) {
  CreateDirectoryW(Folder(folder).c_str(), nullptr);
  WriteWholeFile(Folder(folder) + L"\\package.txt", lines);
}

HRESULT WINAPI PlayedPackages::Activate(HSTRING className, IInspectable** object) {
  std::string call = "make ";
  for (const wchar_t* c = WindowsGetStringRawBuffer(className, nullptr); *c != 0; ++c) {
    call += static_cast<char>(*c);
  }
  played->calls.push_back(call);
  const auto& root = played->root.Path();
  return Standin::Packages::HandOut(played->script, "ActivateInstance", object, [&] {
    return Standin::Packages::MakeManager(root, played->script);
  });
}

HRESULT WINAPI PlayedPackages::Join(void* reserved, DWORD model) {
  EXPECT_EQ(reserved, nullptr);
  played->calls.push_back("join " + std::to_string(model));
  return played->initializeResult;
}

void WINAPI PlayedPackages::Leave() {
  const int left = Standin::Packages::LiveObjects();
  played->calls.push_back("leave " + std::to_string(left));
}

void PackagesTest::TearDown() { EXPECT_EQ(Standin::Packages::LiveObjects(), 0); }

}  // namespace TestSupport
