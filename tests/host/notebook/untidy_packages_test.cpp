// The service with packaged applications as untidy as those of real notebooks.

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/notebook/untidy_applications.h"
#include "support/scoped_variable.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using TestSupport::IconName;
using TestSupport::ScopedVariable;

namespace {

class UntidyPackages : public TestSupport::UntidyApplications {};

}  // namespace

TEST_F(UntidyPackages, OwnLogoWithTheAddressOfAUriIsNotFoundAndTheEntryHasNoIcon) {
  const auto ranking = Rank(L"Larch.Calendar");
  ASSERT_EQ(ranking.size(), 1u);
  EXPECT_EQ(ranking[0].name, "Larch Calendar");
  EXPECT_EQ(ranking[0].icon, "");
  EXPECT_THAT(IconFiles(), IsEmpty());
}

TEST_F(UntidyPackages, OwnLogoWithAPlainAddressIsTheIcon) {
  const ScopedVariable address(L"WATTLEAF_PACKAGES", L"address:plain");
  const auto ranking = Rank(L"Larch.Calendar");
  ASSERT_EQ(ranking.size(), 1u);
  EXPECT_EQ(ranking[0].name, "Larch Calendar");
  EXPECT_EQ(IconName(ranking[0]), "Larch Calendar.png");
  EXPECT_EQ(Icon(L"Larch Calendar.png"),
            Asset(L"Larch.Calendar_1.0.0.0_x64__2j8vgd6s0a1qe", L"StoreLogo.png"));
}

TEST_F(UntidyPackages, PackagesNamedByOneResourceAreOneEntryWithoutAnIcon) {
  const auto ranking = Rank(L"Alder.Wallet|Rowan.Fitness");
  ASSERT_EQ(ranking.size(), 1u);
  EXPECT_EQ(ranking[0].name, "ms-resource:AppName");
  EXPECT_EQ(ranking[0].icon, "");
  EXPECT_THAT(IconFiles(), IsEmpty());
  EXPECT_NEAR(ranking[0].share, StoredShare("Alder.Wallet") + StoredShare("Rowan.Fitness"), 0.01);
}

TEST_F(UntidyPackages, PackageNamedByAResourceWithSlashesHasNoIcon) {
  const auto ranking = Rank(L"Aster.Camera");
  ASSERT_EQ(ranking.size(), 1u);
  EXPECT_EQ(ranking[0].name, "ms-resource://Aster.Camera/Resources/Title");
  EXPECT_EQ(ranking[0].icon, "");
  EXPECT_THAT(IconFiles(), IsEmpty());
}

TEST_F(UntidyPackages, LogoOf200PercentIsTheIconIfItsNameHasTheSize) {
  Rank(L"Poplar.Journal|Gorse.Radio");
  EXPECT_THAT(IconFiles(), ElementsAre(L"Poplar Journal.png"));
  EXPECT_EQ(Icon(L"Poplar Journal.png"),
            Asset(L"Poplar.Journal_1.0.0.0_x64__h3j6k9l2p5o8i", L"Square44x44Logo.scale-200.png"));
}

TEST_F(UntidyPackages, OwnLogoIsPreferredToALogoOf200PercentUnderAnotherName) {
  const ScopedVariable address(L"WATTLEAF_PACKAGES", L"address:plain");
  Rank(L"Gorse.Radio");
  EXPECT_EQ(Icon(L"Gorse Radio.png"),
            Asset(L"Gorse.Radio_6.1.0.0_x64__h3j6k9l2p5o8i", L"StoreLogo.png"));
}

TEST_F(UntidyPackages, ContrastOrUnplatedVariantIsTheIconIfItComesFirst) {
  Rank(L"Otter.Chat|Tansy.Clock|Privet.Paint");
  EXPECT_EQ(Icon(L"Otter Chat.png"),
            Asset(L"Otter.Chat_8.17.3.0_x64__m5t9yk3w7zc8n", L"Square44x44Logo.scale-100.png"));
  EXPECT_EQ(Icon(L"Tansy Clock.png"), Asset(L"Tansy.Clock_2.0.0.0_x64__d4f7g0h3j6k9l",
                                            L"Square44x44Logo.scale-100_contrast-black.png"));
  EXPECT_EQ(Icon(L"Privet Paint.png"),
            Asset(L"Privet.Paint_2.0.0.0_x64__d4f7g0h3j6k9l",
                  L"Square44x44Logo.altform-unplated_targetsize-44.png"));
}

