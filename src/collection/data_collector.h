#pragma once

// The binary contract with the closed collector library. This header only names standard types and
// defines none, so that a check can lay out the table of virtual operations without a standard
// library (tests/contract).

#include <map>
#include <vector>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Reports `count` items of new data. Called on a thread of the collector's choosing; the items are
/// borrowed for the call, and this library uses only their number.
using CollectorCallback = void (*)(const char** items, int count);

/// The collector as the closed library implements it. The order of the operations is the contract.
///
/// This library calls OnLoad, SetDataCallback and StartCollecting once each, in this order and on
/// one thread. If it is freed later, StopCollecting and the destructor follow on the thread that
/// frees it. If the process ends, neither is called: by then the system has killed the collector's
/// threads, and locks that they held stay locked. What must outlive the process is therefore
/// written while collecting.
class DataCollector {
 public:
  /// The first call after creation. False means that the collector cannot work: it is destroyed,
  /// and its library is freed.
  virtual bool OnLoad() = 0;
  /// Starts collecting the given kinds of data. Returns a status by kind: 1 started, 0 device not
  /// supported, -1 firmware too old. The library stays loaded for these three and is freed for any
  /// other. Exceptions are caught and logged, and count as a failure.
  virtual std::map<int, int> StartCollecting(const std::vector<int>& kinds) = 0;
  /// Stops collecting the given kinds. The result is not used.
  virtual std::map<int, int> StopCollecting(const std::vector<int>& kinds) = 0;
  /// Sets the function to call when there is new data. It stays valid as long as the collector's
  /// library is loaded.
  virtual void SetDataCallback(CollectorCallback callback) = 0;
  /// May throw, as the closed library decides; the caller catches the exception.
  virtual ~DataCollector() noexcept(false) {}
};

/// The type of the library's one export that is used. Returns a new object, which the caller owns
/// and destroys through its virtual destructor, or null on failure.
using CreateCollector = DataCollector* (*)();
/// The name of that export.
inline constexpr char kCreateCollectorExport[] = "CreateZQXExportClass";

}  // namespace Zq::Gantry::Server::Services::Wattleaf
