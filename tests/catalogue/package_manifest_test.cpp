#include "catalogue/package_logo.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/scratch_folder.h"
#include "base/text_builders.h"

using TestSupport::Repeated;
using TestSupport::ScratchFolder;
using TestSupport::Utf16;
using TestSupport::WriteBytes;
using Zq::Gantry::Server::Services::Wattleaf::TryReadManifestLogo;

namespace {

using Logo = std::optional<std::wstring>;

Logo ReadLogo(const std::string& manifest) {
  const ScratchFolder folder;
  WriteBytes(folder.File("AppxManifest.xml"), manifest);
  return TryReadManifestLogo(folder.File("AppxManifest.xml").wstring());
}

std::string WithApplications(const std::string& applications) {
  return "<Package><Applications>" + applications + "</Applications></Package>";
}

std::string WithVisual(const std::string& visual) {
  return WithApplications("<Application>" + visual + "</Application>");
}

std::string WithLogo(const std::string& value) {
  return WithVisual("<uap:VisualElements Square44x44Logo=\"" + value + "\"/>");
}

}  // namespace

TEST(TryReadManifestLogo, ReturnsTheLogoOfTheApplication) {
  EXPECT_EQ(ReadLogo("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                     "<!-- a comment -->\n"
                     "<Package xmlns:uap=\"http://example.test/uap\">\n"
                     "  <Identity Name=\"Some.App\"/>\n"
                     "  <Applications>\n    <Application Id=\"App\">\n"
                     "      <uap:VisualElements DisplayName=\"App\" "
                     "Square44x44Logo=\"Assets\\Square44x44Logo.png\"/>\n"
                     "    </Application>\n  </Applications>\n</Package>\n"),
            L"Assets\\Square44x44Logo.png");
}

TEST(TryReadManifestLogo, IsEmptyWhenALevelIsMissing) {
  struct Case {
    const char* label;
    std::string manifest;
  };
  const std::string visual = "<uap:VisualElements Square44x44Logo=\"a\"/>";
  const std::vector<Case> cases = {
      {"another root",
       "<Bundle><Applications><Application>" + visual + "</Application></Applications></Bundle>"},
      {"no Applications", "<Package><Application>" + visual + "</Application></Package>"},
      {"no Application", "<Package><Applications>" + visual + "</Applications></Package>"},
      {"no VisualElements", WithVisual("")},
      {"no attribute", WithVisual("<uap:VisualElements Square150x150Logo=\"a\"/>")},
      {"another case of the attribute", WithVisual("<uap:VisualElements square44x44logo=\"a\"/>")},
      {"another case of the element", WithVisual("<uap:visualelements Square44x44Logo=\"a\"/>")},
  };
  for (const Case& c : cases) EXPECT_EQ(ReadLogo(c.manifest), std::nullopt) << c.label;
}

TEST(TryReadManifestLogo, UsesTheFirstElementOfEachName) {
  const std::string named =
      "<Application><uap:VisualElements Square44x44Logo=\"second\"/>"
      "</Application>";
  EXPECT_EQ(ReadLogo(WithApplications("<Application/>" + named)), std::nullopt);
  EXPECT_EQ(ReadLogo(WithVisual("<uap:VisualElements/>"
                                "<uap:VisualElements Square44x44Logo=\"second\"/>")),
            std::nullopt);
  EXPECT_EQ(
      ReadLogo("<Package><Applications/><Applications>" + named + "</Applications></Package>"),
      std::nullopt);
  EXPECT_EQ(ReadLogo("<Package/>" + WithApplications(named)), std::nullopt);
  EXPECT_EQ(ReadLogo(WithApplications("<Extension/>" + named)), L"second");
}

TEST(TryReadManifestLogo, ComparesTheNamespacePrefixAsPlainText) {
  EXPECT_EQ(ReadLogo("<Package xmlns:u=\"http://example.test/uap\"><Applications><Application>"
                     "<u:VisualElements Square44x44Logo=\"a\"/>"
                     "</Application></Applications></Package>"),
            std::nullopt);
  EXPECT_EQ(ReadLogo(WithVisual("<VisualElements Square44x44Logo=\"a\"/>")), std::nullopt);
  EXPECT_EQ(ReadLogo(WithLogo("undeclared prefix")), L"undeclared prefix");
}

