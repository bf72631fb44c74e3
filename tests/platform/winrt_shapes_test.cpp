#include <windows.h>

#include <gtest/gtest.h>
#include <inspectable.h>
#include <objbase.h>

#include <array>
#include <bit>
#include <cstddef>
#include <string>
#include <utility>

#include "abi/package_shapes.h"
#include "abi/value_shapes.h"
#include "abi/xml_shapes.h"

using namespace Zq::Gantry::Platform::WinRt;

namespace {

std::string TextOfIid(const IID& iid) {
  std::array<wchar_t, 64> text{};
  StringFromGUID2(iid, text.data(), static_cast<int>(text.size()));
  std::string narrow;
  for (const wchar_t* c = text.data(); *c != 0; ++c) narrow += static_cast<char>(*c);
  return narrow;
}

/// An object whose virtual operations return the numbers of their slots.
class NumberedOperations {
 public:
  NumberedOperations() : NumberedOperations(std::make_index_sequence<64>()) {}
  NumberedOperations(const NumberedOperations&) = delete;
  NumberedOperations& operator=(const NumberedOperations&) = delete;

 private:
  template <int slot>
  static int STDMETHODCALLTYPE Number(void*) {
    return slot;
  }
  template <std::size_t... slots>
  explicit NumberedOperations(std::index_sequence<slots...>)
      : operations_{&Number<static_cast<int>(slots)>...} {
    table_ = operations_.data();
  }

  using Operation = int(STDMETHODCALLTYPE*)(void*);
  // Where a compiled call looks for the table.
  [[maybe_unused]] const Operation* table_ = nullptr;
  std::array<Operation, 64> operations_;
};

/// The slot of a virtual operation, counted after the six of IInspectable.
template <typename Call>
int OwnSlot(Call call) {
  NumberedOperations object;
  // Of a class with virtual operations, since GCC takes members of others for plain functions.
  const auto anyCall = std::bit_cast<int (STDMETHODCALLTYPE IInspectable::*)()>(call);
  return (reinterpret_cast<IInspectable*>(&object)->*anyCall)() - 6;
}

}  // namespace

TEST(WinRtShapes, HaveThePublishedIdentifiers) {
  EXPECT_EQ(TextOfIid(__uuidof(IPackageManager)), "{9A7D4B65-5E8F-4FC7-A2E5-7F6925CB8B53}");
  EXPECT_EQ(TextOfIid(__uuidof(IPackageIterable)), "{69AD6AA7-0C49-5F27-A5EB-EF4D59467B6D}");
  EXPECT_EQ(TextOfIid(__uuidof(IPackageIterator)), "{0217F069-025C-5EE6-A87F-E782E3B623AE}");
  EXPECT_EQ(TextOfIid(__uuidof(IPackage)), "{163C792F-BD75-413C-BF23-B1FE7B95D825}");
  EXPECT_EQ(TextOfIid(__uuidof(IPackage2)), "{A6612FB6-7688-4ACE-95FB-359538E7AA01}");
  EXPECT_EQ(TextOfIid(__uuidof(IPackage4)), "{65AED1AE-B95B-450C-882B-6255187F397E}");
  EXPECT_EQ(TextOfIid(__uuidof(IPackageId)), "{1ADB665E-37C7-4790-9980-DD7AE74E8BB2}");
  EXPECT_EQ(TextOfIid(__uuidof(IStorageFolder)), "{72D1CB78-B3EF-4F75-A80B-6FD9DAE2944B}");
  EXPECT_EQ(TextOfIid(__uuidof(IStorageItem)), "{4207A996-CA2F-42F7-BDE8-8B10457A7F30}");
  EXPECT_EQ(TextOfIid(__uuidof(IUriRuntimeClass)), "{9E365E57-48B2-4160-956F-C7385120BBFC}");
}

TEST(WinRtShapes, HaveCollectionOperationsInTheirSlots) {
  EXPECT_EQ(OwnSlot(&IPackageManager::FindPackages), 5);
  EXPECT_EQ(OwnSlot(&IPackageIterable::First), 0);
  EXPECT_EQ(OwnSlot(&IPackageIterator::get_Current), 0);
  EXPECT_EQ(OwnSlot(&IPackageIterator::get_HasCurrent), 1);
  EXPECT_EQ(OwnSlot(&IPackageIterator::MoveNext), 2);
  EXPECT_EQ(OwnSlot(&IPackageIterator::GetMany), 3);
}

TEST(WinRtShapes, HavePackageOperationsInTheirSlots) {
  EXPECT_EQ(OwnSlot(&IPackage::get_Id), 0);
  EXPECT_EQ(OwnSlot(&IPackage::get_InstalledLocation), 1);
  EXPECT_EQ(OwnSlot(&IPackage::get_IsFramework), 2);
  EXPECT_EQ(OwnSlot(&IPackage2::get_DisplayName), 0);
  EXPECT_EQ(OwnSlot(&IPackage2::get_Logo), 3);
  EXPECT_EQ(OwnSlot(&IPackage2::get_IsDevelopmentMode), 6);
  EXPECT_EQ(OwnSlot(&IPackage4::get_SignatureKind), 0);
  EXPECT_EQ(OwnSlot(&IPackageId::get_Name), 0);
  EXPECT_EQ(OwnSlot(&IPackageId::get_FamilyName), 7);
}

