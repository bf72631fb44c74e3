// Stand-in for the server of XML documents. Its documents are empty; LiveDocuments counts them.

#include <windows.h>

#include <activation.h>

#include "runtime_object.h"
#include "security/access/unimplemented_interfaces.h"

namespace {

using Standin::Packages::RuntimeObject;

class FakeDocument final : public RuntimeObject<TestSupport::UnimplementedDocument,
                                                Zq::Gantry::Platform::WinRt::IXmlDocument> {};

class FakeFactory final : public RuntimeObject<IActivationFactory, IActivationFactory> {
 public:
  STDMETHODIMP ActivateInstance(IInspectable** instance) override {
    *instance = new FakeDocument;
    return S_OK;
  }
};

}  // namespace

extern "C" __declspec(dllexport) HRESULT WINAPI
    DllGetActivationFactory(HSTRING, IActivationFactory** factory) {
  *factory = new FakeFactory;
  return S_OK;
}

extern "C" __declspec(dllexport) int LiveDocuments() { return Standin::Packages::LiveObjects(); }