TEST_F(UntidyPackages, ApplicationsOfOnePackageAreOneEntryWithTheFirstLogo) {
  const auto ranking = Rank(L"Hornbeam.Suite");
  EXPECT_THAT(
      StoredNames(),
      ElementsAre(Pair("Hornbeam.Suite_16.0.0.0_x64__s2d5f8g1h4j7k!Sheets", "Hornbeam Suite"),
                  Pair("Hornbeam.Suite_16.0.0.0_x64__s2d5f8g1h4j7k!Writer", "Hornbeam Suite")));
  ASSERT_EQ(ranking.size(), 1u);
  EXPECT_EQ(Icon(L"Hornbeam Suite.png"),
            Asset(L"Hornbeam.Suite_16.0.0.0_x64__s2d5f8g1h4j7k", L"Square44x44Logo.scale-100.png"));
}

TEST_F(UntidyPackages, PackageWithoutVisualElementsInItsFirstApplicationHasItsOwnLogo) {
  const ScopedVariable address(L"WATTLEAF_PACKAGES", L"address:plain");
  Rank(L"Birch.Backup");
  EXPECT_EQ(Icon(L"Birch Backup.png"),
            Asset(L"Birch.Backup_3.3.0.0_x64__s2d5f8g1h4j7k", L"StoreLogo.png"));
}

TEST_F(UntidyPackages, TwoVersionsOfOnePackageAreOneEntryWithTheLastLogo) {
  const auto ranking = Rank(L"Finch.Music");
  EXPECT_EQ(StoredNames().size(), 2u);
  ASSERT_EQ(ranking.size(), 1u);
  EXPECT_EQ(Icon(L"Finch Music.png"),
            Asset(L"Finch.Music_3.2.0.0_x64__f7c2n9xb4r5hp", L"Square44x44Logo.targetsize-44.png"));
}

TEST_F(UntidyPackages, RowsOfAPackageBeforeItsUpdateHaveItsName) {
  const auto ranking = Rank(L"Otter.Chat");
  EXPECT_THAT(StoredNames(),
              ElementsAre(Pair("Otter.Chat_8.16.0.0_x64__m5t9yk3w7zc8n", "Otter Chat"),
                          Pair("Otter.Chat_8.17.3.0_x64__m5t9yk3w7zc8n", "Otter Chat")));
  EXPECT_EQ(ranking.size(), 1u);
}

TEST_F(UntidyPackages, NameInTwoScriptsIsShownByItsLowBytes) {
  const auto ranking = Rank(L"Yarrow.Books");
  ASSERT_EQ(ranking.size(), 1u);
  // U+041A U+043D U+0438 U+0433 U+0438; a file name may not hold the first one's low byte.
  EXPECT_EQ(ranking[0].name, "Yarrow \x1A=838");
  EXPECT_EQ(ranking[0].icon, "");
  EXPECT_THAT(IconFiles(), IsEmpty());
}

TEST_F(UntidyPackages, LetterOutsideAsciiReachesTheClientAsAReplacementCharacter) {
  const auto ranking = Rank(L"Tilia.Menu");
  ASSERT_EQ(ranking.size(), 1u);
  EXPECT_EQ(ranking[0].name, "Tilia Caf\xEF\xBF\xBD");
  EXPECT_EQ(IconName(ranking[0]), "Tilia Caf\xEF\xBF\xBD.png");
  // In the folder it has the letter that the byte is in the system's code page.
  if (GetACP() != 1252) GTEST_SKIP() << "another code page";
  EXPECT_THAT(IconFiles(), ElementsAre(L"Tilia Caf\u00E9.png"));
}
