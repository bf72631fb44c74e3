#pragma once

// The binary contract with the closed collector library. Standard types are only named here, so
// that the table of virtual operations can be checked without a standard library.

#include <map>
#include <vector>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Gets the collector's news; called on a thread of the collector's choosing.
using CollectorCallback = void (*)(const char** items, int count);

/// The collector as the closed library implements it. The order of the operations is the contract.
///
/// What a collector may expect: OnLoad, SetDataCallback and StartCollecting are called once each,
/// in this order, on one thread of this library's. If the library is freed, StopCollecting and the
/// destructor follow on the thread that frees it. If the process ends, neither is called: the
/// system has killed the collector's threads by then, so nothing that they hold would be given
/// back. What must outlive the process is therefore written while collecting.
class DataCollector {
 public:
  /// First call after creation; false means that the collector cannot work. It is then destroyed
  /// and its library freed.
  virtual bool OnLoad() = 0;
  /// Starts collecting the given kinds. Returns a status for each kind: 1 started, 0 device not
  /// supported, -1 firmware too old; the library stays loaded for these three.
  virtual std::map<int, int> StartCollecting(const std::vector<int>& kinds) = 0;
  /// Stops collecting the given kinds. The result is not used.
  virtual std::map<int, int> StopCollecting(const std::vector<int>& kinds) = 0;
  /// `callback` stays valid as long as the library is loaded; call it with the number of items.
  virtual void SetDataCallback(CollectorCallback callback) = 0;
  /// May throw: the closed library decides, and the caller guards the call.
  virtual ~DataCollector() noexcept(false) {}
};

/// The library's only export that is used, under this name; the caller owns the object.
using CreateCollector = DataCollector* (*)();
inline constexpr char kCreateCollectorExport[] = "CreateZQXExportClass";

}  // namespace Zq::Gantry::Server::Services::Wattleaf
