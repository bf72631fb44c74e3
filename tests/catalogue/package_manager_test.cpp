#include "catalogue/package_manager.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "fake_packages.h"
#include "import_patch.h"
#include "platform/winrt/calls.h"
#include "simulated_packages.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::PackagesTest;
using Zq::Gantry::Platform::WinRt::CallFailure;
using Calls = std::vector<std::string>;

namespace {

const std::string kMake = "make Windows.Management.Deployment.PackageManager";

using FindAllPackagesTest = PackagesTest;
using InstalledPackageTest = PackagesTest;
using PackageWalkTest = PackagesTest;

using Query = std::function<void(InstalledPackage&)>;

struct Property {
  const char* label;
  Query query;
  /// The calls of the runtime that read it, and those of them that return an object.
  std::vector<std::string> calls;
  std::vector<std::string> objects;
};

const std::vector<Property>& Properties() {
  static const std::vector<Property> properties = {
      {"IsFramework",
       [](auto& package) { static_cast<void>(package.IsFramework()); },
       {"IsFramework"},
       {}},
      {"SignatureKind",
       [](auto& package) { static_cast<void>(package.SignatureKind()); },
       {"IPackage4", "SignatureKind"},
       {}},
      {"Name", [](auto& package) { static_cast<void>(package.Name()); }, {"Id", "Name"}, {"Id"}},
      {"DisplayName",
       [](auto& package) { static_cast<void>(package.DisplayName()); },
       {"IPackage2", "DisplayName"},
       {}},
      {"InstalledPath",
       [](auto& package) { static_cast<void>(package.InstalledPath()); },
       {"InstalledLocation", "IStorageItem", "Path"},
       {"InstalledLocation"}},
      {"LogoPath",
       [](auto& package) { static_cast<void>(package.LogoPath()); },
       {"IPackage2", "Logo", "LogoPath"},
       {"Logo"}},
  };
  return properties;
}

/// The result of the exception that `call` throws; S_OK if it throws none.
HRESULT ThrownResult(const std::function<void()>& call) {
  try {
    call();
    return S_OK;
  } catch (const CallFailure& failure) {
    return failure.Result();
  }
}

/// The result that a property throws for a package with the given script.
HRESULT ThrownResultOf(TestSupport::FakePackages& packages, const Query& query,
                       const std::string& script) {
  packages.Add(L"a", "name=A\nscript=" + script + "\n");
  const auto walk = FindAllPackages();
  const auto package = walk->Current();
  return ThrownResult([&] { query(*package); });
}

HRESULT WINAPI ActivateAPackage(HSTRING, IInspectable** object) {
  *object =
      Standin::Packages::MakePackage(std::make_shared<const Standin::Packages::PackageFolder>());
  return S_OK;
}

}  // namespace

TEST_F(PackageWalkTest, HasNoCurrentInAnEmptyCollection) {
  EXPECT_FALSE(FindAllPackages()->HasCurrent());
}

TEST_F(InstalledPackageTest, PropertiesReturnTheValuesOfTheRuntime) {
  packages.Add(L"a", "name=Some.App\nshown=Some \xC5\x82 App\nkind=app\nlogo=Assets\\Logo.png\n");
  const auto walk = FindAllPackages();
  ASSERT_TRUE(walk->HasCurrent());
  const auto package = walk->Current();
  EXPECT_FALSE(package->IsFramework());
  EXPECT_EQ(package->SignatureKind(), 3);
  EXPECT_EQ(package->Name(), L"Some.App");
  EXPECT_EQ(package->DisplayName(), L"Some \u0142 App");
  EXPECT_EQ(package->InstalledPath(), packages.Folder(L"a"));
  EXPECT_FALSE(walk->MoveNext());
}

TEST_F(InstalledPackageTest, LogoPathIsThatOfAUriOrOfTheFile) {
  const std::string lines = "name=A\nlogo=Own & \xC5\x82ogo#1%.png\nscript=address:";
  packages.Add(L"a b", lines + "uri\n");
  packages.Add(L"c", lines + "plain\n");
  const auto walk = FindAllPackages();
  const std::wstring uri = walk->Current()->LogoPath();
  EXPECT_TRUE(uri.starts_with(L"/" + packages.Folder(L"").substr(0, 2) + L"/")) << uri.size();
  EXPECT_TRUE(uri.ends_with(L"/a%20b/Own%20&%20%C5%82ogo%231%25.png")) << uri.size();
  ASSERT_TRUE(walk->MoveNext());
  EXPECT_EQ(walk->Current()->LogoPath(),
            L"/" + packages.Folder(L"c") + L"\\Own & \u0142ogo#1%.png");
}

TEST_F(InstalledPackageTest, LogoPathIsThatOfAUriByDefault) {
  packages.Add(L"a", "name=A\nlogo=a b.png\n");
  EXPECT_TRUE(FindAllPackages()->Current()->LogoPath().ends_with(L"/a%20b.png"));
}

TEST_F(InstalledPackageTest, ReportsFrameworksAndSystemPackages) {
  packages.Add(L"a", "name=A\nkind=framework\n");
  packages.Add(L"b", "name=B\nkind=system\n");
  const auto walk = FindAllPackages();
  EXPECT_TRUE(walk->Current()->IsFramework());
  EXPECT_TRUE(walk->MoveNext());
  EXPECT_FALSE(walk->Current()->IsFramework());
  EXPECT_EQ(walk->Current()->SignatureKind(), kSystemSignature);
}