TEST(TryReadManifestLogo, ReturnsAnEmptyTextForAnEmptyAttribute) {
  EXPECT_EQ(ReadLogo(WithLogo("")), L"");
}

TEST(TryReadManifestLogo, ResolvesReferencesAndWhiteSpace) {
  EXPECT_EQ(ReadLogo(WithLogo("a&amp;b&#x142;")), L"a&b\u0142");
  EXPECT_EQ(ReadLogo(WithLogo("a\tb")), L"a b");
  EXPECT_EQ(ReadLogo(WithLogo("&unknown;")), L"&unknown;");
}

TEST(TryReadManifestLogo, ReadsTheEncodingThatTheXmlDeclares) {
  EXPECT_EQ(ReadLogo("\xEF\xBB\xBF" + WithLogo("\xC5\x82")), L"\u0142");
  EXPECT_EQ(ReadLogo("\xFF\xFE" + Utf16(WithLogo("wide"))), L"wide");
  EXPECT_EQ(ReadLogo("<?xml version=\"1.0\" encoding=\"latin1\"?>" + WithLogo("\xE9")), L"\u00e9");
}

TEST(TryReadManifestLogo, IsEmptyForMalformedXml) {
  const std::string whole = WithLogo("a");
  EXPECT_EQ(ReadLogo(""), std::nullopt);
  EXPECT_EQ(ReadLogo("no document"), std::nullopt);
  EXPECT_EQ(ReadLogo(whole + "</Package>"), std::nullopt) << "one end tag too many";
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_EQ(ReadLogo(whole.substr(0, length)), std::nullopt) << length;
  }
}

TEST(TryReadManifestLogo, IsEmptyWhenTheFileCannotBeRead) {
  const ScratchFolder folder;
  EXPECT_EQ(TryReadManifestLogo(folder.File("missing.xml").wstring()), std::nullopt);
  std::filesystem::create_directory(folder.File("folder.xml"));
  EXPECT_EQ(TryReadManifestLogo(folder.File("folder.xml").wstring()), std::nullopt);
  EXPECT_EQ(TryReadManifestLogo(L""), std::nullopt);
}

TEST(TryReadManifestLogo, IsEmptyForAFileAboveFourMebibytes) {
  const std::string logo = WithLogo("a");
  const std::string padded = logo + std::string(4'194'304 - logo.size(), ' ');
  EXPECT_EQ(ReadLogo(padded), L"a");
  EXPECT_EQ(ReadLogo(padded + " "), std::nullopt);
}

TEST(TryReadManifestLogo, ReadsDeeplyNestedElements) {
  constexpr int kDepth = 300'000;
  const std::string deep = Repeated("<a>", kDepth) + Repeated("</a>", kDepth);
  EXPECT_EQ(ReadLogo("<Package>" + deep + WithLogo("a").substr(9)), L"a");
  EXPECT_EQ(ReadLogo(Repeated("<Package>", kDepth)), std::nullopt);
}

TEST(TryReadManifestLogo, DoesNotResolveCustomEntities) {
  const std::string inner = "<!DOCTYPE Package [<!ENTITY a \"b\"><!ENTITY b \"&a;&a;&a;&a;\">]>";
  EXPECT_EQ(ReadLogo(inner + WithLogo("&a;&b;")), L"&a;&b;");
  const std::string outer = "<!DOCTYPE Package [<!ENTITY f SYSTEM \"AppxManifest.xml\">]>";
  EXPECT_EQ(ReadLogo(outer + WithLogo("&f;")), L"&f;");
}

TEST(TryReadManifestLogo, ReadsDeeplyNestedDeclarations) {
  constexpr int kDepth = 300'000;
  EXPECT_EQ(ReadLogo("<!DOCTYPE Package [" + Repeated("<!x ", kDepth) + Repeated(">", kDepth) +
                     "]>" + WithLogo("a")),
            L"a");
  EXPECT_EQ(ReadLogo("<!DOCTYPE Package [" + Repeated("<![", kDepth)), std::nullopt);
}
