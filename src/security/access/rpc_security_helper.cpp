#include "security/access/rpc_security_helper.h"

namespace Zq::Gantry::Security {

std::wstring RpcSecurityHelper::GetPFNOfCaller() const { return {}; }

}  // namespace Zq::Gantry::Security
