#include "security/access/gantry_access_exception.h"

namespace Zq::Gantry::Security {

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

}  // namespace Zq::Gantry::Security
