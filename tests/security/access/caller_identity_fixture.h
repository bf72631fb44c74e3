#pragma once

#include <windows.h>

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "fake_caller.h"
#include "security/access/rpc_security_helper.h"
#include "support/log_capture.h"

namespace TestSupport {

inline constexpr DWORD kClient = FakeCaller::kClient;
inline constexpr wchar_t kName[] = L"Some.App_q7m3xk2tdw9pa";
inline constexpr LONG kNegative = -2147024891;  ///< a status whose highest bit is set

/// RpcSecurityHelper::GetPFNOfCaller with every system call faked.
class GetPFNOfCaller : public testing::Test {
 protected:
  std::wstring CallerName() { return helper_.GetPFNOfCaller(); }

  /// Expects a single line, which begins with `text` and ends with `status`. In between the
  /// standard library adds its own text.
  void ExpectFailure(const std::wstring& text, const std::wstring& status) {
    const std::vector<LogRecord> records = log_.Records();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].level, Standin::LogLevel::kError);
    EXPECT_EQ(records[0].component, L"");
    EXPECT_THAT(records[0].text,
                testing::StartsWith(L"RpcSecurityHelper::GetPFNOfCaller - " + text));
    EXPECT_THAT(records[0].text, testing::EndsWith(L", Status: " + status));
  }

  Zq::Gantry::Security::RpcSecurityHelper helper_;
  FakeCaller fake_;
  LogCapture log_;
};

}  // namespace TestSupport
