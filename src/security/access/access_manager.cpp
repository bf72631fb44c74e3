#include "security/access/access_manager.h"

#include <utility>

namespace Zq::Gantry::Security {

namespace {

constexpr char kNoUwpChecker[] =
    "The Behavior was not defined. A call to SetUwpChecker must be done.";
constexpr char kNoWin32Checker[] =
    "The Behavior was not defined. A call to SetWin32Checker must be done.";

bool QueryChecker(const std::shared_ptr<IClientWithNoZqManifestCheckCriteria>& checker,
                  const char* message) {
  if (!checker) throw gantry_access_exception(message);
  return checker->IsAnException();
}

}  // namespace

gantry_access_exception::gantry_access_exception(const char* message) : std::logic_error(message) {}
gantry_access_exception::gantry_access_exception(const gantry_access_exception& other) noexcept =
    default;
gantry_access_exception::gantry_access_exception(gantry_access_exception&& other) noexcept =
    default;
gantry_access_exception& gantry_access_exception::operator=(
    const gantry_access_exception& other) noexcept = default;
gantry_access_exception& gantry_access_exception::operator=(
    gantry_access_exception&& other) noexcept = default;
gantry_access_exception::~gantry_access_exception() = default;

GantryAccessManager::GantryAccessManager()
    : uwpWhiteList_(std::make_shared<UwpWithNoZQManifestExemptionWhiteList>()) {}
GantryAccessManager::GantryAccessManager(const GantryAccessManager& other) = default;
GantryAccessManager& GantryAccessManager::operator=(const GantryAccessManager& other) = default;
GantryAccessManager::~GantryAccessManager() = default;

void GantryAccessManager::SetUwpChecker(
    std::shared_ptr<IClientWithNoZqManifestCheckCriteria> checker) {
  uwpChecker_ = std::move(checker);
}

void GantryAccessManager::SetWin32Checker(
    std::shared_ptr<IClientWithNoZqManifestCheckCriteria> checker) {
  win32Checker_ = std::move(checker);
}

bool GantryAccessManager::IsUwpExempt() { return QueryChecker(uwpChecker_, kNoUwpChecker); }

bool GantryAccessManager::IsWin32Exempt() { return QueryChecker(win32Checker_, kNoWin32Checker); }

}  // namespace Zq::Gantry::Security
