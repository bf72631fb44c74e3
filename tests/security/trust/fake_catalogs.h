#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "support/call_record.h"

namespace TestSupport {

/// Fakes the security catalogs for as long as it lives. One at a time. Without changes: contexts
/// are given, the hash is the 32 bytes 0x00, 0x07, 0x0e, ..., and no catalog lists it.
///
/// Each context and each catalog is a handle of its own. The test fails for a call with one that is
/// not open, so for a second release and for a use after it, for a catalog that is released after
/// its context, and for a catalog that is still open at the end.
class FakeCatalogs {
 public:
  FakeCatalogs();
  FakeCatalogs(const FakeCatalogs&) = delete;
  FakeCatalogs& operator=(const FakeCatalogs&) = delete;
  ~FakeCatalogs();

  /// The catalogs that list the hash, by their paths.
  std::vector<std::wstring> catalogs;
  std::vector<std::uint8_t> hash;

  /// Failures; the last error that goes with each is its `...Error`.
  bool failAcquire = false;
  DWORD acquireError = 120;
  bool acquireNull = false;
  bool leaveHandleOnFailure = false;  ///< the failing call writes a handle all the same
  bool hashSizeZero = false;
  bool failHashSizeCall = false;  ///< false, although the size is told
  bool failHash = false;
  DWORD enumError = 1168;
  bool failInfo = false;
  bool fillWholePath = false;  ///< a path of 260 characters without terminator

  /// Whether the context of the handle is open at this moment; false without an instance.
  static bool IsOpenContext(HANDLE context);

  /// Takes each call too, in one order with what else adds to it.
  CallRecord* record = nullptr;
  /// What was seen, in order: "acquire", "hash size", "hash", "enum", "info", "release catalog",
  /// "release context".
  std::vector<std::string> calls;
  /// What is held; both must be 0 in the end.
  int openContexts = 0;
  int openCatalogs = 0;
  /// What the enumeration was asked for.
  std::vector<std::uint8_t> askedHash;

  int Count(const std::string& call) const;

 private:
  struct Patches;
  std::unique_ptr<Patches> patches_;
};

}  // namespace TestSupport
