#include "service/wattleaf_service.h"
#include "wattleaf_export.h"

/// The exported factory; the host owns the object and destroys it through its virtual destructor.
extern "C" WATTLEAF_API Zq::Gantry::Server::Services::ZQService* ZQCreateService() {
  return new Zq::Gantry::Server::Services::Wattleaf::WattleafService();
}
