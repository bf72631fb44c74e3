#include "security/access/shared_document.h"

#include <windows.h>

#include <activation.h>
#include <gmock/gmock.h>
#include <roapi.h>
#include <winstring.h>

#include <new>
#include <string>
#include <vector>

#include "import_patch.h"
#include "runtime_object.h"
#include "security/access/unimplemented_interfaces.h"
#include "support/runtime_text_ledger.h"

namespace Zq::Gantry::Security {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace TestSupport;
using Standin::Packages::LiveObjects;
using Standin::Packages::RuntimeObject;

class FakeDocument final : public RuntimeObject<UnimplementedDocument, IXmlDocument> {};

struct Script {
  std::vector<std::string> calls;
  bool hasApartment = true;
  HRESULT factoryResult = S_OK;
  HRESULT usageResult = S_OK;
  HRESULT instanceResult = S_OK;
  bool returnsNullFactory = false;
  bool returnsNullInstance = false;
  bool returnsAnotherClass = false;
};
Script* script = nullptr;

class OtherObject final : public RuntimeObject<IInspectable, IInspectable> {};

class FakeFactory final : public RuntimeObject<IActivationFactory, IActivationFactory> {
 public:
  STDMETHODIMP ActivateInstance(IInspectable** instance) override {
    script->calls.emplace_back("instance");
    *instance = nullptr;
    if (FAILED(script->instanceResult) || script->returnsNullInstance)
      return script->instanceResult;
    if (script->returnsAnotherClass) {
      *instance = new OtherObject;
    } else {
      *instance = new FakeDocument;
    }
    return S_OK;
  }
};

HRESULT WINAPI GetFactory(HSTRING className, REFIID iid, void** factory) {
  *factory = nullptr;
  const bool isExpected = iid == __uuidof(IActivationFactory) &&
                          std::wstring(WindowsGetStringRawBuffer(className, nullptr)) ==
                              L"Windows.Data.Xml.Dom.XmlDocument";
  script->calls.emplace_back(isExpected ? "factory" : "another factory");
  if (!script->hasApartment) return CO_E_NOTINITIALIZED;
  if (FAILED(script->factoryResult) || script->returnsNullFactory) return script->factoryResult;
  *factory = static_cast<IActivationFactory*>(new FakeFactory);
  return S_OK;
}

HRESULT WINAPI KeepAlive(CO_MTA_USAGE_COOKIE* cookie) {
  script->calls.emplace_back("keep alive");
  *cookie = nullptr;
  if (SUCCEEDED(script->usageResult)) script->hasApartment = true;
  return script->usageResult;
}

class SharedDocument : public testing::Test {
 protected:
  SharedDocument() { script = &fake; }
  void TearDown() override { EXPECT_EQ(LiveObjects(), 0); }

  const RuntimeTextLedger texts;
  Script fake;
  Standin::ImportPatch factory{"RoGetActivationFactory", &GetFactory};
  Standin::ImportPatch keepAlive{"CoIncrementMTAUsage", &KeepAlive};
};

TEST_F(SharedDocument, IsMadeByTheFactoryOfItsClass) {
  {
    const auto document = TryMakeXmlDocument();
    EXPECT_TRUE(document);
    EXPECT_EQ(LiveObjects(), 1);
  }
  EXPECT_THAT(fake.calls, ElementsAre("factory", "instance"));
}

TEST_F(SharedDocument, KeepsTheApartmentAliveOnAThreadWithoutOne) {
  fake.hasApartment = false;
  EXPECT_TRUE(TryMakeXmlDocument());
  EXPECT_THAT(fake.calls, ElementsAre("factory", "keep alive", "factory", "instance"));
}

TEST_F(SharedDocument, IsEmptyWhenTheApartmentCannotBeKeptAlive) {
  fake.hasApartment = false;
  fake.usageResult = E_FAIL;
  EXPECT_FALSE(TryMakeXmlDocument());
  EXPECT_THAT(fake.calls, ElementsAre("factory", "keep alive"));
}

TEST_F(SharedDocument, IsEmptyWhenACallFails) {
  fake.factoryResult = REGDB_E_CLASSNOTREG;
  EXPECT_FALSE(TryMakeXmlDocument());
  EXPECT_THAT(fake.calls, ElementsAre("factory"))
      << "the apartment is not kept alive for this error";
  fake.factoryResult = S_OK;
  fake.instanceResult = E_OUTOFMEMORY;
  EXPECT_FALSE(TryMakeXmlDocument());
}

TEST_F(SharedDocument, IsEmptyWhenACallReturnsNullOrAnotherClass) {
  fake.returnsNullFactory = true;
  EXPECT_FALSE(TryMakeXmlDocument());
  fake.returnsNullFactory = false;
  fake.returnsNullInstance = true;
  EXPECT_FALSE(TryMakeXmlDocument());
  fake.returnsNullInstance = false;
  fake.returnsAnotherClass = true;
  EXPECT_FALSE(TryMakeXmlDocument());
}

HRESULT WINAPI ThrowBadAlloc(const wchar_t*, UINT32, HSTRING*) { throw std::bad_alloc(); }

HRESULT WINAPI ThrowInt(const wchar_t*, UINT32, HSTRING*) { throw 5; }

TEST_F(SharedDocument, IsEmptyAfterAnyException) {
  EXPECT_TRUE(noexcept(TryMakeXmlDocument()));
  {
    const Standin::ImportPatch text("WindowsCreateString", &ThrowBadAlloc);
    EXPECT_FALSE(TryMakeXmlDocument());
  }
  const Standin::ImportPatch text("WindowsCreateString", &ThrowInt);
  EXPECT_FALSE(TryMakeXmlDocument());
}

}  // namespace
}  // namespace Zq::Gantry::Security
