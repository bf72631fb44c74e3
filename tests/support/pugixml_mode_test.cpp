#include <string>
#include <type_traits>

#include <gtest/gtest.h>
#include <pugixml.hpp>

namespace {

// Reports and manifests are read as wide strings. A build in the other mode would not fail by
// itself: header and library must agree.
static_assert(std::is_same_v<pugi::char_t, wchar_t>);

TEST(PugixmlMode, IsWide) { EXPECT_EQ(sizeof(pugi::char_t), sizeof(wchar_t)); }

TEST(PugixmlMode, ReadsADocumentIntoWideStrings) {
  const std::string bytes = "<report><app name=\"Caf\xC3\xA9\">12</app></report>";
  pugi::xml_document document;
  ASSERT_TRUE(
      document.load_buffer(bytes.data(), bytes.size(), pugi::parse_default, pugi::encoding_utf8));
  const pugi::xml_node app = document.first_child().child(L"app");
  EXPECT_EQ(std::wstring(app.attribute(L"name").value()), L"Caf\u00E9");
  EXPECT_EQ(std::wstring(app.child_value()), L"12");
}

}  // namespace
