#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string>

#include "abi/package_shapes.h"

using namespace Zq::Gantry::Platform::WinRt;

namespace {

std::string TextOfIid(const IID& iid) {
  std::array<wchar_t, 64> text{};
  StringFromGUID2(iid, text.data(), static_cast<int>(text.size()));
  std::string narrow;
  for (const wchar_t* c = text.data(); *c != 0; ++c) narrow += static_cast<char>(*c);
  return narrow;
}

/// The slot of a virtual operation behind the six of IInspectable: its member pointer begins with
/// one more than the offset in the table.
template <typename Call>
int OwnSlot(Call call) {
  std::uintptr_t word = 0;
  std::memcpy(&word, &call, sizeof(word));
  return static_cast<int>((word - 1) / sizeof(void*)) - 6;
}

}  // namespace

TEST(RuntimeShapes, IdentifiersAreThePublishedOnes) {
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

TEST(RuntimeShapes, CollectionOperationsStandInTheirSlots) {
  EXPECT_EQ(OwnSlot(&IPackageManager::FindPackages), 5);
  EXPECT_EQ(OwnSlot(&IPackageIterable::First), 0);
  EXPECT_EQ(OwnSlot(&IPackageIterator::get_Current), 0);
  EXPECT_EQ(OwnSlot(&IPackageIterator::get_HasCurrent), 1);
  EXPECT_EQ(OwnSlot(&IPackageIterator::MoveNext), 2);
  EXPECT_EQ(OwnSlot(&IPackageIterator::GetMany), 3);
}

TEST(RuntimeShapes, PackageOperationsStandInTheirSlots) {
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

TEST(RuntimeShapes, StorageAndAddressOperationsStandInTheirSlots) {
  EXPECT_EQ(OwnSlot(&IStorageItem::get_Path), 6);
  EXPECT_EQ(OwnSlot(&IStorageItem::IsOfType), 9);
  EXPECT_EQ(OwnSlot(&IStorageFolder::GetItemsAsyncOverloadDefaultStartAndCount), 9);
  EXPECT_EQ(OwnSlot(&IUriRuntimeClass::get_Path), 7);
  EXPECT_EQ(OwnSlot(&IUriRuntimeClass::CombineUri), 16);
}