TEST_F(InstalledPackageTest, OutlivesTheStepOfTheWalk) {
  packages.Add(L"a", "name=A\n");
  packages.Add(L"b", "name=B\n");
  const auto walk = FindAllPackages();
  const auto first = walk->Current();
  EXPECT_TRUE(walk->MoveNext());
  EXPECT_EQ(first->Name(), L"A");
  EXPECT_EQ(walk->Current()->Name(), L"B");
}

TEST_F(FindAllPackagesTest, JoinsTheApartmentFirstAndLeavesItAfterTheLastObject) {
  packages.Add(L"a", "name=A\n");
  {
    const auto walk = FindAllPackages();
    EXPECT_EQ(walk->Current()->Name(), L"A");
    EXPECT_EQ(packages.calls, (Calls{"join 0", kMake}));
  }
  EXPECT_EQ(packages.calls, (Calls{"join 0", kMake, "leave 0"}));
}

TEST_F(FindAllPackagesTest, LeavesAnApartmentThatTheThreadHadAlreadyJoined) {
  packages.initializeResult = S_FALSE;
  static_cast<void>(FindAllPackages());
  EXPECT_EQ(packages.calls, (Calls{"join 0", kMake, "leave 0"}));
}

TEST_F(FindAllPackagesTest, LeavesAThreadOfAnotherApartmentUnchanged) {
  packages.initializeResult = RPC_E_CHANGED_MODE;
  static_cast<void>(FindAllPackages());
  EXPECT_EQ(packages.calls, (Calls{"join 0", kMake}));
}

TEST_F(FindAllPackagesTest, LeavesTheApartmentWhenTheManagerFails) {
  EXPECT_TRUE(packages.script.Add("fail:FindPackages=80070005"));
  EXPECT_THROW(static_cast<void>(FindAllPackages()), CallFailure);
  EXPECT_EQ(packages.calls, (Calls{"join 0", kMake, "leave 0"}));
}

TEST_F(InstalledPackageTest, PropertyThrowsTheResultOfEachFailingCall) {
  for (const Property& property : Properties()) {
    for (const std::string& call : property.calls) {
      EXPECT_EQ(ThrownResultOf(packages, property.query, "fail:" + call + "=80070005"),
                E_ACCESSDENIED)
          << property.label << " " << call;
    }
  }
}

TEST_F(InstalledPackageTest, PropertyThrowsForEachMissingObject) {
  for (const Property& property : Properties()) {
    for (const std::string& call : property.objects) {
      EXPECT_EQ(ThrownResultOf(packages, property.query, "null:" + call), E_POINTER)
          << property.label << " " << call;
    }
  }
}

TEST_F(InstalledPackageTest, PropertyIsIndependentOfFailuresOfOthers) {
  for (const Property& property : Properties()) {
    for (const Property& other : Properties()) {
      if (other.label == property.label) continue;
      const std::string& last = other.calls.back();
      EXPECT_EQ(ThrownResultOf(packages, property.query, "fail:" + last + "=80070005"), S_OK)
          << property.label << " " << last;
    }
  }
}

TEST_F(FindAllPackagesTest, ThrowsWithoutAManagerACollectionOrAnIterator) {
  for (const std::string call : {"ActivateInstance", "FindPackages", "First"}) {
    packages.script = {};
    EXPECT_TRUE(packages.script.Add("fail:" + call + "=80070005"));
    EXPECT_EQ(ThrownResult([] { static_cast<void>(FindAllPackages()); }), E_ACCESSDENIED) << call;
    packages.script = {};
    EXPECT_TRUE(packages.script.Add("null:" + call));
    EXPECT_EQ(ThrownResult([] { static_cast<void>(FindAllPackages()); }), E_POINTER) << call;
  }
}

TEST_F(FindAllPackagesTest, ThrowsForAnObjectThatIsNotAManager) {
  const Standin::ImportPatch patch("RoActivateInstance", &ActivateAPackage);
  EXPECT_EQ(ThrownResult([] { static_cast<void>(FindAllPackages()); }), E_NOINTERFACE);
}

TEST_F(PackageWalkTest, ThrowsTheResultOfEachFailingStep) {
  packages.Add(L"a", "name=A\nscript=fail:MoveNext=80004005,fail:Current=80070005\n");
  EXPECT_TRUE(packages.script.Add("fail:HasCurrent=8000000E"));
  const auto walk = FindAllPackages();
  EXPECT_EQ(ThrownResult([&] { static_cast<void>(walk->HasCurrent()); }),
            static_cast<HRESULT>(0x8000000EUL));
  EXPECT_EQ(ThrownResult([&] { static_cast<void>(walk->Current()); }), E_ACCESSDENIED);
  EXPECT_EQ(ThrownResult([&] { static_cast<void>(walk->MoveNext()); }), E_FAIL);
}

TEST_F(PackageWalkTest, ThrowsForAMissingCurrentPackage) {
  packages.Add(L"a", "name=A\nscript=null:Current\n");
  const auto walk = FindAllPackages();
  EXPECT_EQ(ThrownResult([&] { static_cast<void>(walk->Current()); }), E_POINTER);
}
