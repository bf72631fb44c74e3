#include <windows.h>

#include <activation.h>
#include <gtest/gtest.h>

#include <string>

#include "abi/package_shapes.h"
#include "platform/win32/owners.h"
#include "platform/winrt/calls.h"
#include "support/temp_folder.h"

using namespace Zq::Gantry::Platform;
using namespace Zq::Gantry::Platform::WinRt;
using TestSupport::TempFolder;

namespace {

using GetActivationFactory = HRESULT(WINAPI*)(HSTRING, IActivationFactory**);
using CanUnloadNow = HRESULT(WINAPI*)();

constexpr wchar_t kManager[] = L"Windows.Management.Deployment.PackageManager";

/// The stand-in's DLL, loaded as the Windows Runtime does, with its packages in a folder of the
/// test.
class PackagesServer : public testing::Test {
 protected:
  PackagesServer() {
    _wputenv_s(L"WATTLEAF_PACKAGES_ROOT", root.Path().c_str());
    module_.reset(LoadLibraryW(L"packages_standin.dll"));
  }
  ~PackagesServer() override {
    _wputenv_s(L"WATTLEAF_PACKAGES_ROOT", L"");
    _putenv_s("WATTLEAF_PACKAGES", "");
  }

  template <typename Function>
  Function Find(const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module_.get(), name)));
  }
  HRESULT GetFactory(const wchar_t* name, UniqueInterface<IActivationFactory>& factory) {
    const auto get = Find<GetActivationFactory>("DllGetActivationFactory");
    return get(MakeHString(name).get(), factory.out());
  }
  HRESULT MakeManager(UniqueInterface<IInspectable>& manager) {
    UniqueInterface<IActivationFactory> factory;
    const HRESULT result = GetFactory(kManager, factory);
    return FAILED(result) ? result : factory.get()->ActivateInstance(manager.out());
  }

  TempFolder root;

 private:
  UniqueModule module_;
};

}  // namespace

TEST_F(PackagesServer, CreatesTheManagerAndCountsItsObjects) {
  const auto canUnload = Find<CanUnloadNow>("DllCanUnloadNow");
  UniqueInterface<IInspectable> manager;
  ASSERT_EQ(MakeManager(manager), S_OK);
  EXPECT_EQ(canUnload(), S_FALSE);
  manager.reset();
  EXPECT_EQ(canUnload(), S_OK);
}

TEST_F(PackagesServer, RefusesOtherClasses) {
  UniqueInterface<IActivationFactory> factory;
  EXPECT_EQ(GetFactory(L"Windows.ApplicationModel.Package", factory), CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_FALSE(factory);
}

TEST_F(PackagesServer, ReadsFoldersAndScriptFromTheEnvironment) {
  CreateDirectoryW(root.File(L"a").c_str(), nullptr);
  CreateDirectoryW(root.File(L"no package").c_str(), nullptr);
  TestSupport::WriteWholeFile(root.File(L"a") + L"\\package.txt", "name=A\n");
  _putenv_s("WATTLEAF_PACKAGES", "fail:MoveNext=80004005");
  UniqueInterface<IInspectable> object;
  ASSERT_EQ(MakeManager(object), S_OK);
  const auto manager = FetchInterface<IPackageManager>(*object.get());
  const auto all = FetchObject(*manager.get(), &IPackageManager::FindPackages);
  const auto iterator = FetchObject(*all.get(), &IPackageIterable::First);
  const auto package = FetchObject(*iterator.get(), &IPackageIterator::get_Current);
  const auto id = FetchObject(*package.get(), &IPackage::get_Id);
  EXPECT_EQ(FetchText(*id.get(), &IPackageId::get_Name), L"A");
  boolean more = 1;
  EXPECT_EQ(iterator.get()->MoveNext(&more), E_FAIL);
}

TEST_F(PackagesServer, ReportsAnUnknownWordOfTheScript) {
  _putenv_s("WATTLEAF_PACKAGES", "fail:First");
  UniqueInterface<IInspectable> manager;
  testing::internal::CaptureStderr();
  EXPECT_EQ(MakeManager(manager), S_OK);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "package stand-in: unknown word in fail:First\n");
}
