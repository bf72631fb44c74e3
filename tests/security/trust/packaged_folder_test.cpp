#include "security/trust/zq_authenticode_helper.h"

#include <windows.h>

#include <algorithm>

#include <gmock/gmock.h>

#include "security/trust/fake_access_lists.h"
#include "security/trust/fake_path_calls.h"
#include "support/call_record.h"
#include "support/log_capture.h"

// Files of packaged applications are allowed if the system controls their folder.
namespace Zq::Gantry::Security {
namespace {

using Standin::ImportPatch;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::AccessList;
using TestSupport::CallRecord;
using TestSupport::Error;
using TestSupport::EveryoneId;
using TestSupport::kFullControl;
using TestSupport::LogRecord;
using TestSupport::SystemId;
using TestSupport::TrustedInstallerId;

constexpr wchar_t kFile[] = L"D:\\WindowsApps\\Some.App_1.0\\bin\\a.exe";

std::vector<DWORD> waits;

void WINAPI FakeSleep(DWORD milliseconds) { waits.push_back(milliseconds); }

LogRecord Attempt(int attempt, int error) {
  return Error(L"Security - GetNamedSecurityInfo - Failed " + std::to_wstring(attempt) +
               L" of 5 times. Error Code = " + std::to_wstring(error));
}

class IsPathAllowedInPackagedFolder : public testing::Test {
 protected:
  IsPathAllowedInPackagedFolder() {
    waits.clear();
    fake_.ignoreSizes = true;
    good_.Allow(TrustedInstallerId(), kFullControl).Allow(SystemId(), kFullControl);
    fake_.list = good_.Get();
  }

  /// The errors after the first three, which are about the roots.
  std::vector<LogRecord> OwnershipErrors() const {
    const std::vector<LogRecord> errors = TestSupport::WarningsAndErrors(log_);
    if (errors.size() < 3) {
      ADD_FAILURE() << "the path was not compared with the roots";
      return {};
    }
    return {errors.begin() + 3, errors.end()};
  }

  const TestSupport::FixedRoots roots_;
  const TestSupport::FakeRpcQuery rpc_;
  const ImportPatch sleep_{"Sleep", &FakeSleep};
  TestSupport::FakeAccessLists fake_;
  AccessList good_;
  TestSupport::LogCapture log_;
};

TEST_F(IsPathAllowedInPackagedFolder, ReadsTheAccessListOfTheFolderOnce) {
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(kFile));
  ASSERT_EQ(fake_.queries.size(), 1U);
  EXPECT_EQ(fake_.queries[0].path, L"D:\\WindowsApps");
  EXPECT_THAT(OwnershipErrors(), IsEmpty());
  EXPECT_THAT(waits, IsEmpty());
}

TEST_F(IsPathAllowedInPackagedFolder, AcceptsAnyDrive) {
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(L"z:\\WindowsApps\\a.exe"));
  EXPECT_EQ(fake_.queries[0].path, L"z:\\WindowsApps");
}

TEST_F(IsPathAllowedInPackagedFolder, TriesFiveTimesWithFourWaitsWhenTheFolderDoesNotExist) {
  fake_.failures = 100;
  fake_.lastError = 2;
  EXPECT_FALSE(ZQAuthenticodeHelper::IsPathAllowed(kFile));
  EXPECT_EQ(fake_.queries.size(), 5U);
  EXPECT_THAT(waits, ElementsAre(250U, 250U, 250U, 250U));
  EXPECT_THAT(OwnershipErrors(), ElementsAre(Attempt(1, 2), Attempt(2, 2), Attempt(3, 2),
                                             Attempt(4, 2), Attempt(5, 2)));
}

TEST_F(IsPathAllowedInPackagedFolder, TriesFiveTimesWhenTheListLacksAnEntry) {
  AccessList lacking;
  fake_.list = lacking.Allow(SystemId(), kFullControl).Get();
  EXPECT_FALSE(ZQAuthenticodeHelper::IsPathAllowed(kFile));
  EXPECT_EQ(fake_.queries.size(), 5U);
  EXPECT_EQ(waits.size(), 4U);
  EXPECT_THAT(OwnershipErrors(), ElementsAre(Attempt(1, 0), Attempt(2, 0), Attempt(3, 0),
                                             Attempt(4, 0), Attempt(5, 0)));
}

TEST_F(IsPathAllowedInPackagedFolder, StopsAtTheFirstSuccess) {
  fake_.failures = 2;
  fake_.lastError = 32;
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(kFile));
  EXPECT_EQ(fake_.queries.size(), 3U);
  EXPECT_THAT(waits, ElementsAre(250U, 250U));
  EXPECT_THAT(OwnershipErrors(), ElementsAre(Attempt(1, 32), Attempt(2, 32)));
}

