#include "catalogue/packaged_apps.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/scratch_folder.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::ScratchFolder;
using TestSupport::WriteBytes;

namespace {

/// The results of a fake package. The operations in `throws` throw.
struct Facts {
  std::wstring name = L"Some.App";
  std::wstring displayName = L"Some App";
  std::wstring installed;
  std::wstring ownLogo = L"/own.png";
  bool isFramework = false;
  int signatureKind = 3;
  std::set<std::string> throws = {};
};

class FakePackage final : public InstalledPackage {
 public:
  FakePackage(const Facts& facts, std::vector<std::string>& queries)
      : facts_(facts), queries_(queries) {}

  bool IsFramework() override { return Answer("IsFramework", facts_.isFramework); }
  int SignatureKind() override { return Answer("SignatureKind", facts_.signatureKind); }
  std::wstring Name() override { return Answer("Name", facts_.name); }
  std::wstring DisplayName() override { return Answer("DisplayName", facts_.displayName); }
  std::wstring InstalledPath() override { return Answer("InstalledPath", facts_.installed); }
  std::wstring LogoPath() override { return Answer("LogoPath", facts_.ownLogo); }

 private:
  template <typename Value>
  Value Answer(const char* operation, const Value& value) {
    queries_.push_back(operation);
    // An exception need not be a standard exception.
    if (facts_.throws.count(operation) != 0) throw 5;
    return value;
  }

  const Facts& facts_;
  std::vector<std::string>& queries_;
};

class FakeWalk final : public PackageWalk {
 public:
  explicit FakeWalk(std::vector<Facts> packages) : packages_(std::move(packages)) {}

  bool HasCurrent() override {
    if (throws.count("HasCurrent") != 0) throw std::runtime_error("HasCurrent");
    return !packages_.empty();
  }
  std::unique_ptr<InstalledPackage> Current() override {
    ++currents;
    if (packages_[at_].throws.count("Current") != 0) throw std::runtime_error("Current");
    return std::make_unique<FakePackage>(packages_.at(at_), queries);
  }
  bool MoveNext() override {
    if (throws.count("MoveNext") != 0) throw std::runtime_error("MoveNext");
    return ++at_ < packages_.size();
  }

  std::set<std::string> throws;
  std::vector<std::string> queries;
  int currents = 0;

 private:
  std::vector<Facts> packages_;
  std::size_t at_ = 0;
};

/// A catalogue of packages whose manifests name a logo in `folder`.
class AddPackagedAppsTest : public testing::Test {
 protected:
  AddPackagedAppsTest() {
    WriteBytes(folder.File("Logo.scale-100.png"), "png");
    installed = folder.File("Logo.scale-100.png").parent_path().wstring();
  }

  Facts App(const std::wstring& name) const {
    return {.name = name, .displayName = name + L" shown", .installed = installed};
  }
  void Add(FakeWalk& walk) {
    const auto read = [this](const std::wstring&, std::wstring& logo) {
      if (manifestThrows) throw 5;
      logo = manifestLogo;
    };
    AddPackagedApps(
        walk, read, [this] { ++failures; }, apps);
  }
  void Add(const Facts& facts) {
    FakeWalk walk({facts});
    Add(walk);
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& [name, record] : apps) names.push_back(name);
    return names;
  }
  const UwpAppRecord& Only() const { return apps.begin()->second; }
  std::string LogoOnDisk() const {
    return std::filesystem::path(installed).append("Logo.scale-100.png").string();
  }

  ScratchFolder folder;
  std::wstring installed;
  std::wstring manifestLogo = L"Logo.png";
  bool manifestThrows = false;
  PackagedApps apps;
  int failures = 0;
};

using Words = std::vector<std::string>;

}  // namespace

TEST_F(AddPackagedAppsTest, AddsNameDisplayNameAndLogo) {
  Add(App(L"Some.App"));
  ASSERT_EQ(Names(), Words{"Some.App"});
  EXPECT_EQ(Only().DisplayName, "Some.App shown");
  EXPECT_EQ(Only().Logo, LogoOnDisk());
  EXPECT_EQ(failures, 0);
}

