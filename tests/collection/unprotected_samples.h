#pragma once

#include <windows.h>

#include <wincrypt.h>

#include <cstring>

#include "import_patch.h"

namespace TestSupport {

/// While it exists, samples are read without data protection, which takes most of a pass's time.
class UnprotectedSamples {
 private:
  static BOOL WINAPI Open(DATA_BLOB* closed, LPWSTR*, DATA_BLOB*, PVOID, CRYPTPROTECT_PROMPTSTRUCT*,
                          DWORD, DATA_BLOB* opened) {
    opened->pbData = static_cast<BYTE*>(LocalAlloc(LMEM_FIXED, closed->cbData));
    opened->cbData = closed->cbData;
    std::memcpy(opened->pbData, closed->pbData, closed->cbData);
    return TRUE;
  }

  const Standin::ImportPatch patch_{"CryptUnprotectData", &Open};
};

}  // namespace TestSupport
