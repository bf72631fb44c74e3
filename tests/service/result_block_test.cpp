#include "service/result_text.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

/// Whether HandOver accepts `text`; checks the copy that it makes.
bool IsHandedOver(const std::wstring& text) {
  wchar_t* output = nullptr;
  const bool accepted = HandOver(text, &output);
  const std::unique_ptr<wchar_t, void (*)(void*)> block(output, &std::free);
  EXPECT_EQ(accepted, output != nullptr);
  if (accepted) {
    EXPECT_EQ(std::wstring(output), text);
  }
  return accepted;
}

}  // namespace

TEST(HandOver, CopiesAResultOf65535Characters) {
  EXPECT_TRUE(IsHandedOver(std::wstring(65535, L'x')));
}

TEST(HandOver, RefusesAResultOf65536Characters) {
  EXPECT_FALSE(IsHandedOver(std::wstring(65536, L'x')));
}

TEST(HandOver, RefusesAnEmptyResult) { EXPECT_FALSE(IsHandedOver(L"")); }

TEST(HandOver, RefusesANullOutput) { EXPECT_FALSE(HandOver(L"true", nullptr)); }

TEST(HandOver, LeavesTheOutputWhenItRefuses) {
  wchar_t marker = L'm';
  wchar_t* output = &marker;
  EXPECT_FALSE(HandOver(std::wstring(65536, L'x'), &output));
  EXPECT_EQ(output, &marker);
}
