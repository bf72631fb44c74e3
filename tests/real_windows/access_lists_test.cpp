// Access lists that the system itself stores and judges. Elsewhere the calls that read them are
// faked.

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "base/json_document.h"
#include "base/plain_file.h"
#include "collection/ledger_fixture.h"
#include "files/data_copy.h"
#include "files/private_folder.h"
#include "platform/win32/owners.h"
#include "security/trust/path_rules.h"
#include "security/trust/util_helper.h"
#include "security/trust/zq_authenticode_helper.h"
#include "support/log_capture.h"
#include "support/real_windows.h"
#include "support/temp_folder.h"

using namespace TestSupport;
using namespace Zq::Gantry::Server::Services::Wattleaf;
using Zq::Gantry::Platform::UniqueHandle;
using Zq::Gantry::Platform::UniqueLocalBlock;
using Zq::Gantry::Security::AllowedRootPaths;
using Zq::Gantry::Security::ZQAuthenticodeHelper;
using Zq::Gantry::Server::Services::UtilHelper;

namespace {

/// Skips where the system stores no access lists.
template <typename Fixture>
class WithRealAccessLists : public Fixture {
 protected:
  void SetUp() override {
    if (IsWine()) GTEST_SKIP() << "Wine makes access lists from the mode of a file";
  }
};

using AccessListsOnWindows = WithRealAccessLists<testing::Test>;
using DeniedFilesOnWindows = WithRealAccessLists<DailyPassFixture>;

/// A descriptor from its text; null, and the test fails, if the text is wrong.
UniqueLocalBlock Descriptor(const std::wstring& text) {
  UniqueLocalBlock block;
  EXPECT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorW(text.c_str(), SDDL_REVISION_1,
                                                                   block.out(), /*size=*/nullptr))
      << GetLastError();
  return block;
}

/// Replaces the access list of a file or folder. While it exists, only that list counts; the
/// destructor lets everyone in, so that the file can be removed.
class ScopedAccessList {
 public:
  ScopedAccessList(std::wstring path, const std::wstring& list) : path_(std::move(path)) {
    Set(L"D:P" + list);
  }
  ScopedAccessList(const ScopedAccessList&) = delete;
  ScopedAccessList& operator=(const ScopedAccessList&) = delete;
  ~ScopedAccessList() { Set(L"D:P(A;OICI;FA;;;WD)"); }

 private:
  void Set(const std::wstring& text) const {
    EXPECT_TRUE(SetFileSecurityW(path_.c_str(), DACL_SECURITY_INFORMATION, Descriptor(text).get()))
        << GetLastError();
  }

  const std::wstring path_;
};

/// A drive whose root is a folder.
class FolderDrive {
 public:
  explicit FolderDrive(std::wstring folder) : folder_(std::move(folder)) {
    for (wchar_t letter = L'Z'; letter > L'C' && name_.empty(); --letter) {
      if ((GetLogicalDrives() >> (letter - L'A') & 1U) == 0) name_ = {letter, L':'};
    }
    EXPECT_TRUE(DefineDosDeviceW(DDD_NO_BROADCAST_SYSTEM, name_.c_str(), folder_.c_str()));
  }
  FolderDrive(const FolderDrive&) = delete;
  FolderDrive& operator=(const FolderDrive&) = delete;
  ~FolderDrive() {
    DefineDosDeviceW(DDD_REMOVE_DEFINITION | DDD_EXACT_MATCH_ON_REMOVE | DDD_NO_BROADCAST_SYSTEM,
                     name_.c_str(), folder_.c_str());
  }

  /// "Q:"
  [[nodiscard]] const std::wstring& Name() const { return name_; }

 private:
  const std::wstring folder_;
  std::wstring name_;
};

/// The names of an account in this system's language: domain and name.
std::wstring AccountNames(WELL_KNOWN_SID_TYPE kind) {
  std::array<std::byte, SECURITY_MAX_SID_SIZE> account{};
  auto bytes = static_cast<DWORD>(account.size());
  std::array<wchar_t, 256> name{};
  std::array<wchar_t, 256> domain{};
  auto nameChars = static_cast<DWORD>(name.size());
  auto domainChars = static_cast<DWORD>(domain.size());
  SID_NAME_USE use{};
  if (!CreateWellKnownSid(kind, nullptr, account.data(), &bytes) ||
      !LookupAccountSidW(nullptr, account.data(), name.data(), &nameChars, domain.data(),
                         &domainChars, &use)) {
    return {};
  }
  return std::wstring(domain.data()) + L"\\" + name.data();
}

/// The account of this process, as a token's information.
struct OwnAccount {
  OwnAccount() {
    UniqueHandle token;
    DWORD size = 0;
    EXPECT_TRUE(OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.out()));
    EXPECT_TRUE(GetTokenInformation(token.get(), TokenUser, bytes.data(),
                                    static_cast<DWORD>(bytes.size()), &size));
  }
  [[nodiscard]] PSID Get() { return reinterpret_cast<TOKEN_USER*>(bytes.data())->User.Sid; }

  alignas(TOKEN_USER) std::array<std::byte, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> bytes{};
};

