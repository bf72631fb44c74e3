#include <algorithm>

#include "security/access/tool_launch.h"

namespace Zq::Gantry::Security {

bool AdmitsFamily(const ToolLaunchRule& rule, const std::wstring& family) {
  if (rule.AllowedFamilies.empty()) return true;
  if (family.empty()) return false;
  return std::find(rule.AllowedFamilies.begin(), rule.AllowedFamilies.end(), family) !=
         rule.AllowedFamilies.end();
}

}  // namespace Zq::Gantry::Security
