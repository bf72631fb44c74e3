// Stand-in for the system's package manager. It simulates the packages below
// "C:\Program Files\WindowsApps": each folder with a file "package.txt" is a package
// (package_folder.h describes its lines); the manifest and the logos beside it are real files.
//
// Environment variables change that: WATTLEAF_PACKAGES holds words of package_script.h,
// WATTLEAF_PACKAGES_ROOT another folder. An unknown word is reported on standard error.

#include <windows.h>

#include <activation.h>
#include <winstring.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "runtime_object.h"
#include "simulated_packages.h"

namespace {

using namespace Standin::Packages;

constexpr wchar_t kRoot[] = L"C:\\Program Files\\WindowsApps";

class ManagerFactory final : public RuntimeObject<IActivationFactory, IActivationFactory> {
 public:
  STDMETHODIMP ActivateInstance(IInspectable** instance) override {
    Script script;
    const char* words = std::getenv("WATTLEAF_PACKAGES");
    if (words != nullptr && !script.Add(words)) {
      std::fprintf(stderr, "package stand-in: unknown word in %s\n", words);
    }
    const wchar_t* root = _wgetenv(L"WATTLEAF_PACKAGES_ROOT");
    return HandOut(script, "ActivateInstance", instance,
                   [&] { return MakeManager(root != nullptr ? root : kRoot, script); });
  }
};

}  // namespace

extern "C" HRESULT WINAPI DllGetActivationFactory(HSTRING className, IActivationFactory** factory) {
  *factory = nullptr;
  UINT32 length = 0;
  const wchar_t* name = WindowsGetStringRawBuffer(className, &length);
  if (std::wstring_view(name, length) != kManagerClass) return CLASS_E_CLASSNOTAVAILABLE;
  *factory = new ManagerFactory;
  return S_OK;
}

extern "C" HRESULT WINAPI DllCanUnloadNow() { return LiveObjects() == 0 ? S_OK : S_FALSE; }
