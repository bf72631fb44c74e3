#pragma once

#include <windows.h>

#include <hstring.h>

#include <cstddef>
#include <map>
#include <mutex>
#include <optional>

#include "import_patch.h"

namespace TestSupport {

/// Counts the references to every text of the Windows Runtime that the test program makes. The test
/// fails where a reference is deleted that the program does not have, where a text is read after
/// its last reference was deleted, and where one is left at the end. From any thread; one at a
/// time.
class RuntimeTextLedger {
 public:
  RuntimeTextLedger();
  RuntimeTextLedger(const RuntimeTextLedger&) = delete;
  RuntimeTextLedger& operator=(const RuntimeTextLedger&) = delete;
  ~RuntimeTextLedger();

  /// References that were not deleted yet.
  std::size_t Outstanding() const;

 private:
  static HRESULT WINAPI Create(const wchar_t* characters, UINT32 length, HSTRING* text);
  static HRESULT WINAPI Duplicate(HSTRING text, HSTRING* copy);
  static HRESULT WINAPI Delete(HSTRING text);
  static const wchar_t* WINAPI Read(HSTRING text, UINT32* length);

  void Add(HSTRING text);

  mutable std::mutex lock_;
  /// By text, the references; 0 for one that is kept from the system until the ledger ends, so that
  /// its address is given to no other text.
  std::map<HSTRING, int> references_;
  Standin::ImportPatch create_;
  /// Absent in a program that shares no texts.
  std::optional<Standin::ImportPatch> duplicate_;
  Standin::ImportPatch delete_;
  Standin::ImportPatch read_;
};

}  // namespace TestSupport
