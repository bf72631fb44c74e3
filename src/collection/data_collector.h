#pragma once

// The binary contract with the closed collector library. Standard types are only named here, so
// that the table of virtual operations can be checked without a standard library.

#include <map>
#include <vector>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Gets the collector's news; called on a thread of the collector's choosing.
using CollectorCallback = void (*)(const char** items, int count);

/// The collector as the closed library implements it. The order of the operations is the contract.
class DataCollector {
 public:
  /// First call after creation; false means that the collector cannot work.
  virtual bool OnLoad() = 0;
  /// Starts collecting the given kinds; a status for each kind.
  virtual std::map<int, int> StartCollecting(const std::vector<int>& kinds) = 0;
  virtual std::map<int, int> StopCollecting(const std::vector<int>& kinds) = 0;
  virtual void SetDataCallback(CollectorCallback callback) = 0;
  /// May throw: the closed library decides, and the caller guards the call.
  virtual ~DataCollector() noexcept(false) {}
};

/// The library's only export that is used, under this name; the caller owns the object.
using CreateCollector = DataCollector* (*)();
inline constexpr char kCreateCollectorExport[] = "CreateZQXExportClass";

}  // namespace Zq::Gantry::Server::Services::Wattleaf