TEST_F(AddPackagedAppsTest, OmitsAFramework) {
  Facts facts = App(L"Some.Framework");
  facts.isFramework = true;
  FakeWalk walk({facts});
  Add(walk);
  EXPECT_TRUE(apps.empty());
  EXPECT_EQ(walk.queries, Words{"IsFramework"});
}

TEST_F(AddPackagedAppsTest, OmitsPackagesWithTheSystemsSignatureOnly) {
  for (const int kind : {0, 1, 2, 3, 4, 5}) {
    apps.clear();
    Facts facts = App(L"App");
    facts.signatureKind = kind;
    Add(facts);
    EXPECT_EQ(apps.empty(), kind == 4) << kind;
  }
}

TEST_F(AddPackagedAppsTest, UsesTheOwnLogoWhenTheManifestNamesNone) {
  manifestLogo = L"";
  Facts facts = App(L"App");
  facts.ownLogo = L"/C:/Apps/Store.png";
  Add(facts);
  ASSERT_EQ(apps.size(), 1U);
  EXPECT_EQ(Only().Logo, "C:/Apps/Store.png");
}

TEST_F(AddPackagedAppsTest, UsesTheOwnLogoWhenTheNamedOneIsMissing) {
  manifestLogo = L"Other.png";
  Add(App(L"App"));
  ASSERT_EQ(apps.size(), 1U);
  EXPECT_EQ(Only().Logo, "own.png");
}

