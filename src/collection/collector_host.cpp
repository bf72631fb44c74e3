#include "collection/wattleaf_helper.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

bool WattleafHelper::StartCollection() { return false; }
void WattleafHelper::StopCollection() {}
void WattleafHelper::MyNativeCallback(const char**, int) {}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
