#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "security/access/judged_files.h"

namespace TestSupport {

inline constexpr wchar_t kGood[] = L"C:\\Windows\\good.dll";

/// Every file is signed for the service, so that only their places differ.
class ToolArguments : public testing::Test {
 protected:
  ToolArguments() { files_.SignAllForTheService(); }

  [[nodiscard]] std::vector<std::wstring> Verified() const { return files_.VerifiedFiles(); }

  JudgedFiles files_;
};

}  // namespace TestSupport
