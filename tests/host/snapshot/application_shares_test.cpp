#include "snapshot/application_shares.h"

#include <gtest/gtest.h>

#include <string>

using namespace WattleafHost;
using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

/// Returns a path for each executable, and makes no file.
class FakeIcons final : public IconMaker {
 public:
  std::string ExportAppIcon(const std::string&, const IconFile& file) override {
    return file.Path();
  }
  bool CopyLogo(const std::string&, const std::string&) override { return false; }
};

constexpr char kProgram[] = "\\Device\\HarddiskVolume3\\a.exe";

/// A store whose rows all have the application `id`.
class Store {
 public:
  Store& Add(const std::string& displayName, std::int64_t energy, const char* id = "Package") {
    rows_.rows.push_back({IndexOf(id), IndexOf(displayName), {}, energy});
    return *this;
  }

  [[nodiscard]] std::optional<ApplicationShares> ShareOut(const DesktopApps& desktopApps = {}) {
    const PackagedApps packagedApps;
    FakeIcons icons;
    return TryShareOut(rows_, {desktopApps, packagedApps, "C:\\icons", icons}, 30);
  }

 private:
  std::uint32_t IndexOf(const std::string& name) {
    const auto next = static_cast<std::uint32_t>(rows_.names.size());
    auto& entry = rows_.indexByName.FindOrAdd(name, next);
    if (entry.second == next) rows_.names.push_back(&entry.first);
    return entry.second;
  }

  StoredRows rows_;
};

}  // namespace

TEST(TryShareOut, HasTheSharesAndTheRest) {
  // 50, 25 and 12.5 percent of 800; a program that is not installed has the rest.
  const auto shares = Store()
                          .Add("Large", 400)
                          .Add("Small", 100)
                          .Add("Middle", 200)
                          .Add("Unlisted", 100, kProgram)
                          .ShareOut();
  ASSERT_TRUE(shares.has_value());
  ASSERT_EQ(shares->largest.size(), 3u);
  EXPECT_EQ(shares->largest[0].name, "Large");
  EXPECT_EQ(shares->largest[0].percent, 50.0);
  EXPECT_EQ(shares->largest[2].name, "Small");
  EXPECT_EQ(shares->largest[2].percent, 12.5);
  EXPECT_EQ(shares->everythingElsePercent, 12.5);
  EXPECT_EQ(shares->days, 30u);
}

TEST(TryShareOut, HasTheIconOfAnInstalledProgram) {
  const auto shares = Store().Add("Meadow", 1, kProgram).ShareOut({{L"Meadow", L""}});
  ASSERT_TRUE(shares.has_value());
  ASSERT_EQ(shares->largest.size(), 1u);
  EXPECT_EQ(shares->largest[0].icon, "C:\\icons\\Meadow.png");
}

TEST(TryShareOut, ReplacesBytesThatAreNotUtf8) {
  const auto shares = Store().Add("a\xFF\"b", 1).ShareOut();
  ASSERT_TRUE(shares.has_value());
  EXPECT_EQ(shares->largest[0].name, "a\xEF\xBF\xBD\"b");
}

TEST(TryShareOut, LeavesTheWholeToTheRestIfNoApplicationIsShown) {
  const auto shares = Store().Add("Unlisted", 5, kProgram).ShareOut();
  ASSERT_TRUE(shares.has_value());
  EXPECT_TRUE(shares->largest.empty());
  EXPECT_EQ(shares->everythingElsePercent, 100.0);
}

TEST(TryShareOut, IsEmptyIfTheEnergiesAddUpToZero) {
  EXPECT_FALSE(Store().ShareOut().has_value());
  EXPECT_FALSE(Store().Add("Idle", 0).ShareOut().has_value());
  EXPECT_FALSE(Store().Add("Up", 7).Add("Down", -7).ShareOut().has_value());
  // The total adds the low 32 bits.
  EXPECT_FALSE(Store().Add("Large", std::int64_t{1} << 32).ShareOut().has_value());
}

TEST(RestOfPercents, IsZeroForARestOfRounding) {
  EXPECT_EQ(RestOfPercents(99.9995), 0.0);
  EXPECT_EQ(RestOfPercents(100.0005), 0.0);
  EXPECT_EQ(RestOfPercents(99.75), 0.25);
  EXPECT_EQ(RestOfPercents(150.0), -50.0);
}
