#include "catalogue/package_manager.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fake_packages.h"
#include "platform/winrt/calls.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::PackagesTest;
using Zq::Gantry::Platform::WinRt::CallFailure;
using Calls = std::vector<std::string>;

namespace {

const std::string kMake = "make Windows.Management.Deployment.PackageManager";

}  // namespace

TEST_F(PackagesTest, EmptyCollectionHasNoCurrent) { EXPECT_FALSE(FindAllPackages()->HasCurrent()); }

TEST_F(PackagesTest, EachPackageTellsWhatTheRuntimeTells) {
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

TEST_F(PackagesTest, AddressOfALogoHasThePathOfAUriOrOfTheFileAsAWordSays) {
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

TEST_F(PackagesTest, AddressOfALogoIsThatOfAUriWhereNoWordSaysOtherwise) {
  packages.Add(L"a", "name=A\nlogo=a b.png\n");
  EXPECT_TRUE(FindAllPackages()->Current()->LogoPath().ends_with(L"/a%20b.png"));
}

TEST_F(PackagesTest, FrameworksAndTheSystemsPackagesAreToldAsSuch) {
  packages.Add(L"a", "name=A\nkind=framework\n");
  packages.Add(L"b", "name=B\nkind=system\n");
  const auto walk = FindAllPackages();
  EXPECT_TRUE(walk->Current()->IsFramework());
  EXPECT_TRUE(walk->MoveNext());
  EXPECT_FALSE(walk->Current()->IsFramework());
  EXPECT_EQ(walk->Current()->SignatureKind(), kSystemSignature);
}

TEST_F(PackagesTest, PackageOutlivesTheStepOfTheWalk) {
  packages.Add(L"a", "name=A\n");
  packages.Add(L"b", "name=B\n");
  const auto walk = FindAllPackages();
  const auto first = walk->Current();
  EXPECT_TRUE(walk->MoveNext());
  EXPECT_EQ(first->Name(), L"A");
  EXPECT_EQ(walk->Current()->Name(), L"B");
}

TEST_F(PackagesTest, ApartmentIsJoinedBeforeAndLeftBehindTheLastObject) {
  packages.Add(L"a", "name=A\n");
  {
    const auto walk = FindAllPackages();
    EXPECT_EQ(walk->Current()->Name(), L"A");
    EXPECT_EQ(packages.calls, (Calls{"join 0", kMake}));
  }
  EXPECT_EQ(packages.calls, (Calls{"join 0", kMake, "leave 0"}));
}

TEST_F(PackagesTest, ApartmentThatTheThreadHadIsLeftAsOftenAsItWasJoined) {
  packages.initializeResult = S_FALSE;
  static_cast<void>(FindAllPackages());
  EXPECT_EQ(packages.calls, (Calls{"join 0", kMake, "leave 0"}));
}

TEST_F(PackagesTest, ThreadOfAnotherApartmentStaysInIt) {
  packages.initializeResult = RPC_E_CHANGED_MODE;
  static_cast<void>(FindAllPackages());
  EXPECT_EQ(packages.calls, (Calls{"join 0", kMake}));
}

TEST_F(PackagesTest, ApartmentIsLeftWhereTheManagerFails) {
  EXPECT_TRUE(packages.script.Add("fail:FindPackages=80070005"));
  EXPECT_THROW(FindAllPackages(), CallFailure);
  EXPECT_EQ(packages.calls, (Calls{"join 0", kMake, "leave 0"}));
}
