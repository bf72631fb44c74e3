#include "security/trust/util_helper.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <cwchar>

#include <gmock/gmock.h>

#include "security/trust/fake_path_calls.h"
#include "support/import_watch.h"
#include "support/log_capture.h"

// The expansion on a thread that serves a client: it uses the client's process, token and
// variables.
namespace Zq::Gantry::Server::Services {
namespace {

using Standin::ImportPatch;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using TestSupport::ExpansionFailure;
using TestSupport::FakeRpcQuery;
using TestSupport::Info;
using TestSupport::LogCapture;
using TestSupport::Warning;

constexpr wchar_t kComponent[] = L"WattleafService";
constexpr DWORD kClient = 4321;

HANDLE ProcessHandle() { return reinterpret_cast<HANDLE>(0x1111); }
HANDLE TokenHandle() { return reinterpret_cast<HANDLE>(0x2222); }

/// The answers of the fake calls, and the arguments that they got.
struct Calls {
  HANDLE process = ProcessHandle();
  HANDLE token = TokenHandle();
  BOOL tokenResult = TRUE;
  BOOL expandResult = TRUE;
  BOOL widerExpandResult = TRUE;  // of every call after the first
  const wchar_t* leftover = L"";  // what a failed expansion writes
  std::wstring expansion = L"C:\\Client\\a.exe";

  std::vector<DWORD> opened;  // access, inherit, process id
  std::vector<HANDLE> tokenOf;
  DWORD tokenAccess = 0;
  std::vector<HANDLE> expandedFor;
  std::vector<std::wstring> expandedTexts;
  DWORD expandChars = 0;  // of the first call
  std::vector<HANDLE> closed;
};

Calls* calls = nullptr;

HANDLE WINAPI FakeOpenProcess(DWORD access, BOOL inherit, DWORD process) {
  calls->opened.insert(calls->opened.end(), {access, static_cast<DWORD>(inherit), process});
  SetLastError(87);
  return calls->process;
}

bool IsClosed(HANDLE handle) {
  return std::find(calls->closed.begin(), calls->closed.end(), handle) != calls->closed.end();
}

BOOL WINAPI FakeOpenProcessToken(HANDLE process, DWORD access, HANDLE* token) {
  EXPECT_FALSE(IsClosed(process)) << "the process is still needed";
  calls->tokenOf.push_back(process);
  calls->tokenAccess = access;
  if (calls->token != nullptr) *token = calls->token;
  SetLastError(6);
  return calls->tokenResult;
}

/// Like the system, truncates a text that does not fit and reports success.
BOOL WINAPI FakeExpandForUser(HANDLE token, LPCWSTR text, LPWSTR result, DWORD chars) {
  EXPECT_FALSE(IsClosed(token)) << "the token is still needed";
  const bool isFirst = calls->expandedFor.empty();
  if (isFirst) calls->expandChars = chars;
  calls->expandedFor.push_back(token);
  calls->expandedTexts.push_back(text);
  SetLastError(203);
  if (!(isFirst ? calls->expandResult : calls->widerExpandResult)) {
    wcscpy_s(result, chars, calls->leftover);
    return FALSE;
  }
  const std::size_t copied = std::min<std::size_t>(calls->expansion.size(), chars - 1);
  calls->expansion.copy(result, copied);
  result[copied] = L'\0';
  return TRUE;
}

BOOL WINAPI FakeCloseHandle(HANDLE handle) {
  calls->closed.push_back(handle);
  SetLastError(1);  // must not be logged as the error of an earlier call
  return TRUE;
}

class GetFullExpandedPathForClient : public testing::Test {
 protected:
  GetFullExpandedPathForClient() { calls = &fake_; }
  ~GetFullExpandedPathForClient() override { calls = nullptr; }

  std::wstring Expand() { return UtilHelper::GetFullExpandedPath(L"%PLACE%\\a.exe", kComponent); }

  Calls fake_;
  LogCapture log_;
  FakeRpcQuery rpc_ = FakeRpcQuery::ServingClient(kClient);

