#include <windows.h>

#include <rpc.h>

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "platform/win32/owners.h"
#include "simulated_calls.h"

using Standin::AllSimulatedCalls;
using Standin::SimulatedCalls;

namespace {

HMODULE ThisProgram() { return GetModuleHandleW(nullptr); }

/// The buffer is large enough for any version of the attributes.
RPC_STATUS QueryCallAttributes() {
  alignas(8) std::array<unsigned char, 256> attributes{};
  attributes[0] = 3;
  return RpcServerInqCallAttributesW(/*binding=*/nullptr, attributes.data());
}

}  // namespace

TEST(SimulatedCalls, CallAttributesReportThatNoCallIsServed) {
  const SimulatedCalls fake(ThisProgram(), true);
  EXPECT_EQ(QueryCallAttributes(), 1725);
}

TEST(SimulatedCalls, OnlyImportedCallsAreSimulated) {
  // This program imports one call of the list.
  const SimulatedCalls fake(ThisProgram(), true);
  ASSERT_EQ(fake.InPlace().size(), 1u);
  EXPECT_STREQ(fake.InPlace()[0].name, "RpcServerInqCallAttributesW");
}

TEST(SimulatedCalls, DestructorRestoresTheImports) {
  void** slot = Standin::FindImportSlot(ThisProgram(), "RpcServerInqCallAttributesW");
  ASSERT_NE(slot, nullptr);
  void* const before = *slot;
  {
    const SimulatedCalls fake(ThisProgram(), true);
    EXPECT_NE(*slot, before);
  }
  EXPECT_EQ(*slot, before);
}

TEST(SimulatedCalls, NothingIsSimulatedWhenTurnedOff) {
  void** slot = Standin::FindImportSlot(ThisProgram(), "RpcServerInqCallAttributesW");
  ASSERT_NE(slot, nullptr);
  void* const before = *slot;
  const SimulatedCalls fake(ThisProgram(), false);
  EXPECT_TRUE(fake.InPlace().empty());
  EXPECT_EQ(*slot, before);
}

TEST(SimulatedCalls, CatalogCallsFailWithErrorNotSupported) {
  using Acquire = BOOL(WINAPI*)(HANDLE*, const GUID*, const wchar_t*, const void*, DWORD);
  using Hash = BOOL(WINAPI*)(HANDLE, HANDLE, DWORD*, BYTE*, DWORD);
  for (const auto& call : AllSimulatedCalls()) {
    const std::string name = call.name;
    SetLastError(0);
    if (name == "CryptCATAdminAcquireContext2") {
      HANDLE context = &context;
      EXPECT_FALSE(
          reinterpret_cast<Acquire>(call.replacement)(&context, nullptr, L"SHA256", nullptr, 0));
      EXPECT_EQ(context, nullptr);
      EXPECT_EQ(GetLastError(), 50u);
    } else if (name == "CryptCATAdminCalcHashFromFileHandle2") {
      DWORD size = 7;
      EXPECT_FALSE(reinterpret_cast<Hash>(call.replacement)(nullptr, nullptr, &size, nullptr, 0));
      EXPECT_EQ(size, 0u);
      EXPECT_EQ(GetLastError(), 50u);
    }
  }
}

TEST(SimulatedCalls, IconIsThatOfExtractAssociatedIcon) {
  using Extract = HICON(WINAPI*)(HINSTANCE, char*, WORD*, WORD*);
  const auto extract = reinterpret_cast<Extract>(AllSimulatedCalls()[3].replacement);
  std::array<char, MAX_PATH> system{"C:\\windows\\system32\\notepad.exe"};
  WORD index = 0;
  WORD id = 0;
  const Zq::Gantry::Platform::UniqueIcon icon(extract(nullptr, system.data(), &index, &id));
  EXPECT_NE(icon.get(), nullptr);

  std::array<char, MAX_PATH> missing{"C:\\nowhere.exe"};
  EXPECT_EQ(extract(nullptr, missing.data(), &index, &id), nullptr);
}

TEST(SimulatedCalls, EachCallHasAReason) {
  ASSERT_EQ(AllSimulatedCalls().size(), 4u);
  EXPECT_STREQ(AllSimulatedCalls()[0].name, "RpcServerInqCallAttributesW");
  EXPECT_STREQ(AllSimulatedCalls()[1].name, "CryptCATAdminAcquireContext2");
  EXPECT_STREQ(AllSimulatedCalls()[2].name, "CryptCATAdminCalcHashFromFileHandle2");
  EXPECT_STREQ(AllSimulatedCalls()[3].name, "ExtractAssociatedIconExA");
  for (const auto& call : AllSimulatedCalls()) EXPECT_STRNE(call.reason, "");
}
