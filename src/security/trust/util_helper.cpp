#include "security/trust/util_helper.h"

#include "logging/trace_logger.h"
#include "security/trust/path_rules.h"

namespace Zq::Gantry::Server::Services {

bool UtilHelper::BeginsWith(const std::wstring& text, const std::wstring& prefix) {
  return Security::HasPrefix(text, prefix);
}

bool UtilHelper::NullChecker(std::vector<NamedArgument>& arguments, const wchar_t* component) {
  bool found = false;
  for (const auto& [pointer, name] : arguments) {
    if (pointer != nullptr) continue;
    found = true;
    Logging::LogManager::GetLogger()->LogWarning(
        Logging::LoggingData{L"%S.%S - %S cannot be null", component, nullptr},
        "class Zq::Gantry::Server::Services::UtilHelper", "NullChecker", name.c_str());
  }
  arguments.clear();
  return found;
}

}  // namespace Zq::Gantry::Server::Services
