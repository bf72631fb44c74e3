#pragma once

#include <windows.h>

#include <hstring.h>

#include <cstddef>
#include <map>
#include <mutex>
#include <optional>

#include "import_patch.h"

namespace TestSupport {

/// Counts the references to every HSTRING that the test program creates. Fails the test if a
/// reference is deleted that does not exist, if a string is read after its last reference was
/// deleted, and if a reference is left when the ledger ends. From any thread; one at a time.
class RuntimeTextLedger {
 public:
  RuntimeTextLedger();
  RuntimeTextLedger(const RuntimeTextLedger&) = delete;
  RuntimeTextLedger& operator=(const RuntimeTextLedger&) = delete;
  ~RuntimeTextLedger();

  /// The number of references not yet deleted.
  [[nodiscard]] std::size_t Outstanding() const;

 private:
  static HRESULT WINAPI Create(const wchar_t* characters, UINT32 length, HSTRING* text);
  static HRESULT WINAPI Duplicate(HSTRING text, HSTRING* copy);
  static HRESULT WINAPI Delete(HSTRING text);
  static const wchar_t* WINAPI Read(HSTRING text, UINT32* length);

  void Add(HSTRING text);

  mutable std::mutex lock_;
  /// The number of references to each string. A string with 0 references is not passed to the
  /// system until the ledger ends, so that no other string gets its address.
  std::map<HSTRING, int> references_;
  Standin::ImportPatch create_;
  /// Empty if the program does not import WindowsDuplicateString.
  std::optional<Standin::ImportPatch> duplicate_;
  Standin::ImportPatch delete_;
  Standin::ImportPatch read_;
};

}  // namespace TestSupport
