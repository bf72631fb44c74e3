#include "support/runtime_text_ledger.h"

#include <gtest/gtest.h>
#include <winstring.h>

namespace TestSupport {

namespace {

RuntimeTextLedger* current = nullptr;

}  // namespace

RuntimeTextLedger::RuntimeTextLedger()
    : create_("WindowsCreateString", &RuntimeTextLedger::Create),
      delete_("WindowsDeleteString", &RuntimeTextLedger::Delete),
      read_("WindowsGetStringRawBuffer", &RuntimeTextLedger::Read) {
  EXPECT_EQ(current, nullptr) << "one ledger at a time";
  current = this;
  if (Standin::FindImportSlot(GetModuleHandleW(nullptr), "WindowsDuplicateString") != nullptr) {
    duplicate_.emplace("WindowsDuplicateString", &RuntimeTextLedger::Duplicate);
  }
}

RuntimeTextLedger::~RuntimeTextLedger() {
  EXPECT_EQ(Outstanding(), 0U) << "references to strings that were never deleted";
  current = nullptr;
  for (const auto& [text, count] : references_) {
    if (count == 0) delete_.Original<decltype(WindowsDeleteString)>()(text);
  }
}

std::size_t RuntimeTextLedger::Outstanding() const {
  const std::lock_guard guard(lock_);
  std::size_t sum = 0;
  for (const auto& [text, count] : references_) sum += static_cast<std::size_t>(count);
  return sum;
}

/// Null is the empty string, which has no references.
void RuntimeTextLedger::Add(HSTRING text) {
  if (text == nullptr) return;
  const std::lock_guard guard(lock_);
  ++references_[text];
}

HRESULT WINAPI RuntimeTextLedger::Create(const wchar_t* characters, UINT32 length, HSTRING* text) {
  const HRESULT result =
      current->create_.Original<decltype(WindowsCreateString)>()(characters, length, text);
  if (SUCCEEDED(result)) current->Add(*text);
  return result;
}

HRESULT WINAPI RuntimeTextLedger::Duplicate(HSTRING text, HSTRING* copy) {
  const HRESULT result =
      current->duplicate_->Original<decltype(WindowsDuplicateString)>()(text, copy);
  if (SUCCEEDED(result)) current->Add(*copy);
  return result;
}

HRESULT WINAPI RuntimeTextLedger::Delete(HSTRING text) {
  if (text == nullptr) return S_OK;
  const std::lock_guard guard(current->lock_);
  const auto known = current->references_.find(text);
  if (known == current->references_.end() || known->second == 0) {
    ADD_FAILURE() << "WindowsDeleteString of a string without references";
    return S_OK;
  }
  // The last reference is deleted when the ledger ends.
  if (--known->second == 0) return S_OK;
  return current->delete_.Original<decltype(WindowsDeleteString)>()(text);
}

const wchar_t* WINAPI RuntimeTextLedger::Read(HSTRING text, UINT32* length) {
  {
    const std::lock_guard guard(current->lock_);
    const auto known = current->references_.find(text);
    const bool dead = known != current->references_.end() && known->second == 0;
    EXPECT_FALSE(dead) << "WindowsGetStringRawBuffer of a string without references";
  }
  return current->read_.Original<decltype(WindowsGetStringRawBuffer)>()(text, length);
}

}  // namespace TestSupport
