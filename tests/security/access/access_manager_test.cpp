#include "security/access/access_manager.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <type_traits>
#include <utility>

namespace Zq::Gantry::Security {
namespace {

class FixedAnswer : public IClientWithNoZqManifestCheckCriteria {
 public:
  explicit FixedAnswer(bool answer) : answer_(answer) {}
  bool IsAnException() override {
    ++calls;
    return answer_;
  }

  int calls = 0;

 private:
  bool answer_;
};

constexpr char kNoUwpChecker[] =
    "The Behavior was not defined. A call to SetUwpChecker must be done.";
constexpr char kNoWin32Checker[] =
    "The Behavior was not defined. A call to SetWin32Checker must be done.";

template <typename Call>
std::string MessageOf(Call call) {
  try {
    call();
  } catch (const gantry_access_exception& exception) {
    return exception.what();
  }
  return "nothing was thrown";
}

/// The object that the `index`-th shared pointer of a manager refers to, from its first word.
const void* PointerAt(const GantryAccessManager& manager, std::size_t index) {
  const void* pointer = nullptr;
  const auto* bytes = reinterpret_cast<const unsigned char*>(&manager);
  std::memcpy(&pointer, bytes + index * sizeof(std::shared_ptr<void>), sizeof(pointer));
  return pointer;
}

TEST(GantryAccessManager, ThrowsUntilTheUwpCheckerIsSet) {
  GantryAccessManager manager;
  manager.SetWin32Checker(std::make_shared<FixedAnswer>(true));
  EXPECT_EQ(MessageOf([&] { static_cast<void>(manager.IsUwpExempt()); }), kNoUwpChecker);
}

TEST(GantryAccessManager, ThrowsUntilTheWin32CheckerIsSet) {
  GantryAccessManager manager;
  manager.SetUwpChecker(std::make_shared<FixedAnswer>(true));
  EXPECT_EQ(MessageOf([&] { static_cast<void>(manager.IsWin32Exempt()); }), kNoWin32Checker);
}

TEST(GantryAccessManager, UsesTheCheckerOfTheClientsKind) {
  GantryAccessManager manager;
  const auto yes = std::make_shared<FixedAnswer>(true);
  const auto no = std::make_shared<FixedAnswer>(false);
  manager.SetUwpChecker(yes);
  manager.SetWin32Checker(no);
  EXPECT_TRUE(manager.IsUwpExempt());
  EXPECT_EQ(yes->calls, 1);
  EXPECT_EQ(no->calls, 0);
  EXPECT_FALSE(manager.IsWin32Exempt());
  EXPECT_EQ(no->calls, 1);
}

TEST(GantryAccessManager, CallsTheUwpCheckerEachTimeAndReplacesIt) {
  GantryAccessManager manager;
  const auto first = std::make_shared<FixedAnswer>(true);
  manager.SetUwpChecker(first);
  EXPECT_TRUE(manager.IsUwpExempt());
  EXPECT_TRUE(manager.IsUwpExempt());
  EXPECT_EQ(first->calls, 2);
  manager.SetUwpChecker(std::make_shared<FixedAnswer>(false));
  EXPECT_FALSE(manager.IsUwpExempt());
  EXPECT_EQ(first.use_count(), 1);
}

TEST(GantryAccessManager, ReplacesTheWin32Checker) {
  GantryAccessManager manager;
  const auto first = std::make_shared<FixedAnswer>(true);
  manager.SetWin32Checker(first);
  EXPECT_TRUE(manager.IsWin32Exempt());
  manager.SetWin32Checker(std::make_shared<FixedAnswer>(false));
  EXPECT_FALSE(manager.IsWin32Exempt());
  EXPECT_EQ(first.use_count(), 1);
}

TEST(GantryAccessManager, ThrowsAgainAfterAnEmptyCheckerWasSet) {
  GantryAccessManager manager;
  manager.SetUwpChecker(std::make_shared<FixedAnswer>(true));
  manager.SetWin32Checker(std::make_shared<FixedAnswer>(true));
  manager.SetUwpChecker(nullptr);
  EXPECT_EQ(MessageOf([&] { static_cast<void>(manager.IsUwpExempt()); }), kNoUwpChecker);
  EXPECT_TRUE(manager.IsWin32Exempt());
  manager.SetWin32Checker(nullptr);
  EXPECT_EQ(MessageOf([&] { static_cast<void>(manager.IsWin32Exempt()); }), kNoWin32Checker);
}

TEST(GantryAccessManager, HoldsFourPointersInOrder) {
  GantryAccessManager manager;
  const auto store = std::make_shared<FixedAnswer>(true);
  const auto classic = std::make_shared<FixedAnswer>(true);
  EXPECT_EQ(PointerAt(manager, 2), nullptr);
  EXPECT_EQ(PointerAt(manager, 3), nullptr);
  manager.SetUwpChecker(store);
  manager.SetWin32Checker(classic);
  EXPECT_NE(PointerAt(manager, 0), nullptr);
  EXPECT_EQ(PointerAt(manager, 1), nullptr);
  EXPECT_EQ(PointerAt(manager, 2), store.get());
  EXPECT_EQ(PointerAt(manager, 3), classic.get());
  EXPECT_EQ(sizeof(manager), 4 * sizeof(std::shared_ptr<void>));
  EXPECT_FALSE(std::is_polymorphic_v<GantryAccessManager>);
}

TEST(GantryAccessManager, SharesAllPointersWithItsCopies) {
  GantryAccessManager manager;
  manager.SetUwpChecker(std::make_shared<FixedAnswer>(true));
  manager.SetWin32Checker(std::make_shared<FixedAnswer>(false));
  const GantryAccessManager copy(manager);
  GantryAccessManager assigned;
  assigned = manager;
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(PointerAt(copy, i), PointerAt(manager, i)) << i;
    EXPECT_EQ(PointerAt(assigned, i), PointerAt(manager, i)) << i;
  }
}

TEST(GantryAccessManager, CopiesTheReservedPointer) {
  GantryAccessManager manager;
  const auto something = std::make_shared<int>(1);
  // The library never sets it; a component of the host might, by its offset.
  reinterpret_cast<std::shared_ptr<void>*>(&manager)[1] = something;
  const GantryAccessManager copy(manager);
  GantryAccessManager assigned;
  assigned = manager;
  EXPECT_EQ(PointerAt(copy, 1), something.get());
  EXPECT_EQ(PointerAt(assigned, 1), something.get());
  EXPECT_EQ(something.use_count(), 4);
}

TEST(GantryAccessManager, LetsExceptionsOfACheckerPropagate) {
  class Throwing : public IClientWithNoZqManifestCheckCriteria {
   public:
    bool IsAnException() override { throw std::out_of_range("invalid vector subscript"); }
  };
  GantryAccessManager manager;
  manager.SetUwpChecker(std::make_shared<Throwing>());
  EXPECT_THROW(static_cast<void>(manager.IsUwpExempt()), std::out_of_range);
}

TEST(GantryAccessException, IsALogicErrorWithItsMessage) {
  const gantry_access_exception exception("message");
  const std::logic_error& base = exception;
  EXPECT_STREQ(base.what(), "message");
  EXPECT_EQ(sizeof(gantry_access_exception), sizeof(std::logic_error));
  EXPECT_TRUE(std::has_virtual_destructor_v<gantry_access_exception>);
}

TEST(GantryAccessException, IsCopiedMovedAndAssigned) {
  gantry_access_exception first("first");
  gantry_access_exception copy(first);
  EXPECT_STREQ(copy.what(), "first");
  gantry_access_exception moved(std::move(copy));
  EXPECT_STREQ(moved.what(), "first");
  gantry_access_exception other("other");
  other = first;
  EXPECT_STREQ(other.what(), "first");
  gantry_access_exception last("last");
  other = std::move(last);
  EXPECT_STREQ(other.what(), "last");
}

}  // namespace
}  // namespace Zq::Gantry::Security
