#include "platform/winrt/runtime_text.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <winstring.h>

#include <string>
#include <utility>

#include "import_patch.h"
#include "platform/winrt/calls.h"
#include "platform/winrt/runtime_reference.h"

namespace Zq::Gantry::Security {
namespace {

using namespace std::string_literals;

TEST(RuntimeTextValue, IsOrderedByCharacterValue) {
  EXPECT_TRUE(RuntimeText(L"Z") < RuntimeText(L"a"));
  EXPECT_TRUE(RuntimeText(L"a") < RuntimeText(L"\x00e9"));
  EXPECT_TRUE(RuntimeText(L"ab") < RuntimeText(L"b"));
  EXPECT_TRUE(RuntimeText() < RuntimeText(L"a"));
  EXPECT_FALSE(RuntimeText(L"a") < RuntimeText(L"a"));
  EXPECT_EQ(RuntimeText(static_cast<const wchar_t*>(nullptr)), RuntimeText(L""));
  EXPECT_FALSE(RuntimeText(L"a") == RuntimeText(L"b"));
}

TEST(RuntimeTextValue, KeepsItsTextWhenCopiedAndMoved) {
  RuntimeText first(L"first");
  RuntimeText copy(first);
  EXPECT_EQ(copy.View(), L"first");
  RuntimeText moved(std::move(first));
  EXPECT_EQ(moved.View(), L"first");
  copy = RuntimeText(L"other");
  EXPECT_EQ(copy.View(), L"other");
  EXPECT_EQ(moved.View(), L"first");
  copy = moved;
  EXPECT_EQ(copy.View(), L"first");
}

TEST(RuntimeTextValue, KeepsNullCharacters) {
  const RuntimeText text(L"a\0b"s);
  EXPECT_EQ(text.View(), L"a\0b"s);
  EXPECT_FALSE(text == RuntimeText(L"a"));
}

int liveTexts = 0;
decltype(&WindowsCreateString) realCreate = nullptr;
decltype(&WindowsDuplicateString) realDuplicate = nullptr;
decltype(&WindowsDeleteString) realDelete = nullptr;

TEST(RuntimeTextValue, IsReleasedOnce) {
  const Standin::ImportPatch create(
      "WindowsCreateString", +[](PCNZWCH text, UINT32 length, HSTRING* made) -> HRESULT {
        ++liveTexts;
        return realCreate(text, length, made);
      });
  const Standin::ImportPatch duplicate(
      "WindowsDuplicateString", +[](HSTRING text, HSTRING* copy) -> HRESULT {
        ++liveTexts;
        return realDuplicate(text, copy);
      });
  const Standin::ImportPatch remove(
      "WindowsDeleteString", +[](HSTRING text) -> HRESULT {
        --liveTexts;
        return realDelete(text);
      });
  realCreate = create.Original<std::remove_pointer_t<decltype(realCreate)>>();
  realDuplicate = duplicate.Original<std::remove_pointer_t<decltype(realDuplicate)>>();
  realDelete = remove.Original<std::remove_pointer_t<decltype(realDelete)>>();
  {
    RuntimeText first(L"first");
    EXPECT_EQ(liveTexts, 1);
    RuntimeText copy(first);
    EXPECT_EQ(liveTexts, 2);
    const RuntimeText moved(std::move(first));
    EXPECT_EQ(liveTexts, 2);
    copy = moved;
    EXPECT_EQ(liveTexts, 2);
    copy = RuntimeText(L"other");
    EXPECT_EQ(liveTexts, 2);
    const RuntimeText& same = copy;
    copy = same;
    EXPECT_EQ(copy.View(), L"other");
  }
  EXPECT_EQ(liveTexts, 0);
}

TEST(RuntimeReference, IsReleasedOnce) {
  struct Counted {
    int references = 1;
    void AddRef() { ++references; }
    void Release() { --references; }
  };
  using Reference = RuntimeReference<Counted>;
  Counted object;
  {
    Reference first(&object);
    Reference copy(first);
    EXPECT_EQ(object.references, 3);
    Reference moved(std::move(first));
    EXPECT_EQ(object.references, 3);
    const Reference& same = copy;
    copy = same;
    copy = moved;
    EXPECT_EQ(object.references, 3);
    moved = nullptr;
    EXPECT_EQ(object.references, 2);
    EXPECT_FALSE(moved);
    EXPECT_EQ(copy.get(), &object);
  }
  EXPECT_EQ(object.references, 1);
}

TEST(RuntimeTextValue, ThrowsWhenItCannotBeCopied) {
  const RuntimeText text(L"text");
  const Standin::ImportPatch duplicate(
      "WindowsDuplicateString", +[](HSTRING, HSTRING*) -> HRESULT { return E_OUTOFMEMORY; });
  EXPECT_THROW(RuntimeText{text}, Platform::WinRt::CallFailure);
}

}  // namespace
}  // namespace Zq::Gantry::Security
