// Stand-in for the server of XML documents: makes empty ones, and tells how many are alive.

#include <windows.h>

#include <activation.h>

#include "runtime_object.h"
#include "security/access/unused_operations.h"

namespace {

using Standin::Packages::RuntimeObject;

class PlayedDocument final
    : public RuntimeObject<TestSupport::UnusedDocument, Zq::Gantry::Platform::WinRt::IXmlDocument> {
};

class PlayedFactory final : public RuntimeObject<IActivationFactory, IActivationFactory> {
 public:
  STDMETHODIMP ActivateInstance(IInspectable** instance) override {
    *instance = new PlayedDocument;
    return S_OK;
  }
};

}  // namespace

extern "C" __declspec(dllexport) HRESULT WINAPI
    DllGetActivationFactory(HSTRING, IActivationFactory** factory) {
  *factory = new PlayedFactory;
  return S_OK;
}

extern "C" __declspec(dllexport) int LiveDocuments() { return Standin::Packages::LiveObjects(); }