TEST_F(IsPathAllowedInPackagedFolder, AllowsWhenOnlyTheLastAttemptSucceeds) {
  fake_.failures = 4;
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(kFile));
  EXPECT_EQ(OwnershipErrors().size(), 4U);
}

TEST_F(IsPathAllowedInPackagedFolder, UsesTheFolderOfTheExpandedPath) {
  const TestSupport::ScopedVariable place(L"WATTLEAF_PLACE", L"E:\\x\\..\\WindowsApps");
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(L"%WATTLEAF_PLACE%\\Some\\a.exe"));
  EXPECT_EQ(fake_.queries[0].path, L"E:\\WindowsApps");
}

// What an allowed place does not guarantee.

TEST_F(IsPathAllowedInPackagedFolder, AllowsAUsersOwnFolderThatGivesFullControlToBothAccounts) {
  AccessList shared;
  fake_.list = shared.Allow(EveryoneId(), kFullControl)
                   .Allow(TrustedInstallerId(), kFullControl)
                   .Allow(SystemId(), kFullControl)
                   .Get();
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(L"C:\\WindowsApps\\mine\\a.exe"));
  EXPECT_EQ(fake_.queries[0].path, L"C:\\WindowsApps");
}

TEST_F(IsPathAllowedInPackagedFolder, JudgesARemovableDriveByItsOwnAccessList) {
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(L"E:\\WindowsApps\\a.exe"));
  EXPECT_EQ(fake_.queries[0].path, L"E:\\WindowsApps");
  fake_.list = nullptr;  // a drive without access lists
  EXPECT_FALSE(ZQAuthenticodeHelper::IsPathAllowed(L"E:\\WindowsApps\\a.exe"));
}

TEST_F(IsPathAllowedInPackagedFolder, JudgesAShareByTheAccessListThatItsServerSupplies) {
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(L"\\\\server\\c:\\WindowsApps\\a.exe"));
  EXPECT_EQ(fake_.queries[0].path, L"\\\\server\\c:\\WindowsApps");
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(L"\\\\?\\UNC\\server\\x:\\WindowsApps\\a.exe"));
}

TEST_F(IsPathAllowedInPackagedFolder, NeverFreesTheDescriptorOfAnAttempt) {
  static std::vector<HLOCAL> freed;
  freed.clear();
  const ImportPatch free(
      "LocalFree", +[](HLOCAL block) -> HLOCAL {
        freed.push_back(block);
        return nullptr;
      });
  AccessList lacking;
  fake_.list = lacking.Allow(SystemId(), kFullControl).Get();
  EXPECT_FALSE(ZQAuthenticodeHelper::IsPathAllowed(kFile));
  EXPECT_FALSE(ZQAuthenticodeHelper::IsPathAllowed(kFile));
  EXPECT_EQ(fake_.descriptors.size(), 10U);
  for (const auto& descriptor : fake_.descriptors) {
    EXPECT_THAT(freed, testing::Not(testing::Contains(descriptor.get())));
  }
}

// Log lines and waits in one order.

CallRecord* waitRecord = nullptr;

void WINAPI RecordingSleep(DWORD milliseconds) {
  waitRecord->Add("wait " + std::to_string(milliseconds));
}

TEST(IsPathAllowedCallOrder, LogsEachFailedAttemptBeforeTheWait) {
  CallRecord record;
  waitRecord = &record;
  const TestSupport::LogCapture log(record);
  const TestSupport::FixedRoots roots;
  const TestSupport::FakeRpcQuery rpc;
  const ImportPatch sleep("Sleep", &RecordingSleep);
  TestSupport::FakeAccessLists fake;
  fake.failures = 5;
  fake.lastError = 2;
  EXPECT_FALSE(ZQAuthenticodeHelper::IsPathAllowed(kFile));
  const auto attempt = [](int number) { return TestSupport::LogLine(Attempt(number, 2)); };
  EXPECT_THAT(record.LinesOf({"log error: Security - GetNamed", "wait"}),
              ElementsAre(attempt(1), "wait 250", attempt(2), "wait 250", attempt(3), "wait 250",
                          attempt(4), "wait 250", attempt(5)));
}

TEST(IsPathAllowedOnRealFolders, RefusesAMissingPackagedFolderAfterOneSecond) {
  waits.clear();
  const TestSupport::FixedRoots roots;
  const TestSupport::FakeRpcQuery rpc;
  const ImportPatch sleep("Sleep", &FakeSleep);
  const TestSupport::LogCapture log;
  EXPECT_FALSE(ZQAuthenticodeHelper::IsPathAllowed(L"Q:\\WindowsApps\\Some\\a.exe"));
  DWORD waited = 0;
  for (const DWORD wait : waits) waited += wait;
  EXPECT_EQ(waited, 1000U);
  const auto lines = log.Records();
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const LogRecord& record) {
                            return record.text.find(L" of 5 times. ") != std::wstring::npos;
                          }),
            5);
}

}  // namespace
}  // namespace Zq::Gantry::Security