TEST_F(AddPackagedAppsTest, UsesTheOwnLogoWhenTheDirectoryCannotBeSearched) {
  manifestLogo = L"missing/Logo.png";
  testing::internal::CaptureStderr();
  Add(App(L"App"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Error resolving icon path: directory_iterator::directory_iterator\n");
  ASSERT_EQ(apps.size(), 1U);
  EXPECT_EQ(Only().Logo, "own.png");
}

TEST_F(AddPackagedAppsTest, DoesNotQueryTheOwnLogoWhenOneWasFound) {
  FakeWalk walk({App(L"App")});
  Add(walk);
  EXPECT_EQ(walk.queries,
            (Words{"IsFramework", "SignatureKind", "Name", "DisplayName", "InstalledPath"}));
}

TEST_F(AddPackagedAppsTest, OmitsAPackageWithoutALogoSilently) {
  manifestLogo = L"";
  for (const std::wstring own : {L"", L"/"}) {
    Facts facts = App(L"App");
    facts.ownLogo = own;
    Add(facts);
  }
  EXPECT_TRUE(apps.empty());
  EXPECT_EQ(failures, 0);
}

TEST_F(AddPackagedAppsTest, OmitsAPackageWithoutADisplayNameAfterQueryingItsLogo) {
  Facts facts = App(L"App");
  facts.displayName = L"";
  FakeWalk walk({facts});
  Add(walk);
  EXPECT_TRUE(apps.empty());
  EXPECT_EQ(walk.queries,
            (Words{"IsFramework", "SignatureKind", "Name", "DisplayName", "LogoPath"}));
}

TEST_F(AddPackagedAppsTest, TreatsAThrowingDisplayNameAsEmpty) {
  Facts facts = App(L"App");
  facts.throws = {"DisplayName"};
  Add(facts);
  EXPECT_TRUE(apps.empty());
  EXPECT_EQ(failures, 0);
}

TEST_F(AddPackagedAppsTest, UsesTheOwnLogoWhenTheSearchThrows) {
  Facts facts = App(L"App");
  facts.throws = {"InstalledPath"};
  Add(facts);
  ASSERT_EQ(apps.size(), 1U);
  EXPECT_EQ(Only().Logo, "own.png");

  apps.clear();
  manifestThrows = true;
  Add(App(L"App"));
  ASSERT_EQ(apps.size(), 1U);
  EXPECT_EQ(Only().Logo, "own.png");
  EXPECT_EQ(failures, 0);
}

TEST_F(AddPackagedAppsTest, TreatsAThrowingOwnLogoAsEmpty) {
  manifestLogo = L"";
  Facts facts = App(L"App");
  facts.throws = {"LogoPath"};
  Add(facts);
  EXPECT_TRUE(apps.empty());
  EXPECT_EQ(failures, 0);
}

TEST_F(AddPackagedAppsTest, ReportsAThrowingPackageAndContinues) {
  for (const char* operation : {"Current", "IsFramework", "SignatureKind", "Name"}) {
    apps.clear();
    failures = 0;
    Facts bad = App(L"Bad");
    bad.throws = {operation};
    FakeWalk walk({App(L"Before"), bad, App(L"Later")});
    Add(walk);
    EXPECT_EQ(Names(), (Words{"Before", "Later"})) << operation;
    EXPECT_EQ(failures, 1) << operation;
  }
}

TEST_F(AddPackagedAppsTest, PropagatesTheExceptionOfMoveNext) {
  FakeWalk walk({App(L"First"), App(L"Second")});
  walk.throws = {"MoveNext"};
  EXPECT_THROW(Add(walk), std::runtime_error);
  EXPECT_EQ(walk.currents, 1);
  EXPECT_EQ(failures, 0);
}

TEST_F(AddPackagedAppsTest, PropagatesTheExceptionOfHasCurrent) {
  FakeWalk walk({App(L"First")});
  walk.throws = {"HasCurrent"};
  EXPECT_THROW(Add(walk), std::runtime_error);
  EXPECT_EQ(walk.currents, 0);
}

TEST_F(AddPackagedAppsTest, ReadsNoPackageFromAnEmptyWalk) {
  FakeWalk walk({});
  Add(walk);
  EXPECT_EQ(walk.currents, 0);
  EXPECT_TRUE(apps.empty());
}

TEST_F(AddPackagedAppsTest, KeepsTheLastOfTwoEqualNames) {
  Facts first = App(L"App");
  Facts second = App(L"App");
  second.displayName = L"for another user";
  FakeWalk walk({first, second});
  Add(walk);
  ASSERT_EQ(Names(), Words{"App"});
  EXPECT_EQ(Only().DisplayName, "for another user");
}

TEST_F(AddPackagedAppsTest, OmittedSecondOfTwoEqualNamesLeavesTheFirst) {
  Facts second = App(L"App");
  second.displayName = L"";
  FakeWalk walk({App(L"App"), second});
  Add(walk);
  EXPECT_EQ(Names(), Words{"App"});
}

TEST_F(AddPackagedAppsTest, KeepsNamesWithACommonPrefix) {
  FakeWalk walk({App(L"Orchard.NotesPro"), App(L"Orchard.Notes")});
  Add(walk);
  EXPECT_EQ(Names(), (Words{"Orchard.Notes", "Orchard.NotesPro"}));
}

TEST_F(AddPackagedAppsTest, NarrowsAllThreeTextsToTheirLowBytes) {
  manifestLogo = L"";
  Facts facts;
  facts.name = L"N\u0141\u00e9";
  facts.displayName = L"S\u0142\u20ac";
  facts.ownLogo = L"/C:\\\u0158.png";
  Add(facts);
  ASSERT_EQ(Names(), Words{"NA\xE9"});
  EXPECT_EQ(Only().DisplayName, "SB\xAC");
  EXPECT_EQ(Only().Logo, "C:\\X.png");
}

TEST_F(AddPackagedAppsTest, KeepsExistingEntriesAndReplacesEqualNames) {
  apps = {{"App", {"old", "old.png"}}, {"Other", {"other", "other.png"}}};
  Add(App(L"App"));
  EXPECT_EQ(Names(), (Words{"App", "Other"}));
  EXPECT_EQ(apps["App"].DisplayName, "App shown");
  EXPECT_EQ(apps["Other"].DisplayName, "other");
}