TEST(WinRtShapes, HaveStorageAndUriOperationsInTheirSlots) {
  EXPECT_EQ(OwnSlot(&IStorageItem::get_Path), 6);
  EXPECT_EQ(OwnSlot(&IStorageItem::IsOfType), 9);
  EXPECT_EQ(OwnSlot(&IStorageFolder::GetItemsAsyncOverloadDefaultStartAndCount), 9);
  EXPECT_EQ(OwnSlot(&IUriRuntimeClass::get_Path), 7);
  EXPECT_EQ(OwnSlot(&IUriRuntimeClass::CombineUri), 16);
}

TEST(WinRtShapes, HaveThePublishedIdentifiersOfNodesAndValues) {
  EXPECT_EQ(TextOfIid(__uuidof(IXmlNode)), "{1C741D59-2122-47D5-A856-83F3D4214875}");
  EXPECT_EQ(TextOfIid(__uuidof(IXmlNodeList)), "{8C60AD77-83A4-4EC1-9C54-7BA429E13DA6}");
  EXPECT_EQ(TextOfIid(__uuidof(IXmlNodeSerializer)), "{5CC5B382-E6DD-4991-ABEF-06D8D2E7BD0C}");
  EXPECT_EQ(TextOfIid(__uuidof(IXmlNamedNodeMap)), "{B3A69EB0-AAB0-4B82-A6FA-B1453F7C021B}");
  EXPECT_EQ(TextOfIid(__uuidof(IXmlAttribute)), "{AC144AA4-B4F1-4DB6-B206-8A22C308DB0A}");
  EXPECT_EQ(TextOfIid(__uuidof(IXmlDocument)), "{F7F3A506-1E87-42D6-BCFB-B8C809FA5494}");
  EXPECT_EQ(TextOfIid(__uuidof(IPropertyValue)), "{4BD682DD-7554-40E9-9A9B-82654EDE7E62}");
  EXPECT_EQ(TextOfIid(__uuidof(IStringReference)), "{FD416DFB-2A07-52EB-AAE3-DFCE14116C05}");
  EXPECT_EQ(TextOfIid(__uuidof(IDoubleReference)), "{2F2D6C29-5473-5F3E-92E7-96572BB990E2}");
  EXPECT_EQ(TextOfIid(__uuidof(IBooleanReference)), "{3C00FD60-2950-5939-A21A-2D12C5A01B8A}");
}

TEST(WinRtShapes, HaveNodeOperationsInTheirSlots) {
  EXPECT_EQ(OwnSlot(&IXmlNode::get_NodeValue), 0);
  EXPECT_EQ(OwnSlot(&IXmlNode::get_NodeType), 2);
  EXPECT_EQ(OwnSlot(&IXmlNode::get_Attributes), 10);
  EXPECT_EQ(OwnSlot(&IXmlNode::get_OwnerDocument), 12);
  EXPECT_EQ(OwnSlot(&IXmlNode::CloneNode), 17);
  EXPECT_EQ(OwnSlot(&IXmlNode::put_Prefix), 22);
  EXPECT_EQ(OwnSlot(&IXmlNodeList::Item), 1);
  EXPECT_EQ(OwnSlot(&IXmlNodeSerializer::get_InnerText), 1);
  EXPECT_EQ(OwnSlot(&IXmlNodeSerializer::put_InnerText), 2);
  EXPECT_EQ(OwnSlot(&IXmlNamedNodeMap::GetNamedItem), 2);
  EXPECT_EQ(OwnSlot(&IXmlNamedNodeMap::SetNamedItemNS), 7);
  EXPECT_EQ(OwnSlot(&IXmlAttribute::get_Value), 2);
  EXPECT_EQ(OwnSlot(&IXmlAttribute::put_Value), 3);
  EXPECT_EQ(OwnSlot(&IXmlDocument::get_DocumentElement), 2);
  EXPECT_EQ(OwnSlot(&IXmlDocument::CreateAttribute), 8);
  EXPECT_EQ(OwnSlot(&IXmlDocument::ImportNode), 16);
}

TEST(WinRtShapes, HaveValueOperationsInTheirSlots) {
  EXPECT_EQ(OwnSlot(&IPropertyValue::get_Type), 0);
  EXPECT_EQ(OwnSlot(&IPropertyValue::GetDouble), 10);
  EXPECT_EQ(OwnSlot(&IPropertyValue::GetBoolean), 12);
  EXPECT_EQ(OwnSlot(&IPropertyValue::GetString), 13);
  EXPECT_EQ(OwnSlot(&IPropertyValue::GetRect), 19);
  EXPECT_EQ(OwnSlot(&IPropertyValue::GetUInt8Array), 20);
  EXPECT_EQ(OwnSlot(&IPropertyValue::GetInspectableArray), 32);
  EXPECT_EQ(OwnSlot(&IPropertyValue::GetRectArray), 38);
  EXPECT_EQ(OwnSlot(&IStringReference::get_Value), 0);
  EXPECT_EQ(OwnSlot(&IDoubleReference::get_Value), 0);
  EXPECT_EQ(OwnSlot(&IBooleanReference::get_Value), 0);
}

TEST(WinRtShapes, HaveTheNumbersOfBoxedTypes) {
  EXPECT_EQ(static_cast<int>(PropertyType_Double), 9);
  EXPECT_EQ(static_cast<int>(PropertyType_Boolean), 11);
  EXPECT_EQ(static_cast<int>(PropertyType_String), 12);
}
