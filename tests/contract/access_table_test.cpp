#include "contract/raw_table.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "security/access/manifest_exemption.h"
#include "security/facade/zq_authenticode_facade.h"

// The two tables of the security layer as the host sees them: slots without names.
namespace Zq::Gantry::Security {
namespace {

using testing::ElementsAre;
using TestSupport::CallSlot;
using TestSupport::DestroyThroughSlot;
using TestSupport::kDestructorSlots;

std::vector<std::string> calls;

bool Record(const char* name, bool answer) {
  calls.push_back(name);
  return answer;
}

class RecordingFacade : public ZQAuthenticodeFacadeBase {
 public:
  bool IsServiceFileTrusted(const wchar_t* path) override {
    EXPECT_STREQ(path, L"1");
    return Record("IsServiceFileTrusted", true);
  }
  bool IsExtendedFileTrusted(const wchar_t* path) override {
    EXPECT_STREQ(path, L"2");
    return Record("IsExtendedFileTrusted", false);
  }
  bool IsDropboxFileTrusted(const wchar_t* path) override {
    EXPECT_STREQ(path, L"3");
    return Record("IsDropboxFileTrusted", true);
  }
  bool IsWindowsTrustedFileAllowed(const wchar_t* path) override {
    EXPECT_STREQ(path, L"4");
    return Record("IsWindowsTrustedFileAllowed", false);
  }
  bool HaveSameSigningKey(const wchar_t* firstPath, const wchar_t* secondPath) override {
    EXPECT_STREQ(firstPath, L"5");
    EXPECT_STREQ(secondPath, L"five");
    return Record("HaveSameSigningKey", true);
  }
  bool IsPathAllowed(const wchar_t* path) override {
    EXPECT_STREQ(path, L"6");
    return Record("IsPathAllowed", false);
  }
  bool IsToolLaunchAllowed(const wchar_t* toolPath, bool restricted, const wchar_t* commandLine,
                           const wchar_t* component) override {
    EXPECT_STREQ(toolPath, L"7");
    EXPECT_TRUE(restricted);
    EXPECT_STREQ(commandLine, L"line");
    EXPECT_STREQ(component, L"component");
    return Record("IsToolLaunchAllowed", true);
  }
};

class RecordingCriteria : public IClientWithNoZqManifestCheckCriteria {
 public:
  ~RecordingCriteria() override { calls.push_back("destructor"); }
  bool IsAnException() override { return Record("IsAnException", true); }
};

TEST(FacadeTable, HoldsTheSevenOperationsInOrderFromSlotZero) {
  calls.clear();
  RecordingFacade facade;
  EXPECT_TRUE((CallSlot<bool, const wchar_t*>(&facade, 0, L"1")));
  EXPECT_FALSE((CallSlot<bool, const wchar_t*>(&facade, 1, L"2")));
  EXPECT_TRUE((CallSlot<bool, const wchar_t*>(&facade, 2, L"3")));
  EXPECT_FALSE((CallSlot<bool, const wchar_t*>(&facade, 3, L"4")));
  EXPECT_TRUE((CallSlot<bool, const wchar_t*, const wchar_t*>(&facade, 4, L"5", L"five")));
  EXPECT_FALSE((CallSlot<bool, const wchar_t*>(&facade, 5, L"6")));
  EXPECT_TRUE((CallSlot<bool, const wchar_t*, bool, const wchar_t*, const wchar_t*>(
      &facade, 6, L"7", true, L"line", L"component")));
  EXPECT_THAT(calls, ElementsAre("IsServiceFileTrusted", "IsExtendedFileTrusted",
                                 "IsDropboxFileTrusted", "IsWindowsTrustedFileAllowed",
                                 "HaveSameSigningKey", "IsPathAllowed", "IsToolLaunchAllowed"));
}

TEST(FacadeTable, ReachesTheFacadeItselfThroughTheSameSlots) {
  ZQAuthenticodeFacade facade;
  for (const std::size_t slot : {0, 1, 3}) {
    EXPECT_FALSE((CallSlot<bool, const wchar_t*>(&facade, slot, nullptr))) << slot;
  }
  EXPECT_FALSE((CallSlot<bool, const wchar_t*, const wchar_t*>(&facade, 4, nullptr, nullptr)));
}

TEST(CriteriaTable, HoldsDestructorAndIsAnExceptionInOrder) {
  calls.clear();
  auto* criteria = new RecordingCriteria();
  EXPECT_TRUE(CallSlot<bool>(criteria, kDestructorSlots));
  DestroyThroughSlot(criteria, 0);
  EXPECT_THAT(calls, ElementsAre("IsAnException", "destructor"));
}

TEST(CriteriaTable, ReachesBothCheckersThroughTheSameSlot) {
  const auto upTo = MatchingDescriptor::Operation::LessThanOrEqual;
  const auto storeRows = std::make_shared<std::vector<UwpMatchingDescriptor>>();
  storeRows->emplace_back(Server::Uwp::UwpInformation(L"n", L"f", 2, 0), upTo);
  auto* store = new UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion(
      storeRows, std::make_shared<Server::Uwp::UwpInformation>(L"n", L"f", 2, 0));
  const auto programRows = std::make_shared<std::vector<Win32MatchingDescriptor>>();
  programRows->emplace_back(Server::Win32::Win32Information(L"n", 2, 0), upTo);
  auto* program = new Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion(
      programRows, std::make_shared<Server::Win32::Win32Information>(L"N", 2, 0));

  EXPECT_TRUE(CallSlot<bool>(store, kDestructorSlots));
  EXPECT_TRUE(CallSlot<bool>(program, kDestructorSlots));
  DestroyThroughSlot(store, 0);
  DestroyThroughSlot(program, 0);
  EXPECT_EQ(storeRows.use_count(), 1);
  EXPECT_EQ(programRows.use_count(), 1);
}

/// The object that the `index`-th shared pointer after the table refers to.
const void* PointerAfterTable(const void* object, std::size_t index) {
  using Shared = std::shared_ptr<void>;
  const auto* fields = static_cast<const unsigned char*>(object) + sizeof(void*);
  return *reinterpret_cast<const void* const*>(fields + index * sizeof(Shared));
}

TEST(CriteriaTable, IsFollowedByListAndClientInBothCheckers) {
  const auto storeRows = std::make_shared<std::vector<UwpMatchingDescriptor>>();
  const auto storeClient = std::make_shared<Server::Uwp::UwpInformation>();
  const UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion store(storeRows, storeClient);
  EXPECT_EQ(PointerAfterTable(&store, 0), storeRows.get());
  EXPECT_EQ(PointerAfterTable(&store, 1), storeClient.get());
  EXPECT_EQ(sizeof(store), 5 * sizeof(void*));

  const auto programRows = std::make_shared<std::vector<Win32MatchingDescriptor>>();
  const auto programClient = std::make_shared<Server::Win32::Win32Information>();
  const Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion program(programRows, programClient);
  EXPECT_EQ(PointerAfterTable(&program, 0), programRows.get());
  EXPECT_EQ(PointerAfterTable(&program, 1), programClient.get());
  EXPECT_EQ(sizeof(program), 5 * sizeof(void*));
}

}  // namespace
}  // namespace Zq::Gantry::Security
