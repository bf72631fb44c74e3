#include <windows.h>

#include <gtest/gtest.h>
#include <wbemidl.h>

#include <cstdlib>

#include "platform/platform_calls.h"
#include "platform/win32/com_owners.h"
#include "platform/win32/owners.h"

using Zq::Gantry::Platform::MakeBstr;
using Zq::Gantry::Platform::UniqueInterface;
using Zq::Gantry::Platform::UniqueModule;

namespace {

using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);
using CanUnloadNow = HRESULT(WINAPI*)();

/// Loads the stand-in as COM does, with words in its environment variable.
class FirmwareStandin : public testing::Test {
 protected:
  void Load(const char* words) {
    _putenv_s("WATTLEAF_FIRMWARE", words);
    module_.reset(LoadLibraryW(L"firmware_standin.dll"));
    ASSERT_TRUE(module_);
  }
  void TearDown() override { _putenv_s("WATTLEAF_FIRMWARE", ""); }

  template <typename Function>
  Function Find(const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module_.get(), name)));
  }
  HRESULT Connect(UniqueInterface<IWbemServices>& services) {
    UniqueInterface<IClassFactory> factory;
    HRESULT result = Find<GetClassObject>("DllGetClassObject")(
        CLSID_WbemLocator, IID_IClassFactory, reinterpret_cast<void**>(factory.out()));
    if (FAILED(result)) return result;
    UniqueInterface<IWbemLocator> locator;
    result = factory.get()->CreateInstance(nullptr, IID_IWbemLocator,
                                           reinterpret_cast<void**>(locator.out()));
    if (FAILED(result)) return result;
    const auto name = MakeBstr(L"\\\\.\\root\\wmi");
    return locator.get()->ConnectServer(name.get(), nullptr, nullptr, nullptr, 0, nullptr, nullptr,
                                        services.out());
  }

 private:
  UniqueModule module_;
};

}  // namespace

TEST_F(FirmwareStandin, ServesTheLocatorAndCountsItsObjects) {
  Load("");
  UniqueInterface<IWbemServices> services;
  EXPECT_EQ(Connect(services), S_OK);
  const auto canUnload = Find<CanUnloadNow>("DllCanUnloadNow");
  EXPECT_EQ(canUnload(), S_FALSE);
  services.reset();
  EXPECT_EQ(canUnload(), S_OK);
}

TEST_F(FirmwareStandin, RefusesOtherClasses) {
  Load("");
  void* object = nullptr;
  EXPECT_EQ(Find<GetClassObject>("DllGetClassObject")(CLSID_WbemStatusCodeText, IID_IClassFactory,
                                                      &object),
            CLASS_E_CLASSNOTAVAILABLE);
}

TEST_F(FirmwareStandin, FollowsTheDeviationsInTheEnvironment) {
  Load("no-firmware-namespace,flag-clear");
  UniqueInterface<IWbemServices> services;
  EXPECT_EQ(Connect(services), TestSupport::Result(0x8004100E));
}

TEST(FirmwareScript, ReturnsUnknownWords) {
  EXPECT_EQ(Standin::Firmware::TheScript().Reset("flag-clear,nonsense,fail:X"),
            (std::vector<std::string>{"nonsense", "fail:X"}));
}
