#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/platform_calls.h"
#include "platform/wmi/public_wmi.h"

namespace TestSupport {

/// An empty JSON object for the value that PublicWmi::GetPropertyValue stores.
class PublicWmiFixture : public WmiTest {
 protected:
  PublicWmiFixture() { document.SetObject(); }

  [[nodiscard]] std::uint32_t Read() {
    return Zq::Gantry::Server::Shared::WMI::PublicWmi().GetPropertyValue(document);
  }
  [[nodiscard]] bool HasResult() const { return document.HasMember(L"result"); }

  /// Reads once and checks the failure: its status, one warning, nothing stored, COM left again.
  void ExpectFailure(std::uint32_t status, const LogRecord& warning) {
    FakeCom com(record);
    EXPECT_EQ(Read(), status);
    EXPECT_EQ(log.Records(), std::vector<LogRecord>{warning});
    EXPECT_FALSE(HasResult());
    EXPECT_EQ(com.initialized, 1);
    EXPECT_EQ(record.Lines().back(), "CoUninitialize");
    EXPECT_EQ(record.LinesOf({"log ", "CoUninitialize"}),
              (std::vector<std::string>{LogLine(warning), "CoUninitialize"}));
    EXPECT_EQ(com.liveWhenLeft, std::vector<int>{0})
        << "one CoUninitialize, after the last release";
  }

  Zq::Gantry::Server::Shared::WMI::WideDocument document;
};

}  // namespace TestSupport
