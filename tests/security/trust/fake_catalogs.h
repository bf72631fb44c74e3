#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "support/call_record.h"

namespace TestSupport {

/// Fakes the calls that search the security catalogs while this object exists. One at a time. By
/// default contexts can be acquired, the hash is the 32 bytes 0x00, 0x07, 0x0e, ..., and no catalog
/// lists it.
///
/// Each context and each catalog has a handle of its own. The test fails for a call with a handle
/// that is not open (a second release, a use after release), for a catalog that is released after
/// its context, and for a catalog that is still open at the end.
class FakeCatalogs {
 public:
  FakeCatalogs();
  FakeCatalogs(const FakeCatalogs&) = delete;
  FakeCatalogs& operator=(const FakeCatalogs&) = delete;
  ~FakeCatalogs();

  /// The paths of the catalogs that list the hash.
  std::vector<std::wstring> catalogs;
  std::vector<std::uint8_t> hash;

  /// Failures; `...Error` is the last error that the failed call sets.
  bool failAcquire = false;
  DWORD acquireError = 120;
  bool acquireNull = false;
  bool leaveHandleOnFailure = false;  ///< the failed call also writes a handle
  bool hashSizeZero = false;
  bool failHashSizeCall = false;  ///< returns FALSE, although it writes the size
  bool failHash = false;
  DWORD enumError = 1168;
  bool failInfo = false;
  bool fillWholePath = false;  ///< a path of 260 characters without terminator

  /// Whether the context of the handle is open; false without an instance.
  [[nodiscard]] static bool IsOpenContext(HANDLE context);

  /// If not null, gets each call too, in one order with the other users of the record.
  CallRecord* record = nullptr;
  /// The calls in order: "acquire", "hash size", "hash", "enum", "info", "release catalog",
  /// "release context".
  std::vector<std::string> calls;
  /// How many are open; the destructor checks that no catalog is.
  int openContexts = 0;
  int openCatalogs = 0;
  /// The hash that the enumeration got.
  std::vector<std::uint8_t> queriedHash;

  [[nodiscard]] int Count(const std::string& call) const;

 private:
  struct Patches;
  std::unique_ptr<Patches> patches_;
};

}  // namespace TestSupport