/// The token of an ordinary user of this machine: that of this process without privileges, where
/// neither its own account nor administrators let anybody in.
UniqueHandle OrdinaryUser() {
  std::array<std::byte, SECURITY_MAX_SID_SIZE> administrators{};
  auto size = static_cast<DWORD>(administrators.size());
  EXPECT_TRUE(
      CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, administrators.data(), &size));
  OwnAccount own;
  std::array<SID_AND_ATTRIBUTES, 2> without{{{administrators.data(), 0}, {own.Get(), 0}}};
  UniqueHandle process;
  UniqueHandle restricted;
  UniqueHandle user;
  EXPECT_TRUE(OpenProcessToken(GetCurrentProcess(), TOKEN_DUPLICATE | TOKEN_QUERY, process.out()));
  EXPECT_TRUE(CreateRestrictedToken(process.get(), DISABLE_MAX_PRIVILEGE,
                                    static_cast<DWORD>(without.size()), without.data(), 0, nullptr,
                                    0, nullptr, restricted.out()))
      << GetLastError();
  EXPECT_TRUE(DuplicateToken(restricted.get(), SecurityIdentification, user.out()))
      << GetLastError();
  return user;
}

/// All rights to a file or folder that the token's user has; every right if the system cannot say.
DWORD RightsOf(HANDLE user, const std::wstring& path) {
  UniqueLocalBlock descriptor;
  EXPECT_EQ(GetNamedSecurityInfoW(
                const_cast<wchar_t*>(path.c_str()), SE_FILE_OBJECT,
                OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION,
                nullptr, nullptr, nullptr, nullptr, descriptor.out()),
            DWORD{ERROR_SUCCESS});
  GENERIC_MAPPING mapping = {FILE_GENERIC_READ, FILE_GENERIC_WRITE, FILE_GENERIC_EXECUTE,
                             FILE_ALL_ACCESS};
  PRIVILEGE_SET privileges{};
  DWORD size = sizeof(privileges);
  DWORD granted = 0;
  BOOL isAllowed = FALSE;
  if (!AccessCheck(descriptor.get(), user, MAXIMUM_ALLOWED, &mapping, &privileges, &size, &granted,
                   &isAllowed)) {
    ADD_FAILURE() << "AccessCheck failed: " << GetLastError();
    return FILE_ALL_ACCESS;
  }
  return isAllowed ? granted : 0;
}

// The entries of the folder of packaged applications, as Windows makes it.
constexpr wchar_t kInstaller[] =
    L"(A;;FA;;;S-1-5-80-956008885-3418522649-1831038044-1853292631-2271478464)"
    L"(A;OICIIO;GA;;;S-1-5-80-956008885-3418522649-1831038044-1853292631-2271478464)";
constexpr wchar_t kSystem[] = L"(A;;FA;;;SY)(A;OICIIO;GA;;;SY)";
constexpr wchar_t kEveryone[] = L"(A;OICI;FA;;;WD)";

}  // namespace

TEST_F(AccessListsOnWindows, APackagedFolderIsAllowedIfTheInstallerAndTheSystemControlIt) {
  if (AccountNames(WinLocalSystemSid) != L"NT AUTHORITY\\SYSTEM") {
    GTEST_SKIP() << "the names of accounts are in another language";
  }
  const TempFolder place;
  const std::wstring folder = place.File(L"WindowsApps");
  ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
  const FolderDrive drive(place.Path());
  const std::wstring program = drive.Name() + L"\\WindowsApps\\Some.App_1.0\\a.exe";
  const LogCapture log;
  const auto isAllowed = [&](const std::wstring& list) {
    const ScopedAccessList scoped(folder, list);
    return ZQAuthenticodeHelper::IsPathAllowed(program.c_str());
  };
  EXPECT_TRUE(isAllowed(std::wstring(kInstaller) + kSystem + kEveryone));
  EXPECT_FALSE(isAllowed(std::wstring(kInstaller) + kEveryone));
  EXPECT_FALSE(isAllowed(std::wstring(kSystem) + kEveryone));
  // Without the entries that are inherited only, the system spells out each right.
  const std::wstring installer =
      L"(A;;GA;;;S-1-5-80-956008885-3418522649-1831038044-1853292631-2271478464)";
  EXPECT_FALSE(isAllowed(installer + installer + L"(A;;GA;;;SY)(A;;GA;;;SY)" + kEveryone));
}

TEST_F(AccessListsOnWindows, AnOrdinaryUserCannotWriteToTheRootsOfAllowedPlaces) {
  constexpr DWORD kChangeRights =
      FILE_ADD_FILE | FILE_ADD_SUBDIRECTORY | FILE_DELETE_CHILD | DELETE | WRITE_DAC | WRITE_OWNER;
  const UniqueHandle user = OrdinaryUser();
  const LogCapture log;
  for (const wchar_t* root : AllowedRootPaths) {
    const std::wstring path = UtilHelper::GetFullExpandedPath(root, L"");
    ASSERT_FALSE(path.empty());
    SCOPED_TRACE(std::string(path.begin(), path.end()));
    const DWORD rights = RightsOf(user.get(), path);
    EXPECT_EQ(rights & kChangeRights, 0U);
    EXPECT_NE(rights & FILE_LIST_DIRECTORY, 0U) << "the token lets this user in nowhere";
  }
}