 private:
  ImportPatch openProcess_{"OpenProcess", &FakeOpenProcess};
  ImportPatch openToken_{"OpenProcessToken", &FakeOpenProcessToken};
  ImportPatch expand_{"ExpandEnvironmentStringsForUserW", &FakeExpandForUser};
  ImportPatch close_{"CloseHandle", &FakeCloseHandle};
};

TEST_F(GetFullExpandedPathForClient, RequestsOnlyTheProcessIdWithVersion3OfTheAttributes) {
  Expand();
  ASSERT_EQ(rpc_.Questions().size(), 1U);
  const FakeRpcQuery::Question& question = rpc_.Questions().front();
  EXPECT_EQ(question.binding, nullptr);
  unsigned int version = 0;
  unsigned int flags = 0;
  std::memcpy(&version, question.attributes.data(), 4);
  std::memcpy(&flags, question.attributes.data() + 4, 4);
  EXPECT_EQ(version, 3U);
  EXPECT_EQ(flags, 16U);
  for (std::size_t i = 8; i < 120; ++i) EXPECT_EQ(question.attributes[i], 0) << i;
}

TEST_F(GetFullExpandedPathForClient, ExpandsTheVariablesOfTheClient) {
  EXPECT_EQ(Expand(), L"C:\\Client\\a.exe");
  EXPECT_THAT(fake_.opened, ElementsAre(0x1FFFFFU, 0U, kClient));
  EXPECT_THAT(fake_.tokenOf, ElementsAre(ProcessHandle()));
  EXPECT_EQ(fake_.tokenAccess, 0xF01FFU);
  EXPECT_THAT(fake_.expandedFor, ElementsAre(TokenHandle()));
  EXPECT_THAT(fake_.expandedTexts, ElementsAre(L"%PLACE%\\a.exe"));
  EXPECT_EQ(fake_.expandChars, 260U);
}

TEST_F(GetFullExpandedPathForClient, LogsNothingAboutASuccessfulExpansion) {
  Expand();
  EXPECT_THAT(log_.Records(),
              ElementsAre(Info(L"GetFullPathName: [C:\\Client\\a.exe]", kComponent)));
}

TEST_F(GetFullExpandedPathForClient, NeverExpandsTheVariablesOfThisProcess) {
  const TestSupport::ImportWatch watch;
  Expand();
  EXPECT_THAT(watch.Calls(), ElementsAre("RpcServerInqCallAttributesW", "OpenProcess",
                                         "OpenProcessToken", "ExpandEnvironmentStringsForUserW",
                                         "CloseHandle", "CloseHandle", "GetFullPathNameW"));
}

TEST_F(GetFullExpandedPathForClient, ClosesTokenAndProcess) {
  Expand();
  EXPECT_THAT(fake_.closed, ElementsAre(TokenHandle(), ProcessHandle()));
}

TEST_F(GetFullExpandedPathForClient, IsEmptyWhenTheProcessCannotBeOpened) {
  for (const HANDLE handle : {HANDLE{nullptr}, INVALID_HANDLE_VALUE}) {
    fake_.process = handle;
    log_.Clear();
    EXPECT_EQ(Expand(), L"");
    ASSERT_EQ(log_.Records().size(), 2U);
    EXPECT_EQ(log_.Records()[0],
              Warning(ExpansionFailure(L"process_handle is NULL or INVALID_HANDLE_VALUE", 87),
                      kComponent));
    EXPECT_EQ(log_.Records()[1].level, Standin::LogLevel::kWarning);
  }
  EXPECT_THAT(fake_.tokenOf, IsEmpty());
  EXPECT_THAT(fake_.closed, IsEmpty());
}

TEST_F(GetFullExpandedPathForClient, IsEmptyWhenTheTokenCannotBeOpened) {
  fake_.tokenResult = FALSE;
  for (const HANDLE handle : {HANDLE{nullptr}, INVALID_HANDLE_VALUE}) {
    fake_.token = handle;
    fake_.closed.clear();
    log_.Clear();
    EXPECT_EQ(Expand(), L"");
    // Only the full path of the empty text is logged.
    ASSERT_EQ(log_.Records().size(), 1U);
    EXPECT_THAT(log_.Records()[0].text, testing::HasSubstr(L"function GetFullPathName with"));
    EXPECT_THAT(fake_.closed, ElementsAre(ProcessHandle()));
  }
  EXPECT_THAT(fake_.expandedFor, IsEmpty());
}

TEST_F(GetFullExpandedPathForClient, UsesATokenThatAFailedCallReturned) {
  fake_.tokenResult = FALSE;
  EXPECT_EQ(Expand(), L"C:\\Client\\a.exe");
  EXPECT_THAT(fake_.closed, ElementsAre(TokenHandle(), ProcessHandle()));
}

TEST_F(GetFullExpandedPathForClient, IsEmptyWhenTheExpansionFails) {
  fake_.expandResult = FALSE;
  EXPECT_EQ(Expand(), L"");
  ASSERT_EQ(log_.Records().size(), 2U);
  EXPECT_EQ(log_.Records()[0],
            Warning(ExpansionFailure(L"ExpandEnvironmentStringsForUser", 203), kComponent));
  EXPECT_THAT(log_.Records()[1].text, testing::HasSubstr(L"function GetFullPathName with"));
  EXPECT_THAT(fake_.closed, ElementsAre(TokenHandle(), ProcessHandle()));
}

TEST_F(GetFullExpandedPathForClient, NeverUsesATruncatedExpansion) {
  fake_.expansion = L"C:\\Windows\\" + std::wstring(249, L'w');  // 260 characters
  EXPECT_EQ(Expand(), L"");
  ASSERT_EQ(log_.Records().size(), 2U);
  EXPECT_EQ(log_.Records()[0],
            Warning(ExpansionFailure(L"ExpandEnvironmentStringsForUser", 203), kComponent));
}

TEST_F(GetFullExpandedPathForClient, NeverUsesTheTextOfAFailedExpansion) {
  fake_.expandResult = FALSE;
  fake_.leftover = L"C:\\Windows\\a.exe";
  EXPECT_EQ(Expand(), L"");
  ASSERT_EQ(log_.Records().size(), 2U);
  EXPECT_THAT(log_.Records()[1].text, testing::HasSubstr(L"function GetFullPathName with"));
}

TEST_F(GetFullExpandedPathForClient, TreatsAFullBufferAsTruncatedWhenTheSecondExpansionFails) {
  fake_.expansion = L"C:\\Windows\\" + std::wstring(248, L'w');  // 259 characters
  fake_.widerExpandResult = FALSE;
  EXPECT_EQ(Expand(), L"");
  EXPECT_EQ(log_.Records().size(), 2U);
}

TEST_F(GetFullExpandedPathForClient, ExpandsAgainOnlyWhenTheTextFillsTheBuffer) {
  fake_.expansion = L"C:\\Windows\\" + std::wstring(247, L'w');  // 258 characters
  EXPECT_EQ(Expand(), fake_.expansion);
  EXPECT_EQ(fake_.expandedFor.size(), 1U);
}

TEST_F(GetFullExpandedPathForClient, AcceptsTheLongestExpansionThatFits) {
  fake_.expansion = L"C:\\Windows\\" + std::wstring(248, L'w');  // 259 characters
  EXPECT_EQ(Expand(), fake_.expansion);
}

TEST(GetFullExpandedPathWithARealToken, ExpandsForThisProcessAsItsOwnClient) {
  const FakeRpcQuery rpc = FakeRpcQuery::ServingClient(GetCurrentProcessId());
  wchar_t windows[MAX_PATH] = {};
  GetWindowsDirectoryW(windows, MAX_PATH);
  const std::wstring expected = std::wstring(windows) + L"\\a.exe";
  const LogCapture log;
  // Every user has this variable; the case of its value differs between machines.
  const std::wstring path = UtilHelper::GetFullExpandedPath(L"%SystemRoot%\\x\\..\\a.exe", L"");
  EXPECT_TRUE(UtilHelper::BeginsWith(path, expected) && path.size() == expected.size());
  EXPECT_EQ(log.Records().size(), 1U);
}

}  // namespace
}  // namespace Zq::Gantry::Server::Services
