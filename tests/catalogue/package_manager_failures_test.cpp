#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "catalogue/package_manager.h"
#include "fake_packages.h"
#include "import_patch.h"
#include "platform/winrt/calls.h"
#include "simulated_packages.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::PackagesTest;
using Zq::Gantry::Platform::WinRt::CallFailure;

namespace {

using Ask = std::function<void(InstalledPackage&)>;

struct Property {
  const char* label;
  Ask ask;
  /// The runtime's calls behind it, and those among them that hand an object out.
  std::vector<std::string> calls;
  std::vector<std::string> objects;
};

const std::vector<Property>& Properties() {
  static const std::vector<Property> properties = {
      {"IsFramework", [](auto& package) { package.IsFramework(); }, {"IsFramework"}, {}},
      {"SignatureKind",
       [](auto& package) { package.SignatureKind(); },
       {"IPackage4", "SignatureKind"},
       {}},
      {"Name", [](auto& package) { package.Name(); }, {"Id", "Name"}, {"Id"}},
      {"DisplayName",
       [](auto& package) { package.DisplayName(); },
       {"IPackage2", "DisplayName"},
       {}},
      {"InstalledPath",
       [](auto& package) { package.InstalledPath(); },
       {"InstalledLocation", "IStorageItem", "Path"},
       {"InstalledLocation"}},
      {"LogoPath",
       [](auto& package) { package.LogoPath(); },
       {"IPackage2", "Logo", "LogoPath"},
       {"Logo"}},
  };
  return properties;
}

/// What is raised; S_OK for nothing.
HRESULT Raised(const std::function<void()>& call) {
  try {
    call();
    return S_OK;
  } catch (const CallFailure& failure) {
    return failure.Result();
  }
}

/// What the property raises for a package with these words.
HRESULT RaisedBy(TestSupport::FakePackages& packages, const Ask& ask, const std::string& words) {
  packages.Add(L"a", "name=A\nscript=" + words + "\n");
  const auto walk = FindAllPackages();
  const auto package = walk->Current();
  return Raised([&] { ask(*package); });
}

HRESULT WINAPI GivesAPackage(HSTRING, IInspectable** object) {
  *object =
      Standin::Packages::MakePackage(std::make_shared<const Standin::Packages::PackageFolder>());
  return S_OK;
}

}  // namespace

TEST_F(PackagesTest, EachCallBehindAPropertyRaisesItsResult) {
  for (const Property& property : Properties()) {
    for (const std::string& call : property.calls) {
      EXPECT_EQ(RaisedBy(packages, property.ask, "fail:" + call + "=80070005"), E_ACCESSDENIED)
          << property.label << " " << call;
    }
  }
}

TEST_F(PackagesTest, EachMissingObjectBehindAPropertyIsRaised) {
  for (const Property& property : Properties()) {
    for (const std::string& call : property.objects) {
      EXPECT_EQ(RaisedBy(packages, property.ask, "null:" + call), E_POINTER)
          << property.label << " " << call;
    }
  }
}

TEST_F(PackagesTest, FailuresBesideAPropertyDoNotTouchIt) {
  for (const Property& property : Properties()) {
    for (const Property& other : Properties()) {
      if (other.label == property.label) continue;
      const std::string& last = other.calls.back();
      EXPECT_EQ(RaisedBy(packages, property.ask, "fail:" + last + "=80070005"), S_OK)
          << property.label << " " << last;
    }
  }
}

TEST_F(PackagesTest, NoManagerNoCollectionAndNoIteratorAreRaised) {
  for (const std::string call : {"ActivateInstance", "FindPackages", "First"}) {
    packages.script = {};
    EXPECT_TRUE(packages.script.Add("fail:" + call + "=80070005"));
    EXPECT_EQ(Raised([] { static_cast<void>(FindAllPackages()); }), E_ACCESSDENIED) << call;
    packages.script = {};
    EXPECT_TRUE(packages.script.Add("null:" + call));
    EXPECT_EQ(Raised([] { static_cast<void>(FindAllPackages()); }), E_POINTER) << call;
  }
}

TEST_F(PackagesTest, ObjectThatIsNoManagerIsRaised) {
  const Standin::ImportPatch patch("RoActivateInstance", &GivesAPackage);
  EXPECT_EQ(Raised([] { static_cast<void>(FindAllPackages()); }), E_NOINTERFACE);
}

TEST_F(PackagesTest, FailuresOfTheWalkAreRaised) {
  packages.Add(L"a", "name=A\nscript=fail:MoveNext=80004005,fail:Current=80070005\n");
  EXPECT_TRUE(packages.script.Add("fail:HasCurrent=8000000E"));
  const auto walk = FindAllPackages();
  EXPECT_EQ(Raised([&] { walk->HasCurrent(); }), static_cast<HRESULT>(0x8000000EUL));
  EXPECT_EQ(Raised([&] { walk->Current(); }), E_ACCESSDENIED);
  EXPECT_EQ(Raised([&] { walk->MoveNext(); }), E_FAIL);
}

TEST_F(PackagesTest, MissingCurrentPackageIsRaised) {
  packages.Add(L"a", "name=A\nscript=null:Current\n");
  const auto walk = FindAllPackages();
  EXPECT_EQ(Raised([&] { walk->Current(); }), E_POINTER);
}