TEST_F(AccessListsOnWindows, APrivateFolderLetsInOnlyTheUserTheSystemAndAdministrators) {
  const std::wstring folder = WattleafHost::MakePrivateFolder();
  WriteWholeFile(folder + L"\\a.json", "[]");
  const UniqueHandle user = OrdinaryUser();
  EXPECT_EQ(RightsOf(user.get(), folder), 0U);
  EXPECT_EQ(RightsOf(user.get(), folder + L"\\a.json"), 0U);

  ACL* list = nullptr;
  UniqueLocalBlock descriptor;
  ASSERT_EQ(GetNamedSecurityInfoW(const_cast<wchar_t*>(folder.c_str()), SE_FILE_OBJECT,
                                  DACL_SECURITY_INFORMATION, nullptr, nullptr, &list, nullptr,
                                  descriptor.out()),
            DWORD{ERROR_SUCCESS});
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(list->AceCount, 3U);
  OwnAccount own;
  const std::array<bool (*)(PSID, PSID), 3> isExpected = {
      [](PSID account, PSID self) { return EqualSid(account, self) != 0; },
      [](PSID account, PSID) { return IsWellKnownSid(account, WinLocalSystemSid) != 0; },
      [](PSID account, PSID) { return IsWellKnownSid(account, WinBuiltinAdministratorsSid) != 0; }};
  for (DWORD i = 0; i < list->AceCount; ++i) {
    void* entry = nullptr;
    ASSERT_TRUE(GetAce(list, i, &entry));
    auto* allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
    EXPECT_EQ(allowed->Header.AceType, ACCESS_ALLOWED_ACE_TYPE);
    EXPECT_EQ(allowed->Header.AceFlags, OBJECT_INHERIT_ACE | CONTAINER_INHERIT_ACE);
    EXPECT_EQ(allowed->Mask, DWORD{FILE_ALL_ACCESS});
    EXPECT_TRUE(isExpected[i](&allowed->SidStart, own.Get())) << i;
  }
  WattleafHost::RemoveFolderTree(folder);
}

TEST_F(DeniedFilesOnWindows, AFileThatMayNotBeReadIsNeitherLoadedNorCopied) {
  const std::wstring path = folder.File(L"PowerConsumption.json");
  WriteWholeFile(path, "[]");
  const ScopedAccessList denied(path, L"(D;;0x1;;;WD)(A;;FA;;;WD)");  // FILE_READ_DATA
  EXPECT_TRUE(IsPlainFile(path));
  EXPECT_EQ(LoadJsonDocument(path), nullptr);
  WattleafHost::DataCopy copy(folder.Path());
  EXPECT_FALSE(copy.Add(L"PowerConsumption.json"));
  ASSERT_EQ(copy.LeftOut().size(), 1U);
  EXPECT_EQ(copy.LeftOut()[0].reason, WattleafHost::LeftOutReason::kUnreadable);
  EXPECT_EQ(copy.LeftOut()[0].systemError, DWORD{ERROR_ACCESS_DENIED});
}

TEST_F(DeniedFilesOnWindows, SamplesStayWhenTheLedgerMayNotBeWritten) {
  WriteOneInterval("2024-05-01");
  WriteWholeFile(LedgerPath(), "[]");
  {
    const ScopedAccessList denied(LedgerPath(), L"(D;;0x2;;;WD)(A;;FA;;;WD)");  // FILE_WRITE_DATA
    Run();
  }
  EXPECT_EQ(Problems(), std::vector<LogRecord>{Error(kSaveFailed)});
  EXPECT_EQ(LedgerText(), "[]");
  EXPECT_TRUE(HasSamples("2024-05-01"));
  EXPECT_EQ(Booked("2024-05-01"), kThreeWh);
}

TEST_F(DeniedFilesOnWindows, ALedgerWhoseStatusMayNotBeReadIsNotOverwritten) {
  const std::string content = R"([{"Key":"2024-05-01","Value":12.5}])";
  WriteWholeFile(LedgerPath(), content);
  {
    // The attributes of a file can also be read by everyone who may list its folder.
    const ScopedAccessList file(LedgerPath(), L"(D;;0x80;;;WD)(A;;FA;;;WD)");
    const ScopedAccessList unlisted(folder.Path(), L"(D;;0x1;;;WD)(A;;FA;;;WD)");
    EXPECT_EQ(TryIsPlainFile(LedgerPath()), std::nullopt);
    EXPECT_FALSE(IsPlainFile(LedgerPath()));
    Run();
  }
  EXPECT_EQ(Problems(), std::vector<LogRecord>{Error(kSaveFailed)});
  EXPECT_EQ(LedgerText(), content);
}
